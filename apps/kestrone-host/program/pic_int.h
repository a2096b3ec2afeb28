// The integer rules of the robot's chip, in one place: a program's arithmetic is done in 16-bit
// signed integers that wrap, a byte keeps the low 8 bits, and the few operations that C leaves
// open (division and remainder of the lowest value by -1, shifts of negative values or by 16 and
// more) have one meaning here that the C program reproduces with helpers of its own.
#pragma once

#include <cstdint>

#include "syntax.h"

namespace kflow::pic {

using Int = std::int16_t;

// The low 16 bits as a signed value: the chip's int.
constexpr Int wrap(std::int32_t x) {
    return static_cast<Int>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(x)));
}
// The low 8 bits, 0 to 255: what a byte or an unsigned char keeps.
constexpr Int low_byte(std::int32_t x) {
    return static_cast<Int>(static_cast<std::uint32_t>(x) & 0xFFu);
}
// The low 8 bits as a signed value, -128 to 127: a signed char.
constexpr Int signed_byte(std::int32_t x) {
    return static_cast<Int>(static_cast<std::int8_t>(static_cast<std::uint8_t>(x)));
}
// A count for delay and repeat: the value's bits read as 0 to 65535.
constexpr std::uint16_t as_unsigned(Int x) {
    return static_cast<std::uint16_t>(x);
}

constexpr Int add(Int a, Int b) {
    return wrap(std::int32_t{a} + b);
}
constexpr Int sub(Int a, Int b) {
    return wrap(std::int32_t{a} - b);
}
constexpr Int mul(Int a, Int b) {
    return wrap(std::int32_t{a} * b);
}
constexpr Int neg(Int a) {
    return wrap(-std::int32_t{a});
}
// C's division: the quotient truncated toward zero; -32768 / -1 wraps to -32768. The caller
// has made sure that b is not 0.
constexpr Int div(Int a, Int b) {
    return wrap(std::int32_t{a} / b);
}
// C's remainder: the sign of the dividend; -32768 % -1 is 0. b is not 0.
constexpr Int rem(Int a, Int b) {
    return wrap(std::int32_t{a} % b);
}
// Shift counts are read as 0 to 65535; from 16 on every bit is shifted out.
constexpr Int shl(Int a, Int n) {
    const std::uint16_t count = as_unsigned(n);
    if (count > 15) return 0;
    return wrap(static_cast<std::int32_t>(static_cast<std::uint32_t>(as_unsigned(a)) << count));
}
// An arithmetic shift: the sign is kept, so -7 >> 1 is -4 (rounds down, unlike -7 / 2).
constexpr Int shr(Int a, Int n) {
    const std::uint16_t count = as_unsigned(n);
    return wrap(std::int32_t{a} >> (count > 15 ? 15 : count));
}

// A unary operator on a value: -, ! (1 or 0) or ~.
constexpr Int unary(Op op, Int a) {
    switch (op) {
        case Op::Negate:
            return neg(a);
        case Op::Not:
            return a == 0;
        default:
            return static_cast<Int>(~a);
    }
}

// A binary operator on two values: 1 or 0 for a comparison, && and ||. The caller has made sure
// that a divisor is not 0, and evaluates the right side of && and || only where the left leaves
// the answer open.
constexpr Int apply(Op op, Int a, Int b) {
    switch (op) {
        case Op::Multiply:
            return mul(a, b);
        case Op::Divide:
            return div(a, b);
        case Op::Remainder:
            return rem(a, b);
        case Op::Add:
            return add(a, b);
        case Op::Subtract:
            return sub(a, b);
        case Op::ShiftLeft:
            return shl(a, b);
        case Op::ShiftRight:
            return shr(a, b);
        case Op::Less:
            return a < b;
        case Op::LessEqual:
            return a <= b;
        case Op::Greater:
            return a > b;
        case Op::GreaterEqual:
            return a >= b;
        case Op::Equal:
            return a == b;
        case Op::NotEqual:
            return a != b;
        case Op::BitAnd:
            return static_cast<Int>(a & b);
        case Op::BitXor:
            return static_cast<Int>(a ^ b);
        case Op::BitOr:
            return static_cast<Int>(a | b);
        case Op::And:
            return a != 0 && b != 0;
        case Op::Or:
            return a != 0 || b != 0;
        default:
            return 0;
    }
}

}  // namespace kflow::pic
