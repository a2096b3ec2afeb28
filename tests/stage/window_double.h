// A stand-in for the window, driving the stage as a window does: its timer brings the clock to
// real time in uneven steps, its message box stays open while its event loop runs on (time passes,
// the user clicks at the panel behind it), and its tone lasts as long as it sounds.
#pragma once

#include <cstdint>
#include <string>

#include "support/stage_robot.h"

namespace stage_testing {

class WindowDouble : public testing_support::StageRobot {
  public:
    // The window's timer fires `gap` milliseconds of real time after the last: the stage's
    // clock is brought there. The ticks raised.
    std::int64_t elapse(std::int64_t gap);
    // The robot's motors through macro 9, SetMotors: forward at these speeds, 0 to 255.
    void set_motors(std::int16_t left, std::int16_t right) { macro(9, {0, left, 0, right}); }

  private:
    std::int64_t real_now_ = 0;
};

// The path of a file of examples/.
std::string example_path(const std::string& name);

}  // namespace stage_testing
