#include "world_driver.h"

#include <algorithm>

namespace world {

namespace {
// A wheel's speed is its motor's, which the component keeps within this range.
constexpr std::int32_t kTopSpeed = 255;
// More arrow clicks than a sensor's whole range means the value does not follow them.
constexpr int kMostArrows = 1024;
// The analogue sensors the world sets, in the order of the readings; the microphone (1) stays
// the user's.
constexpr std::array<int, 4> kSensors{0, 2, 3, 4};
constexpr std::array<CheckInput, 4> kChecks{CheckInput::LineLeft, CheckInput::LineRight,
                                            CheckInput::SwitchLeft, CheckInput::SwitchRight};
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
    follow_readings();
}

void WorldDriver::sync() {
    forget();
    follow_readings();
}

void WorldDriver::follow_readings() {
    if (!world_.loaded()) return;
    const Readings r = world_.readings();
    const std::array<bool, 4> ticked{r.line_left, r.line_right, r.switch_left, r.switch_right};
    for (std::size_t i = 0; i < kChecks.size(); ++i) {
        const Setting s{ticked[i] ? 1 : 0, 0};
        if (settled_[i] != s && set_check(kChecks[i], ticked[i])) settled_[i] = s;
    }
    const auto full = port_.full_scale();
    if (!full) return;
    const std::array<double, 4> fraction{r.ldr, r.left, r.forward, r.right};
    for (std::size_t i = 0; i < kSensors.size(); ++i) {
        const Setting s{static_cast<std::int32_t>(nearest_whole(fraction[i] * *full)), *full};
        auto& settled = settled_[kChecks.size() + i];
        if (settled != s && set_sensor(kSensors[i], s.value)) settled = s;
    }
}

bool WorldDriver::load_file(const std::string& path, std::string* error) {
    if (!world_.load_file(path, error)) return false;
    sync();
    return true;
}

bool WorldDriver::load_text(std::string_view text, const std::string& name, std::string* error) {
    if (!world_.load_text(text, name, error)) return false;
    sync();
    return true;
}

void WorldDriver::reset() {
    world_.reset();
    sync();
}

// A click toggles 0 and 1 and takes 2 to 0: two clicks at most.
bool WorldDriver::set_check(CheckInput input, bool ticked) {
    for (int i = 0; i < 2; ++i) {
        const auto value = port_.check_value(input);
        if (!value) return false;
        if (*value == (ticked ? 1 : 0)) return true;
        if (!port_.click(input)) return false;
    }
    return port_.check_value(input) == (ticked ? 1 : 0);
}

bool WorldDriver::set_sensor(int sensor, std::int32_t target) {
    auto value = port_.sensor_value(sensor);
    for (int i = 0; i < kMostArrows && value && *value != target; ++i) {
        if (!port_.arrow(sensor, target > *value)) return false;
        const auto after = port_.sensor_value(sensor);
        if (after == value) return true;  // held at an end of its range: as near as it goes
        value = after;
    }
    return value.has_value();
}

}  // namespace world
