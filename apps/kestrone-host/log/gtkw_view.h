// A GTKWave save file that shows the pins of a log: one file serves the panel's dump and the
// chip's alike, as both name their pins the same in the same module.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace signal_log {

// The module both dumps declare their pins in.
inline constexpr std::string_view kPinScope = "panel";

// The pins, digital lanes first, for `dump_file` (which a viewer given another dump ignores).
void write_gtkw(std::ostream& out, const std::string& dump_file);

}  // namespace signal_log
