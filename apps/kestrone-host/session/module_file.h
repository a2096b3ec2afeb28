// A module file checked against its own headers before the loader maps it: a file cut short or
// of garbage would otherwise be mapped past its end and fault on first touch.
#pragma once

#include <string>

namespace host {

// Empty when `path` is a whole shared object for this machine: a regular file whose ELF
// header, program headers, segments and section headers all lie within it. Else what is wrong,
// in words (the caller names the file).
std::string check_module_file(const std::string& path);

}  // namespace host
