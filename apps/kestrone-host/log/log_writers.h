// A log's files: CSV, a row per moment with every signal, and VCD, the signals as the chip's
// pins carry them (pins.h) with the pose while an arena was loaded.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "signal_log.h"

namespace signal_log {

// The header `time_ms,motor_left,...`, then the first moment and every moment that changed
// something, x, y and theta empty without an arena. Returns the moments after the first.
std::size_t write_csv(const SignalLog& log, std::ostream& out);

// `$timescale 1 us`, module `panel`: the pins, then x, y and theta as integers when an arena was
// loaded at some moment (x while none is). Returns the moments written after the first: those
// where a pin or the pose changed.
std::size_t write_vcd(const SignalLog& log, std::ostream& out);

}  // namespace signal_log
