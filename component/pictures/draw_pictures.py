#!/usr/bin/env python3
"""Draws the panel's pictures from geometry and writes them as pixel maps.

A developer's tool, not a build step: it made the first version of every map in this folder.
The committed maps are what the build uses; edit them by hand for small changes. Running this
again writes fresh maps into OUTPUT (default: a new folder under /tmp) for comparison, and only
overwrites the committed ones when OUTPUT is this folder.

    component/pictures/draw_pictures.py [OUTPUT]
"""
import math
import os
import sys
import tempfile

sys.dont_write_bytecode = True  # keep the pictures' folder free of caches
from raster import (BLACK, DIALOG, WHITE, Canvas, ahead, arc, disc, head, lerp, polygon,
                    stroke)

# --- Heading pictures ------------------------------------------------------------------------

HEADING_W, HEADING_H = 64, 72
SHAFT, HEAD_LEN, HEAD_HALF = 8, 19, 15


def centred_arrow(path, direction_deg, tip):
    """A black arrow on white: a shaft along path, a head at tip, the whole centred in the box."""
    big = Canvas(3 * HEADING_W, 3 * HEADING_H)
    tri, base = head(tip, direction_deg, HEAD_LEN, HEAD_HALF)
    big.paint(stroke(path + [base], SHAFT), BLACK)
    big.paint(polygon(tri), BLACK)
    xs = [x for y in range(big.height) for x in range(big.width) if big.px[y][x] == BLACK]
    ys = [y for y in range(big.height) for x in range(big.width) if big.px[y][x] == BLACK]
    dx = (HEADING_W - (max(xs) + min(xs) + 1)) // 2
    dy = (HEADING_H - (max(ys) + min(ys) + 1)) // 2
    out = Canvas(HEADING_W, HEADING_H)
    for y in range(HEADING_H):
        for x in range(HEADING_W):
            out.px[y][x] = big.px[y - dy][x - dx] if 0 <= y - dy < big.height else WHITE
    return out


def turn(rise, radius, degrees, run):
    """From the bottom upwards, then a left turn of `degrees` on `radius`, then `run` further."""
    x0, y0 = 100.0, 160.0
    pts = [(x0, y0), (x0, y0 - rise)]
    pts += arc(x0 - radius, y0 - rise, radius, 0, degrees)[1:]
    heading = 90 + degrees
    end = pts[-1]
    if run > 0:
        pts.append(ahead(end, heading, run))
    return centred_arrow(pts, heading, ahead(end, heading, run + HEAD_LEN))


def heading_pictures():
    square = Canvas(HEADING_W, HEADING_H)
    square.rect(15, 17, 51, 53, BLACK)
    straight = centred_arrow([(100.0, 160.0), (100.0, 130.0)], 90, (100.0, 104.0))
    gentle = turn(rise=14, radius=46, degrees=38, run=0)
    hard = turn(rise=22, radius=15, degrees=90, run=4)
    # The ring runs anticlockwise from just below its right side round to the bottom, where its
    # head points right into the gap.
    ring_r, cx, cy = 21, 100.0, 100.0
    ring = arc(cx, cy, ring_r, -18, 262)
    circle = centred_arrow(ring, 262 - 270, ahead(ring[-1], 262 - 270, HEAD_LEN))
    return [square, straight, straight.flipped(), gentle, hard, circle,
            gentle.mirrored(), hard.mirrored(), circle.mirrored(),
            gentle.flipped(), hard.flipped(), gentle.flipped().mirrored(),
            hard.flipped().mirrored()]


# --- Motor signs -----------------------------------------------------------------------------

def motor_signs():
    stopped = Canvas(24, 24)
    stopped.rect(4, 11, 18, 13, BLACK)
    forward = Canvas(24, 24)
    for i in range(7):  # the head widens by a pixel a side from a flat 3-pixel tip
        forward.rect(10 - i, 3 + i, 12 + i, 3 + i, BLACK)
    forward.rect(10, 10, 12, 19, BLACK)
    backward = Canvas(24, 24)
    for y in range(3, 20):
        backward.px[y] = list(forward.px[22 - y])
    return stopped, forward, backward


