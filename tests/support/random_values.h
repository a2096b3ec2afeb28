// Tagged values of every kind from a seed, for the tests of their written forms: floats from raw
// bits and from the edges (negative zero, infinities, NaN with and without a payload), strings of
// bytes that are and are not UTF-8, typed arrays and Variant arrays within one another.
#pragma once

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "kestrone/variant.h"

namespace testing_support {

class RandomValues {
  public:
    // Without `scalar_bytes` no Byte stands alone: the console writes one as a bare number.
    RandomValues(std::uint32_t seed, bool scalar_bytes) : rng_(seed), scalar_bytes_(scalar_bytes) {}

    kestrone::Variant value(int depth = 0) {
        using kestrone::VarType;
        const int pick = below(depth < 3 ? 10 : 8);
        if (pick == 8) return typed_array();
        if (pick == 9) {
            std::vector<kestrone::Variant> items(below(4));
            for (auto& item : items)
                item = value(depth + 1);
            const std::int32_t from = lower(items.size());
            return kestrone::Variant::array(VarType::Variant, from, std::move(items));
        }
        constexpr VarType kScalars[] = {VarType::Empty,  VarType::Integer, VarType::Long,
                                        VarType::Single, VarType::Double,  VarType::Boolean,
                                        VarType::String, VarType::Byte};
        const VarType t = kScalars[pick];
        return scalar(t == VarType::Byte && !scalar_bytes_ ? VarType::Long : t);
    }

  private:
    int below(int n) { return static_cast<int>(rng_() % static_cast<unsigned>(n)); }

    kestrone::Variant scalar(kestrone::VarType t) {
        using kestrone::Variant;
        switch (t) {
            case kestrone::VarType::Integer:
                return Variant::integer(static_cast<std::int16_t>(rng_()));
            case kestrone::VarType::Long:
                return Variant::long_(static_cast<std::int32_t>(rng_()));
            case kestrone::VarType::Byte:
                return Variant::byte(static_cast<std::uint8_t>(rng_()));
            case kestrone::VarType::Boolean:
                return Variant::boolean(rng_() & 1);
            case kestrone::VarType::Single: {
                constexpr std::uint32_t kEdges[] = {0x80000000, 0x7FC00000, 0xFFC00000, 0x7F800001,
                                                    0xFFBFFFFF, 0x7F800000, 0xFF800000, 0x00000001};
                return Variant::single(std::bit_cast<float>(
                    below(3) ? static_cast<std::uint32_t>(rng_()) : kEdges[below(8)]));
            }
            case kestrone::VarType::Double: {
                constexpr std::uint64_t kEdges[] = {
                    0x8000000000000000, 0x7FF8000000000000, 0xFFF8000000000000, 0x7FF0000000000001,
                    0xFFF7FFFFFFFFFFFF, 0x7FF0000000000000, 0xFFF0000000000000, 0x1};
                return Variant::double_(std::bit_cast<double>(
                    below(3) ? (std::uint64_t{rng_()} << 32 | rng_()) : kEdges[below(8)]));
            }
            case kestrone::VarType::String: {
                // Pieces that JSON and the console each treat apart: quotes, escapes, control
                // bytes, UTF-8 of every length, and bytes that are not UTF-8 at all.
                // clang-format off
                static const char* const kPieces[] = {
                    "a", " ", "\"", "\\", "\x01", "\x7F", "\n", "\xC3\xA9", "\xE2\x82\xAC",
                    "\xF0\x9F\x98\x80", "\xFF", "\xC0\x80", "\xED\xA0\x80", "\xE0\x80\x80",
                    "\xF0\x80\x80\x80", "\xF4\x90\x80\x80"};
                // clang-format on
                std::string s;
                for (int n = below(6); n > 0; --n)
                    s += kPieces[below(16)];
                if (below(8) == 0) s.push_back('\0');
                return Variant::string(std::move(s));
            }
            default:
                return Variant();
        }
    }

    kestrone::Variant typed_array() {
        using kestrone::VarType;
        constexpr VarType kElements[] = {VarType::Integer, VarType::Long,    VarType::Single,
                                         VarType::Double,  VarType::Boolean, VarType::String,
                                         VarType::Byte};
        const VarType t = kElements[below(7)];
        std::vector<kestrone::Variant> items(below(5));
        for (auto& item : items)
            item = scalar(t);
        const std::int32_t from = lower(items.size());
        return kestrone::Variant::array(t, from, std::move(items));
    }

    // A lower bound below 0, at 0, or as high as the 32-bit upper bound allows.
    std::int32_t lower(std::size_t count) {
        const std::int32_t kLowers[] = {
            -3, 0, 1, INT32_MAX - static_cast<std::int32_t>(count) + (count ? 1 : 0)};
        return kLowers[below(4)];
    }

    std::mt19937 rng_;
    bool scalar_bytes_;
};

// Equal kind for kind and bit for bit: a NaN equals a NaN with the same bits, -0 is not 0.
inline bool same_bits(const kestrone::Variant& a, const kestrone::Variant& b) {
    using kestrone::VarType;
    if (a.is_array() != b.is_array()) return false;
    if (a.is_array()) {
        const auto &x = a.as_array(), &y = b.as_array();
        if (x.element != y.element || x.lower != y.lower || x.items.size() != y.items.size())
            return false;
        for (std::size_t i = 0; i < x.items.size(); ++i)
            if (!same_bits(x.items[i], y.items[i])) return false;
        return true;
    }
    if (a.type() != b.type()) return false;
    if (a.type() == VarType::Single)
        return std::bit_cast<std::uint32_t>(a.as_single()) ==
               std::bit_cast<std::uint32_t>(b.as_single());
    if (a.type() == VarType::Double)
        return std::bit_cast<std::uint64_t>(a.as_double()) ==
               std::bit_cast<std::uint64_t>(b.as_double());
    return a == b;
}

}  // namespace testing_support
