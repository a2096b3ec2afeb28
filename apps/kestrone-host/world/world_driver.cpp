#include "world_driver.h"

#include <algorithm>

namespace world {

namespace {
// A wheel's speed is its motor's, which the component keeps within this range.
constexpr std::int32_t kTopSpeed = 255;
// More arrow clicks than a sensor's whole range means the value does not follow them.
constexpr int kMostArrows = 1024;
// The analogue sensors the world sets; the microphone (1) stays the user's.
constexpr int kLdr = 0, kLeft = 2, kForward = 3, kRight = 4;
}  // namespace

void WorldDriver::step() {
    if (!world_.loaded()) return;
    if (port_.simulating().value_or(false)) {
        const auto speed = [this](int motor) {
            return static_cast<double>(
                std::clamp(port_.motor_speed(motor).value_or(0), -kTopSpeed, kTopSpeed));
        };
        world_.step(speed(0), speed(1));
    }
    sync();
}

void WorldDriver::sync() {
    if (!world_.loaded()) return;
    const Readings r = world_.readings();
    set_check(CheckInput::LineLeft, r.line_left);
    set_check(CheckInput::LineRight, r.line_right);
    set_check(CheckInput::SwitchLeft, r.switch_left);
    set_check(CheckInput::SwitchRight, r.switch_right);
    const auto full = port_.full_scale();
    if (!full) return;
    set_sensor(kLdr, r.ldr, *full);
    set_sensor(kLeft, r.left, *full);
    set_sensor(kForward, r.forward, *full);
    set_sensor(kRight, r.right, *full);
}

bool WorldDriver::load_file(const std::string& path, std::string* error) {
    if (!world_.load_file(path, error)) return false;
    sync();
    return true;
}

void WorldDriver::reset() {
    world_.reset();
    sync();
}

// A click toggles 0 and 1 and takes 2 to 0: two clicks at most.
void WorldDriver::set_check(CheckInput input, bool ticked) {
    for (int i = 0; i < 2; ++i) {
        const auto value = port_.check_value(input);
        if (!value || *value == (ticked ? 1 : 0)) return;
        if (!port_.click(input)) return;
    }
}

void WorldDriver::set_sensor(int sensor, double fraction, std::int32_t full_scale) {
    const auto target = static_cast<std::int32_t>(nearest_whole(fraction * full_scale));
    auto value = port_.sensor_value(sensor);
    for (int i = 0; i < kMostArrows && value && *value != target; ++i) {
        if (!port_.arrow(sensor, target > *value)) return;
        const auto after = port_.sensor_value(sensor);
        if (after == value) return;  // held at an end of its range
        value = after;
    }
}

}  // namespace world
