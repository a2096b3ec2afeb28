// The floor of an arena drawn from above, to scale: its zones, lines, walls, lights and the zones'
// names. The world's view and the arena's editor draw it alike.
#pragma once

#include <QColor>
#include <QPointF>

#include "arena.h"

class QPainter;

namespace world {

// Pixels a millimetre, the pixel of the floor's upper left corner and the floor's height: y runs
// up on the floor and down on the screen.
struct FloorFrame {
    double scale = 1;
    QPointF origin;
    double height = 0;
    QPointF px(Vec floor) const {
        return {origin.x() + floor.x * scale, origin.y() + (height - floor.y) * scale};
    }
    Vec floor(QPointF px) const {
        return {(px.x() - origin.x()) / scale, height - (px.y() - origin.y()) / scale};
    }
};

void paint_floor(QPainter& p, const Arena& arena, const FloorFrame& f);
// The robot's round body and a stroke along its heading.
void paint_body(QPainter& p, const Pose& pose, const FloorFrame& f);

inline const QColor kFloorColour(0xfa, 0xf8, 0xf0);

}  // namespace world
