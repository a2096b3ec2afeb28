"""Drawing on a small pixel canvas for draw_pictures.py: a canvas of colour names, and inside
tests for strokes, polygons, discs and arcs, evaluated at pixel centres (no smoothing: every
pixel takes one colour of the picture's palette)."""
import math

WHITE, BLACK = "FFFFFF", "000000"
DIALOG = "ECE9D8"  # the window's face colour, around rounded shapes


class Canvas:
    def __init__(self, width, height, colour=WHITE):
        self.width, self.height = width, height
        self.px = [[colour] * width for _ in range(height)]

    def get(self, x, y):
        return self.px[y][x]

    def set(self, x, y, colour):
        if 0 <= x < self.width and 0 <= y < self.height:
            self.px[y][x] = colour

    def rect(self, x0, y0, x1, y1, colour):  # inclusive corners
        for y in range(y0, y1 + 1):
            for x in range(x0, x1 + 1):
                self.set(x, y, colour)

    def paint(self, inside, colour):
        """Sets every pixel whose centre satisfies inside(x, y)."""
        for y in range(self.height):
            for x in range(self.width):
                if inside(x + 0.5, y + 0.5):
                    self.px[y][x] = colour

    def mirrored(self):
        out = Canvas(self.width, self.height)
        out.px = [list(reversed(row)) for row in self.px]
        return out

    def flipped(self):
        out = Canvas(self.width, self.height)
        out.px = [list(row) for row in reversed(self.px)]
        return out

    def transposed(self):
        out = Canvas(self.height, self.width)
        out.px = [[self.px[y][x] for y in range(self.height)] for x in range(self.width)]
        return out


def lerp(a, b, t):
    ca = [int(a[i:i + 2], 16) for i in (0, 2, 4)]
    cb = [int(b[i:i + 2], 16) for i in (0, 2, 4)]
    return "".join("%02X" % round(ca[i] + (cb[i] - ca[i]) * t) for i in range(3))


# --- Geometry -------------------------------------------------------------------------------

def seg_distance(p, a, b):
    ax, ay = a
    dx, dy = b[0] - ax, b[1] - ay
    length2 = dx * dx + dy * dy
    t = 0.0 if length2 == 0 else max(0.0, min(1.0, ((p[0] - ax) * dx + (p[1] - ay) * dy) / length2))
    return math.hypot(p[0] - ax - t * dx, p[1] - ay - t * dy)


def stroke(points, width, butt=True):
    """Inside test of a thick polyline; butt ends cut square across the path."""
    half = width / 2

    def inside(x, y):
        best, index = None, 0
        for i in range(len(points) - 1):
            d = seg_distance((x, y), points[i], points[i + 1])
            if best is None or d < best:
                best, index = d, i
        if best > half:
            return False
        if butt and index == 0:
            (ax, ay), (bx, by) = points[0], points[1]
            if (x - ax) * (bx - ax) + (y - ay) * (by - ay) < 0:
                return False
        if butt and index == len(points) - 2:
            (ax, ay), (bx, by) = points[-2], points[-1]
            if (x - bx) * (bx - ax) + (y - by) * (by - ay) > 0:
                return False
        return True
    return inside


def polygon(points):
    def inside(x, y):
        crossings = False
        for i in range(len(points)):
            (ax, ay), (bx, by) = points[i], points[(i + 1) % len(points)]
            if (ay > y) != (by > y) and x < ax + (y - ay) * (bx - ax) / (by - ay):
                crossings = not crossings
        return crossings
    return inside


def disc(cx, cy, r):
    return lambda x, y: math.hypot(x - cx, y - cy) <= r


def arc(cx, cy, r, from_deg, to_deg, steps=64):
    """Points of an arc; angles count anticlockwise on screen, 0 to the right."""
    pts = []
    for i in range(steps + 1):
        a = math.radians(from_deg + (to_deg - from_deg) * i / steps)
        pts.append((cx + r * math.cos(a), cy - r * math.sin(a)))
    return pts


def ahead(point, direction_deg, distance):
    a = math.radians(direction_deg)
    return (point[0] + math.cos(a) * distance, point[1] - math.sin(a) * distance)


def head(tip, direction_deg, length, half_width):
    """An arrow head: its tip and the direction it points in; returns (triangle, base centre)."""
    a = math.radians(direction_deg)
    ux, uy = math.cos(a), -math.sin(a)
    bx, by = tip[0] - ux * length, tip[1] - uy * length
    return [tip, (bx - uy * half_width, by + ux * half_width),
            (bx + uy * half_width, by - ux * half_width)], (bx, by)
