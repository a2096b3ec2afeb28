// Texts for the statuses a component answers with.
#pragma once

#include <string>

#include "kestrone/status.h"

namespace console {

// The runtime's description of a Basic error number.
std::string error_text(int number);
// A status that carries no Basic error, in hexadecimal.
std::string status_text(kestrone::HRESULT status);

}  // namespace console
