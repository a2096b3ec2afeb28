// `kestrone-host info`: the macros and pins of a component as the host sees them.
#pragma once

#include <iosfwd>

#include "module_host.h"

namespace host {

// Writes the report; returns the process exit code.
int write_info(const ModuleHost& module, std::ostream& out);

}  // namespace host
