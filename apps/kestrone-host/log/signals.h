// The robot's signals as a log records them: their names in the log's order, what kind of trace
// each makes, and a moment's values. The panel's log, its files and a view of it share these.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace signal_log {

enum Signal : std::uint8_t {
    kMotorLeft,
    kMotorRight,
    kPhaseLeft,
    kPhaseRight,
    kLeds,
    kSwitchLeft,
    kSwitchRight,
    kLineLeft,
    kLineRight,
    kLdr,
    kMic,
    kIrLeft,
    kIrForward,
    kIrRight,
    kToneHz,
    kHeading,
    kX,
    kY,
    kTheta,
    kSignalCount
};

// How a view draws a signal: a number's trace, one digital lane, or eight lanes of a byte.
enum class SignalKind : std::uint8_t { Number, Bit, Byte };

struct SignalInfo {
    std::string_view name;
    SignalKind kind;
    std::int32_t low, high;  // the usual range, for a view's scale (a signal may leave it)
    std::string_view unit;
};

// Every signal, in the log's order (indexed by Signal).
std::span<const SignalInfo> signal_table();

using Values = std::array<std::int32_t, kSignalCount>;
using SignalSet = std::bitset<kSignalCount>;

// x, y and theta while no arena is loaded: an empty cell, an unknown value.
inline constexpr std::int32_t kAbsent = std::numeric_limits<std::int32_t>::min();

// A moment of the log: its time in milliseconds from the log's start, every signal's value then,
// and the signals that changed at it (all of them at the first).
struct Moment {
    std::int64_t at_ms = 0;
    Values values{};
    SignalSet changed;
};

}  // namespace signal_log
