#include "motion.h"

namespace world {

Pose drive(const Pose& from, double left_speed, double right_speed, double seconds) {
    const double v = (left_speed + right_speed) / 2;
    const double turn = (right_speed - left_speed) / kWheelBase * seconds;  // radians
    Pose to = from;
    if (turn == 0) {
        to.centre = from.centre + (v * seconds) * direction(from.heading);
        return to;
    }
    // About the centre of the turn, at radius v / omega from the body's centre.
    const double radius = v * seconds / turn;
    const double h0 = from.heading, h1 = from.heading + turn;
    to.centre = from.centre +
                Vec{radius * (std::sin(h1) - std::sin(h0)), radius * (std::cos(h0) - std::cos(h1))};
    to.heading = wrap_angle(h1);
    return to;
}

bool clear_of_walls(const Arena& arena, Vec centre) {
    for (const Segment& wall : arena.walls)
        if (distance(wall, centre) < kBodyRadius) return false;
    return true;
}

}  // namespace world