# --- LEDs -----------------------------------------------------------------------------------

FACE, LIGHT, LIGHTER, SHADE, SHADOW = "C0C0C0", "E4E4E4", "F2F2F2", "8C8C8C", "6A6A6A"


def led(lit):
    c = Canvas(23, 26)
    c.rect(0, 1, 22, 23, FACE)
    for i, (light, dark) in enumerate([(LIGHTER, SHADOW), (LIGHT, SHADE)]):
        c.rect(i, 1 + i, 22 - i, 1 + i, light)        # top
        c.rect(i, 1 + i, i, 23 - i, light)            # left
        c.rect(i, 23 - i, 22 - i, 23 - i, dark)       # bottom
        c.rect(22 - i, 1 + i, 22 - i, 23 - i, dark)   # right
    cx, cy = 11.5, 12.5
    body, band, glint = ("FF0000", "BA0000", WHITE) if lit else ("C6D3D3", "AEBABA", "FFD6D6")
    c.paint(disc(cx, cy, 8.2), "87181C")
    c.paint(disc(cx, cy, 7.0), body)
    c.paint(lambda x, y: 4.2 < math.hypot(x - cx, y - cy) <= 7.0 and (x - cx) + (y - cy) > 4, band)
    c.rect(10, 8, 12, 9, glint)
    c.rect(11, 7, 11, 7, glint)
    if not lit:
        c.rect(15, 15, 15, 15, glint)
    if lit:
        out = Canvas(23, 27)
        out.px[1:] = c.px
        return out
    return c


# --- Wheel, bars, tracks --------------------------------------------------------------------

def wheel_drum():
    c = Canvas(29, 76, DIALOG)
    c.rect(1, 1, 27, 74, BLACK)
    return c


def wheel_line():
    c = Canvas(27, 1)
    colours = [BLACK] * 3 + ["BFBFBF"] + [WHITE] * 18 + ["BFBFBF"] + [BLACK] * 3 + [DIALOG]
    c.px[0] = colours
    return c


def bar():
    c = Canvas(28, 10, DIALOG)
    for x in range(28):
        colour = lerp("00D10E", "006D02", x / 27)
        for y in range(10):
            px, py = x + 0.5, y + 0.5
            r = 5.0
            ex = min(max(px, r), 28 - r)
            if math.hypot(px - ex, py - 5.0) <= r + 0.1:
                c.px[y][x] = colour
    return c


TRACK_GREEN, FADE = "007F0E", 43


def track_vertical():
    c = Canvas(12, 80, BLACK)
    for (x, y) in [(0, 0), (11, 0), (0, 79), (11, 79)]:
        c.px[y][x] = DIALOG
    for row in range(1, 79):
        i = 78 - row  # from the white end at the bottom
        colour = lerp(WHITE, TRACK_GREEN, i / (FADE - 1)) if i < FADE else TRACK_GREEN
        c.rect(1, row, 10, row, colour)
    return c


# --- Push switch and line sensor ------------------------------------------------------------

def push_switch():
    c = Canvas(24, 24)
    c.rect(1, 1, 22, 22, "808080")
    c.rect(2, 2, 21, 21, WHITE)
    c.paint(disc(12, 12, 7.6), "A0A0A0")
    c.paint(disc(12, 12, 6.4), BLACK)
    c.rect(10, 8, 11, 8, "3C3C3C")
    for (x, y) in [(4.5, 4.5), (19.5, 4.5), (4.5, 19.5), (19.5, 19.5)]:
        c.paint(disc(x, y, 1.6), "B5651D")
    return c


def line_sensor():
    c = Canvas(30, 24)
    body = lambda x, y: 1 <= x <= 29 and 5 <= y <= 19 and not (
        (x < 2.5 or x > 27.5) and (y < 6.5 or y > 17.5))
    c.paint(body, "4A4A4A")
    c.rect(2, 5, 27, 5, "6E6E6E")
    for cx, lens in [(8.5, "0000A7"), (21.5, BLACK)]:
        c.paint(disc(cx, 12, 5.2), "9A9A9A")
        c.paint(disc(cx, 12, 4.2), lens)
    c.rect(7, 10, 7, 10, "5A5AFF")
    return c


