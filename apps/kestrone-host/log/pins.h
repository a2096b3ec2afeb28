// The robot's signals as the chip's pins carry them, by the robot's wiring: the view that both
// the panel's log and the chip's trace write as VCD, so that the two compare pin by pin.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "signals.h"

namespace signal_log {

enum Pin : std::uint8_t {
    kPortD,     // the LEDs, RD0 to RD7
    kRB0,       // left switch
    kRB1,       // right switch
    kRB2,       // left line sensor
    kRB3,       // right line sensor
    kRC0,       // 1 while the left motor turns backwards
    kRC5,       // 1 while the right motor turns backwards
    kDutyLeft,  // the PWM duties: CCPR1L:CCP1CON<5:4>, CCPR2L:CCP2CON<5:4>
    kDutyRight,
    kRB5,  // the sounder: on the panel 1 while a tone sounds, on the chip its square wave
    kPinCount
};

struct PinInfo {
    std::string_view name;
    int width;  // in bits
};

// Every pin, in the order the VCD declares them (indexed by Pin).
std::span<const PinInfo> pins();

using PinValues = std::array<std::int64_t, kPinCount>;

// The panel's signals as the pins would carry them: a duty is the speed's size x 4 of 1023 (a
// size above 255 is held at 255, as the chip's code holds it).
PinValues pins_of(const Values& panel);

// The chip's registers that drive the pins.
struct ChipRegisters {
    std::uint8_t portb = 0, portc = 0, portd = 0;
    std::uint8_t ccpr1l = 0, ccp1con = 0, ccpr2l = 0, ccp2con = 0;
};
PinValues pins_of(const ChipRegisters& chip);

}  // namespace signal_log
