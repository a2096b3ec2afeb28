#include "pins.h"

#include <algorithm>
#include <cstdlib>

namespace signal_log {

namespace {

constexpr std::array<PinInfo, kPinCount> kPins{{
    {"PORTD", 8},
    {"RB0", 1},
    {"RB1", 1},
    {"RB2", 1},
    {"RB3", 1},
    {"RC0", 1},
    {"RC5", 1},
    {"duty_left", 10},
    {"duty_right", 10},
    {"RB5", 1},
}};

std::int64_t duty_of(std::int32_t speed) {
    return std::min<std::int64_t>(std::abs(std::int64_t{speed}), 255) * 4;
}

std::int64_t bit(std::uint8_t reg, int n) {
    return (reg >> n) & 1;
}

// The duty's top eight bits in CCPRxL, its low two in bits 5 and 4 of CCPxCON.
std::int64_t duty_of(std::uint8_t low_register, std::uint8_t control) {
    return std::int64_t{low_register} << 2 | ((control >> 4) & 3);
}

}  // namespace

std::span<const PinInfo> pins() {
    return kPins;
}

PinValues pins_of(const Values& v) {
    return {v[kLeds] & 0xFF,    v[kSwitchLeft] != 0,    v[kSwitchRight] != 0,
            v[kLineLeft] != 0,  v[kLineRight] != 0,     v[kMotorLeft] < 0,
            v[kMotorRight] < 0, duty_of(v[kMotorLeft]), duty_of(v[kMotorRight]),
            v[kToneHz] != 0};
}

PinValues pins_of(const ChipRegisters& c) {
    return {c.portd,
            bit(c.portb, 0),
            bit(c.portb, 1),
            bit(c.portb, 2),
            bit(c.portb, 3),
            bit(c.portc, 0),
            bit(c.portc, 5),
            duty_of(c.ccpr1l, c.ccp1con),
            duty_of(c.ccpr2l, c.ccp2con),
            bit(c.portb, 5)};
}

}  // namespace signal_log
