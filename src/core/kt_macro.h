// KTMacro: one macro of the robot as the host sees it.
#pragma once

#include <string>

#include "kestrone/variant.h"

namespace rovanta {

struct KTMacro {
    std::string MacroName;  // name|name|return type
    bool IsFunction = false;
    bool IsPrivate = false;
    kestrone::Variant MacroParams;  // array of name|name|type strings, or an empty Variant array
};

}  // namespace rovanta
