// Tagged values of every kind from a seed, for the tests of their written forms: floats from raw
// bits and their edges (±0, ±infinity, NaN with and without a payload), strings of bytes that are
// and are not UTF-8, typed arrays and Variant arrays within one another.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "kestrone/variant.h"

namespace testing_support {

class RandomValues {
    using Variant = kestrone::Variant;
    using VarType = kestrone::VarType;

  public:
    // Without `scalar_bytes` no Byte stands alone: the console writes one as a bare number.
    RandomValues(std::uint32_t seed, bool scalar_bytes) : rng_(seed), scalar_bytes_(scalar_bytes) {}

    Variant value(int depth = 0) {
        constexpr VarType kKinds[] = {VarType::Empty,   VarType::Integer, VarType::Long,
                                      VarType::Single,  VarType::Double,  VarType::String,
                                      VarType::Boolean, VarType::Byte,    VarType::Variant};
        const VarType t = kKinds[below(depth < 3 ? 9 : 8)];
        if (below(4) == 0 && t != VarType::Empty) {  // an array of t, a Variant one of anything
            std::vector<Variant> items(below(4));
            for (auto& item : items)
                item = t == VarType::Variant ? value(depth + 1) : scalar(t);
            const std::int32_t lower =
                below(2) ? -3 : INT32_MAX - std::max(static_cast<int>(items.size()), 1) + 1;
            return Variant::array(t, lower, std::move(items));
        }
        return scalar(t == VarType::Byte && !scalar_bytes_ ? VarType::Long : t);
    }

  private:
    int below(int n) { return static_cast<int>(rng_() % static_cast<unsigned>(n)); }

    // Random bits, or bits with the sign and exponent of an edge: ±0, ±infinity, NaN with a
    // random payload, the quiet NaN.
    template <class U>
    U float_bits(U r) {
        constexpr U kSign = U{1} << (sizeof(U) * 8 - 1),
                    kQuiet = kSign >> (sizeof(U) == 4 ? 9 : 12);
        constexpr U kExponent = sizeof(U) == 4 ? 0x7F800000 : 0x7FF0000000000000;
        const U sign = r & kSign;
        const U edges[] = {r, r, sign, sign | kExponent, r | kExponent, sign | kExponent | kQuiet};
        return edges[below(6)];
    }

    Variant scalar(VarType t) {
        // Quotes, escapes, control bytes, UTF-8 of every length, and bytes that are not UTF-8.
        // clang-format off
        static const char* const kPieces[] = {
            "a", "\"", "\\", "\x01", "\n", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF",
            "\xC0\x80", "\xED\xA0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80"};
        // clang-format on
        std::string s;
        switch (t) {
            case VarType::Integer:
                return Variant::integer(static_cast<std::int16_t>(rng_()));
            case VarType::Long:
                return Variant::long_(static_cast<std::int32_t>(rng_()));
            case VarType::Byte:
                return Variant::byte(static_cast<std::uint8_t>(rng_()));
            case VarType::Boolean:
                return Variant::boolean(rng_() & 1);
            case VarType::Single:
                return Variant::single(std::bit_cast<float>(float_bits<std::uint32_t>(rng_())));
            case VarType::Double:
                return Variant::double_(std::bit_cast<double>(
                    float_bits<std::uint64_t>(std::uint64_t{rng_()} << 32 | rng_())));
            case VarType::String:
                for (int n = below(6); n > 0; --n)
                    s += kPieces[below(14)];
                if (below(8) == 0) s.push_back('\0');
                return Variant::string(std::move(s));
            default:
                return Variant();
        }
    }

    std::mt19937 rng_;
    bool scalar_bytes_;
};

// Equal kind for kind and bit for bit: a NaN equals a NaN with the same bits, -0 is not 0.
inline bool same_bits(const kestrone::Variant& a, const kestrone::Variant& b) {
    using kestrone::VarType;
    if (a.is_array() || b.is_array()) {
        if (!a.is_array() || !b.is_array()) return false;
        const auto &x = a.as_array(), &y = b.as_array();
        bool same =
            x.element == y.element && x.lower == y.lower && x.items.size() == y.items.size();
        for (std::size_t i = 0; same && i < x.items.size(); ++i)
            same = same_bits(x.items[i], y.items[i]);
        return same;
    }
    if (a.type() == VarType::Single && b.type() == VarType::Single)
        return std::bit_cast<std::uint32_t>(a.as_single()) ==
               std::bit_cast<std::uint32_t>(b.as_single());
    if (a.type() == VarType::Double && b.type() == VarType::Double)
        return std::bit_cast<std::uint64_t>(a.as_double()) ==
               std::bit_cast<std::uint64_t>(b.as_double());
    return a == b;
}

}  // namespace testing_support
