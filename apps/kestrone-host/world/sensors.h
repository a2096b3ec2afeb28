// What the robot's sensors find where it stands: the two line sensors, the two bumpers, the
// light on its LDR and the three infrared rays, each as the world sets the panel's input.
#pragma once

#include "arena.h"

namespace world {

// Where each sensor looks, in millimetres and radians of the body's own frame.
inline constexpr double kLineAhead = 50, kLineAside = 15;
inline constexpr double kBumperReach = 63;
inline constexpr double kBumperSide = kPi / 2, kBumperAhead = kPi / 18;  // 90 and 10 degrees
inline constexpr double kLightScale = 200, kRayRange = 300;
inline constexpr double kRayLeft = kPi / 4, kRayRight = -kPi / 4;

struct Readings {
    bool line_left = false, line_right = false;
    bool switch_left = false, switch_right = false;
    // Fractions of full scale, 0 to 1: the LDR, then the rays left, forward and right.
    double ldr = 0, left = 0, forward = 0, right = 0;
};

// The floor under the line sensor on the left (`left`) or the right.
Vec line_sensor_point(const Pose& pose, bool left);
bool on_a_line(const Arena& arena, Vec p);
// A ray's reading at `angle` to the heading: 1 at the body's rim, 0 from kRayRange beyond it.
double ray_reading(const Arena& arena, const Pose& pose, double angle);
double light_reading(const Arena& arena, Vec centre);

Readings sense(const Arena& arena, const Pose& pose);

}  // namespace world
