// The number a field, an element property or a call's result holds, as the tests read it: a true
// Boolean is -1, as the component gives it. Anything else is a failure of the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kestrone/variant.h"

inline std::int32_t variant_number(const kestrone::Variant& v, const std::string& what = {}) {
    switch (v.type()) {
        case kestrone::VarType::Integer:
            return v.as_integer();
        case kestrone::VarType::Long:
            return v.as_long();
        case kestrone::VarType::Boolean:
            return v.as_boolean() ? -1 : 0;
        case kestrone::VarType::Byte:
            return v.as_byte();
        case kestrone::VarType::Single:
            return static_cast<std::int32_t>(v.as_single());
        default:
            ADD_FAILURE() << what << " is no number";
            return -99999;
    }
}
