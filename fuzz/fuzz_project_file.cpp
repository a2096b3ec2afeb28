// The project file reader on any bytes: a file is taken whole or refused with a message, and
// what is taken writes back to a file that reads to the same entries, bit for bit (a NaN is the
// same NaN, and -0 keeps its sign).
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

#include "project_file.h"

namespace {

using kestrone::Variant;
using kestrone::VarType;

bool same_bits(const Variant& a, const Variant& b) {
    if (a.is_array() != b.is_array() || a.type() != b.type()) return false;
    if (a.is_array()) {
        const auto &x = a.as_array(), &y = b.as_array();
        if (x.lower != y.lower || x.items.size() != y.items.size()) return false;
        for (std::size_t k = 0; k < x.items.size(); ++k)
            if (!same_bits(x.items[k], y.items[k])) return false;
        return true;
    }
    switch (a.type()) {
        case VarType::Single:
            return std::bit_cast<std::uint32_t>(a.as_single()) ==
                   std::bit_cast<std::uint32_t>(b.as_single());
        case VarType::Double:
            return std::bit_cast<std::uint64_t>(a.as_double()) ==
                   std::bit_cast<std::uint64_t>(b.as_double());
        default:
            return a == b;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::string error;
    const auto entries = host::decode_project(bytes, &error);
    if (!entries) {
        if (error.empty()) __builtin_trap();
        return 0;
    }
    const auto again = host::decode_project(host::encode_project(*entries), &error);
    if (!again || again->size() != entries->size()) __builtin_trap();
    for (std::size_t k = 0; k < entries->size(); ++k)
        if ((*again)[k].key != (*entries)[k].key ||
            !same_bits((*again)[k].value, (*entries)[k].value))
            __builtin_trap();
    return 0;
}
