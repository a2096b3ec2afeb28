#include "floor_painter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "arena_shapes.h"

namespace world {

namespace {
const QColor kLine(0x20, 0x20, 0x20), kWall(0x8b, 0x3a, 0x1a), kLightColour(0xff, 0xc8, 0x00),
    kZone(0x40, 0xb0, 0x40, 0x60), kBody(0x50, 0x70, 0x90);
// A wall is drawn this thick in millimetres, at least two pixels.
constexpr double kWallThickness = 10;
}  // namespace

void paint_floor(QPainter& p, const Arena& a, const FloorFrame& f) {
    const auto pixel = [&](Vec v) { return f.px(v); };
    p.fillRect(QRectF(pixel({0, a.height}), pixel({a.width, 0})), kFloorColour);
    const auto box = [&](const Zone& z) {
        return QRectF(pixel({z.corner.x, z.corner.y + z.height}),
                      pixel({z.corner.x + z.width, z.corner.y}));
    };
    for (const Zone& z : a.zones)
        p.fillRect(box(z), kZone);
    for (const Line& l : a.lines) {
        QPainterPath path(pixel(l.points.front()));
        for (const Vec& pt : l.points)
            path.lineTo(pixel(pt));
        p.strokePath(path, QPen(kLine, std::max(1.0, l.width * f.scale), Qt::SolidLine,
                                Qt::RoundCap, Qt::RoundJoin));
    }
    p.setPen(QPen(kWall, std::max(2.0, kWallThickness * f.scale), Qt::SolidLine, Qt::SquareCap));
    for (const Segment& s : a.walls)
        p.drawLine(pixel(s.a), pixel(s.b));
    for (const Light& l : a.lights) {
        const double r = std::max(3.0, kLightRadius * f.scale);
        p.setPen(Qt::NoPen);
        QColor halo = kLightColour;
        halo.setAlphaF(0.25 + 0.5 * l.intensity);
        p.setBrush(halo);
        p.drawEllipse(pixel(l.at), r, r);
    }
    // The zones' names last, so that no line or wall hides them.
    QColor name = kZone.darker(250);
    name.setAlpha(255);
    p.setPen(name);
    // A name wider than its zone may cross a line: a light ground keeps it readable.
    QColor ground = kFloorColour;
    ground.setAlpha(200);
    for (const Zone& z : a.zones) {
        const QString text = QString::fromStdString(z.name);
        const int flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip;
        const QRectF at = box(z).adjusted(2, 2, -2, -2);
        p.fillRect(p.boundingRect(at, flags, text), ground);
        p.drawText(at, flags, text);
    }
}

void paint_body(QPainter& p, const Pose& pose, const FloorFrame& f) {
    const QPointF c = f.px(pose.centre);
    const double r = kBodyRadius * f.scale;
    p.setPen(QPen(kBody.darker(150), 1.5));
    p.setBrush(kBody);
    p.drawEllipse(c, r, r);
    p.setPen(QPen(Qt::white, std::max(1.5, 6 * f.scale), Qt::SolidLine, Qt::RoundCap));
    p.drawLine(c, f.px(pose.centre + kBodyRadius * direction(pose.heading)));
}

}  // namespace world
