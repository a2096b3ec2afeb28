// `kestrone-host info`: the macros and pins of a component as the host sees them.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "component_module.h"
#include "kestrone/component_v5.h"

namespace host {

// Writes the report; returns the process exit code.
int write_info(const ComponentModule& module, std::ostream& out);

// A list of macros or pins longer than this is a module's fault: the rest is counted, not listed.
inline constexpr std::size_t kMostListed = 1000;

// The component's macros as `list` names them (from its MacroNames), each with its parameters.
void write_macros(kestrone::IKestroneComponentV5& c, const kestrone::SafeArray& list,
                  std::ostream& out);
// Its pins, with their ports, bits and directions.
void write_pins(kestrone::IKestroneComponentV5& c, std::ostream& out);

}  // namespace host
