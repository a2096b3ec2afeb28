// The world's hold on the component: what it reads of the motors and the sensors, and the
// user's inputs it works. The session gives the real one (session_port.h); a test may give its
// own.
#pragma once

#include <cstdint>
#include <optional>

namespace world {

enum class CheckInput : std::uint8_t { LineLeft, LineRight, SwitchLeft, SwitchRight };

class PanelPort {
  public:
    virtual ~PanelPort() = default;
    // What the component holds; nullopt when it can't be read.
    virtual std::optional<bool> simulating() = 0;
    virtual std::optional<std::int32_t> motor_speed(int motor) = 0;
    virtual std::optional<std::int32_t> full_scale() = 0;
    virtual std::optional<std::int32_t> sensor_value(int sensor) = 0;
    // A check box's Value: 0, 1 (ticked) or 2.
    virtual std::optional<std::int32_t> check_value(CheckInput input) = 0;
    // The user's click on the box, and on the arrow of a sensor's UpDown that moves its value
    // up (`raise`) or down. False when nothing was delivered.
    virtual bool click(CheckInput input) = 0;
    virtual bool arrow(int sensor, bool raise) = 0;
};

}  // namespace world