# --- Logo -----------------------------------------------------------------------------------

LETTER_W, LETTER_H, STEM, PITCH = 19, 20, 4.0, 24


def letter(ch, left, top):
    """The inside test of a capital, drawn in strokes and cut to its box."""
    l, t, w, h = left, top, LETTER_W, LETTER_H
    r, b, mx, my = l + w, t + h, l + w / 2, t + h / 2
    s = STEM / 2
    if ch == "O":
        def ring(x, y):
            outer = ((x - mx) / (w / 2)) ** 2 + ((y - my) / (h / 2)) ** 2
            inner = ((x - mx) / (w / 2 - STEM)) ** 2 + ((y - my) / (h / 2 - STEM)) ** 2
            return outer <= 1 and inner > 1
        return ring
    strokes = {
        "R": [[(l + s, b + 2), (l + s, t + s), (r - 6.5, t + s)] + arc(r - 6.5, t + 6, 4, 90, -90)[1:] +
              [(l + s, t + 10)], [(l + 9, t + 10), (r - s, b + 2)]],
        "V": [[(l + s, t - 2), (mx, b - s), (r - s, t - 2)]],
        "A": [[(l + s, b + 2), (mx, t + s), (r - s, b + 2)], [(l + 4, t + 14), (r - 4, t + 14)]],
        "N": [[(l + s, b + 2), (l + s, t - 2)], [(l + s, t + 1), (r - s, b - 1)],
              [(r - s, b + 2), (r - s, t - 2)]],
        "T": [[(l - 2, t + s), (r + 2, t + s)], [(mx, t), (mx, b + 2)]],
    }[ch]
    tests = [stroke(p, STEM, butt=False) for p in strokes]
    return lambda x, y: l <= x <= r and t <= y <= b and any(f(x, y) for f in tests)


def outline(canvas, mask):
    """Blackens the pixels of mask that touch a pixel outside it."""
    for y in range(canvas.height):
        for x in range(canvas.width):
            if mask[y][x] and any(not (0 <= x + dx < canvas.width and 0 <= y + dy < canvas.height)
                                  or not mask[y + dy][x + dx]
                                  for dx, dy in [(1, 0), (-1, 0), (0, 1), (0, -1)]):
                canvas.px[y][x] = BLACK


def logo():
    c = Canvas(166, 47)
    # The pole leans right; the flag flies from its top, five checks by three, in a light wave.
    foot, top = (9.0, 46.0), (25.0, 2.0)
    c.paint(stroke([foot, top], 3.0), BLACK)
    down = ((foot[0] - top[0]) / 44.0, (foot[1] - top[1]) / 44.0)
    width, height, columns, rows = 36.0, 21.0, 5, 3

    def flag_uv(x, y):
        # p = top + u * (width, 1) + v * height * down, the flag's cloth waving along u.
        ax, ay, bx, by = width, 1.0, height * down[0], height * down[1]
        det = ax * by - ay * bx
        px, py = x - top[0] - 1.0, y - top[1]
        u = (px * by - py * bx) / det
        py -= 2.0 * math.sin(u * math.pi * 1.5)
        return u, (ax * py - ay * px) / det

    mask = [[False] * c.width for _ in range(c.height)]
    for y in range(c.height):
        for x in range(c.width):
            u, v = flag_uv(x + 0.5, y + 0.5)
            if 0 <= u <= 1 and 0 <= v <= 1:
                mask[y][x] = True
                if (int(u * columns) + int(v * rows)) % 2 == 0:
                    c.px[y][x] = BLACK
    outline(c, mask)
    # The name in two lines of capitals, each line centred on the space right of the flag.
    for line, word in enumerate(["ROV", "ANTA"]):
        span = len(word) * PITCH - (PITCH - LETTER_W)
        left = 52 + (112 - span) // 2
        for i, ch in enumerate(word):
            c.paint(letter(ch, left + i * PITCH, 2 + line * 23), BLACK)
    return c


# --- Pixel maps -----------------------------------------------------------------------------

