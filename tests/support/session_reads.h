// A host session read as the tests read it: a field, an element's property or an element's id.
// The session's refusal fails the test.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "component_session.h"
#include "support/variant_number.h"

namespace testing_support {

// An index of -1: none.
inline std::optional<std::int32_t> optional_index(std::int32_t index) {
    return index < 0 ? std::nullopt : std::optional<std::int32_t>(index);
}

inline std::int32_t session_field(host::ComponentSession& s, const std::string& name,
                                  std::int32_t index = -1) {
    kestrone::Variant v;
    EXPECT_EQ(s.field(name, optional_index(index), "", &v), kestrone::S_OK) << name;
    return variant_number(v, name);
}

inline std::int32_t session_property(host::ComponentSession& s, const std::string& element,
                                     std::int32_t index, const std::string& property) {
    kestrone::Variant v;
    EXPECT_EQ(s.element_property(element, optional_index(index), property, &v), kestrone::S_OK)
        << element << "." << property;
    return variant_number(v, element + "." + property);
}

inline std::int32_t session_element(host::ComponentSession& s, const std::string& element,
                                    std::int32_t index = -1) {
    std::int32_t id = -1;
    EXPECT_EQ(s.find_element(element, optional_index(index), &id), kestrone::S_OK) << element;
    return id;
}

}  // namespace testing_support
