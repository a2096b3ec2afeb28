#include "signals.h"

namespace signal_log {

namespace {

using K = SignalKind;

constexpr std::array<SignalInfo, kSignalCount> kSignals{{
    {"motor_left", K::Number, -255, 255, ""},
    {"motor_right", K::Number, -255, 255, ""},
    {"phase_left", K::Number, 0, 10, ""},
    {"phase_right", K::Number, 0, 10, ""},
    {"leds", K::Byte, 0, 255, ""},
    {"switch_left", K::Bit, 0, 1, ""},
    {"switch_right", K::Bit, 0, 1, ""},
    {"line_left", K::Bit, 0, 1, ""},
    {"line_right", K::Bit, 0, 1, ""},
    {"ldr", K::Number, 0, 1023, ""},
    {"mic", K::Number, 0, 1023, ""},
    {"ir_left", K::Number, 0, 1023, ""},
    {"ir_forward", K::Number, 0, 1023, ""},
    {"ir_right", K::Number, 0, 1023, ""},
    {"tone_hz", K::Number, 0, 2550, "Hz"},
    {"heading", K::Number, 0, 12, ""},
    {"x", K::Number, 0, 5000, "mm"},
    {"y", K::Number, 0, 5000, "mm"},
    {"theta", K::Number, 0, 359, "degrees"},
}};

}  // namespace

std::span<const SignalInfo> signal_table() {
    return kSignals;
}

}  // namespace signal_log
