// The robot's motion: a differential drive whose wheels keep their speeds over a step, so that
// the body follows an exact arc, and the walls that keep the body out.
#pragma once

#include "arena.h"

namespace world {

// The world's step, in milliseconds of the panel's clock.
inline constexpr int kStepMs = 10;

// The pose after `seconds` with the left and right wheels at these speeds (mm/s): a straight
// line when they are equal, else an arc about the point where the wheels' paths meet.
Pose drive(const Pose& from, double left_speed, double right_speed, double seconds);

// True while the body's centre is at least its radius from every wall.
bool clear_of_walls(const Arena& arena, Vec centre);

}  // namespace world
