// Arithmetic on tagged values, as the runtime widens it instead of overflowing.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace vb {

using kestrone::Variant;
using kestrone::VarType;

namespace {
// The kinds of a tagged value's arithmetic, narrow to wide.
enum class NumRank { Byte, Integer, Long, Single, Double };

struct Operand {
    NumRank rank;
    std::int64_t whole = 0;
    double real = 0;
};

Operand operand_of(const Variant& v) {
    if (v.is_array()) raise_error(kTypeMismatch);
    switch (v.type()) {
        case VarType::Empty:
            return {NumRank::Integer, 0, 0};
        case VarType::Byte:
            return {NumRank::Byte, v.as_byte(), 0};
        case VarType::Boolean:
            return {NumRank::Integer, v.as_boolean() ? -1 : 0, 0};
        case VarType::Integer:
            return {NumRank::Integer, v.as_integer(), 0};
        case VarType::Long:
            return {NumRank::Long, v.as_long(), 0};
        case VarType::Single:
            return {NumRank::Single, 0, static_cast<double>(v.as_single())};
        case VarType::Double:
            return {NumRank::Double, 0, v.as_double()};
        case VarType::String:
            return {NumRank::Double, 0, text_to_double(v.as_string())};
        default:
            raise_error(kTypeMismatch);
    }
}

double real_of(const Operand& o) {
    return o.rank >= NumRank::Single ? o.real : static_cast<double>(o.whole);
}

template <class WholeOp, class RealOp>
Variant arithmetic(const Variant& a, const Variant& b, WholeOp whole_op, RealOp real_op) {
    const Operand x = operand_of(a), y = operand_of(b);
    NumRank rank = std::max(x.rank, y.rank);
    // A Single with a Long is worked as a Double.
    if (rank == NumRank::Single && (x.rank == NumRank::Long || y.rank == NumRank::Long))
        rank = NumRank::Double;
    if (rank <= NumRank::Long) {
        // Both whole: the exact result, in the narrowest kind from `rank` up that holds it.
        const std::int64_t r = whole_op(x.whole, y.whole);
        if (rank == NumRank::Byte && r >= 0 && r <= 255)
            return Variant::byte(static_cast<std::uint8_t>(r));
        if (rank <= NumRank::Integer && r >= INT16_MIN && r <= INT16_MAX)
            return Variant::integer(static_cast<std::int16_t>(r));
        if (r >= INT32_MIN && r <= INT32_MAX) return Variant::long_(static_cast<std::int32_t>(r));
        return Variant::double_(static_cast<double>(r));
    }
    if (rank == NumRank::Single) {
        const float r = real_op(static_cast<float>(real_of(x)), static_cast<float>(real_of(y)));
        if (std::isfinite(r)) return Variant::single(r);
    }
    const double r = real_op(real_of(x), real_of(y));
    if (!std::isfinite(r)) raise_error(kOverflow);
    return Variant::double_(r);
}
}  // namespace

Variant var_add(const Variant& a, const Variant& b) {
    return arithmetic(
        a, b, [](std::int64_t x, std::int64_t y) { return x + y; },
        [](auto x, auto y) { return x + y; });
}
Variant var_sub(const Variant& a, const Variant& b) {
    return arithmetic(
        a, b, [](std::int64_t x, std::int64_t y) { return x - y; },
        [](auto x, auto y) { return x - y; });
}
Variant var_mul(const Variant& a, const Variant& b) {
    return arithmetic(
        a, b, [](std::int64_t x, std::int64_t y) { return x * y; },
        [](auto x, auto y) { return x * y; });
}

}  // namespace vb
