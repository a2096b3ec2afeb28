#include "error_text.h"

#include <cstdio>

#include "platform/basic_error.h"

namespace console {

std::string error_text(int number) {
    return std::string(vb::error_description(number));
}

std::string status_text(kestrone::HRESULT status) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "0x%08X", static_cast<unsigned>(status));
    return buf;
}

}  // namespace console
