#include "sensors.h"

#include <algorithm>

namespace world {

Vec line_sensor_point(const Pose& pose, bool left) {
    const Vec ahead = direction(pose.heading);
    const Vec aside{-ahead.y, ahead.x};  // a quarter turn to the left
    return pose.centre + kLineAhead * ahead + (left ? kLineAside : -kLineAside) * aside;
}

bool on_a_line(const Arena& arena, Vec p) {
    for (const Line& line : arena.lines)
        for (std::size_t i = 1; i < line.points.size(); ++i)
            if (distance(Segment{line.points[i - 1], line.points[i]}, p) <= line.width / 2)
                return true;
    return false;
}

double ray_reading(const Arena& arena, const Pose& pose, double angle) {
    const Vec dir = direction(pose.heading + angle);
    std::optional<double> nearest;
    for (const Segment& wall : arena.walls)
        if (const auto t = ray_hit(pose.centre, dir, wall); t && (!nearest || *t < *nearest))
            nearest = t;
    if (!nearest) return 0;
    const double gap = *nearest - kBodyRadius;
    return std::clamp(1 - gap / kRayRange, 0.0, 1.0);
}

double light_reading(const Arena& arena, Vec centre) {
    double sum = 0;
    for (const Light& light : arena.lights) {
        const double d = length(light.at - centre) / kLightScale;
        sum += light.intensity / (1 + d * d);
    }
    return std::min(sum, 1.0);
}

namespace {
// The two bumpers: a wall whose nearest point lies within reach, from straight ahead round to
// each side; a touch near straight ahead presses both.
void bumpers(const Arena& arena, const Pose& pose, Readings& r) {
    for (const Segment& wall : arena.walls) {
        const Vec q = nearest_point(wall, pose.centre);
        const Vec to = q - pose.centre;
        if (length(to) > kBumperReach) continue;
        const double bearing = wrap_angle(std::atan2(to.y, to.x) - pose.heading);
        if (bearing >= -kBumperAhead && bearing <= kBumperSide) r.switch_left = true;
        if (bearing <= kBumperAhead && bearing >= -kBumperSide) r.switch_right = true;
    }
}
}  // namespace

Readings sense(const Arena& arena, const Pose& pose) {
    Readings r;
    r.line_left = on_a_line(arena, line_sensor_point(pose, true));
    r.line_right = on_a_line(arena, line_sensor_point(pose, false));
    bumpers(arena, pose, r);
    r.ldr = light_reading(arena, pose.centre);
    r.left = ray_reading(arena, pose, kRayLeft);
    r.forward = ray_reading(arena, pose, 0);
    r.right = ray_reading(arena, pose, kRayRight);
    return r;
}

}  // namespace world