NAMES = {WHITE: "white", BLACK: "black", DIALOG: "window face", "87181C": "LED rim",
         "FF0000": "LED red", "BA0000": "LED band", "C6D3D3": "unlit body", "FFD6D6": "glint",
         "0000A7": "blue lens", "B5651D": "corner dot", "BFBFBF": "stripe edge",
         TRACK_GREEN: "track green", "00D10E": "bar light", "006D02": "bar dark",
         LIGHTER: "bevel highlight", LIGHT: "bevel light", FACE: "bevel face", SHADE: "bevel shade",
         SHADOW: "bevel shadow", "AEBABA": "unlit band", "808080": "body outline",
         "A0A0A0": "button collar", "3C3C3C": "button sheen", "4A4A4A": "sensor block",
         "6E6E6E": "block edge", "9A9A9A": "lens collar", "5A5AFF": "lens glint"}
KEYS = ".#abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-*/=@$%&:;<>!?~^"


def write_map(folder, stem, canvas, about):
    colours = []
    for row in canvas.px:
        for colour in row:
            if colour not in colours:
                colours.append(colour)
    fixed = {WHITE: ".", BLACK: "#"}
    free = [k for k in KEYS if k not in fixed.values()]
    keys = {}
    for colour in colours:
        keys[colour] = fixed.get(colour) or free.pop(0)
    lines = ["/* XPM */", "/* %s */" % about, "static const char* %s[] = {" % stem,
             "/* width height colours chars-per-pixel */",
             '"%d %d %d 1",' % (canvas.width, canvas.height, len(colours))]
    for colour in colours:
        note = " /* %s */" % NAMES[colour] if colour in NAMES else ""
        lines.append('"%s c #%s",%s' % (keys[colour], colour, note))
    lines.append("/* pixels */")
    lines += ['"%s",' % "".join(keys[c] for c in row) for row in canvas.px]
    lines.append("};")
    with open(os.path.join(folder, stem + ".xpm"), "w") as out:
        out.write("\n".join(lines) + "\n")


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    folder = sys.argv[1] if len(sys.argv) > 1 else tempfile.mkdtemp(prefix="pictures-")
    os.makedirs(folder, exist_ok=True)
    stopped, forward, backward = motor_signs()
    vertical_track = track_vertical()
    left_track = vertical_track.transposed()
    pictures = [
        ("led_lit", led(True), "LED lit: a red disc in a bevelled square, a row above the dark one"),
        ("led_dark", led(False), "LED dark: the same square with the disc unlit"),
        ("motor_stopped", stopped, "motor stopped: a black bar"),
        ("motor_forward", forward, "motor forward: an arrow up"),
        ("motor_backward", backward, "motor backward: an arrow down"),
        ("wheel_drum", wheel_drum(), "the wheel's drum"),
        ("wheel_line", wheel_line(), "a line across the wheel's drum"),
        ("bar_vertical", bar(), "the bar of a vertical track: a capsule lying flat"),
        ("bar_horizontal", bar().transposed(), "the bar of a horizontal track: a capsule standing up"),
        ("track_vertical", vertical_track, "vertical track: white at the bottom, green above"),
        ("track_left", left_track, "track of the left sensor: green at the left, white at the right"),
        ("track_right", left_track.mirrored(), "track of the right sensor: white at the left"),
        ("push_switch", push_switch(), "a tactile push switch from above"),
        ("line_sensor", line_sensor(), "a line sensor: blue and black lenses in a dark block"),
        ("logo", logo(), "the product's logo"),
    ]
    what = ["standing", "straight forwards", "straight backwards", "gently forwards left",
            "hard forwards left", "turning left on the spot", "gently forwards right",
            "hard forwards right", "turning right on the spot", "gently backwards left",
            "hard backwards left", "gently backwards right", "hard backwards right"]
    for k, picture in enumerate(heading_pictures()):
        pictures.append(("heading_%02d" % k, picture, "heading %d: %s" % (k, what[k])))
    for stem, canvas, about in pictures:
        write_map(folder, stem, canvas, about)
    print("wrote %d maps to %s%s" % (len(pictures), folder,
                                     "" if os.path.samefile(folder, here) else " (not the committed ones)"))


if __name__ == "__main__":
    main()
