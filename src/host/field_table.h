// The component's fields by name, as the inspection interface reads them.
#pragma once

#include <cstdint>
#include <string_view>

#include "host/rovanta_component.h"

namespace rovanta {

enum class FieldLookup { Found, UnknownField, UnknownMember };

// NAME, NAME(index) or NAME(index).member. An array without an index is given whole; an index
// outside an array raises error 9.
FieldLookup read_field(const Rovanta& r, std::string_view name, const std::int32_t* index,
                       std::string_view member, Variant& out);

}  // namespace rovanta
