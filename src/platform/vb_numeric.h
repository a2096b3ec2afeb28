// The runtime's numeric rules, in one place: rounding to nearest with ties to even, checked
// 16-bit and 32-bit conversions and arithmetic, Single as float, text to number and to Boolean,
// and the conversions of tagged values. Every failure is a Basic error (6 overflow, 13 type
// mismatch).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "kestrone/variant.h"

namespace vb {

using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;

// Nearest whole number, a tie to the even one.
double round_half_even(double x);

// Floating value to integer type: rounded, then range-checked (error 6).
Integer cint(double x);
Long clng(double x);
// Double to Single: error 6 beyond the float range.
Single csng(double x);
// Whole value to a narrower type (error 6 out of range).
Integer cint(std::int64_t x);
Long clng(std::int64_t x);
inline Integer cint(int x) {
    return cint(static_cast<std::int64_t>(x));
}
inline Long clng(int x) {
    return clng(static_cast<std::int64_t>(x));
}

// Checked arithmetic in the width of the operands (error 6 on overflow).
Integer add(Integer a, Integer b);
Integer sub(Integer a, Integer b);
Integer mul(Integer a, Integer b);
Long add(Long a, Long b);
Long sub(Long a, Long b);
Long mul(Long a, Long b);

// Single arithmetic: computed in float, error 6 when the result leaves the float range,
// error 11 for a division by zero.
Single fadd(Single a, Single b);
Single fsub(Single a, Single b);
Single fmul(Single a, Single b);
Single fdiv(Single a, Single b);

// Arithmetic on tagged values, as the runtime widens it: Byte, Integer, Long go to the next
// wider kind instead of overflowing, and at last to Double; Single widens to Double, and a
// Single with a Long is a Double; text is read as a Double; Empty is 0. Only a Double that leaves its range overflows (error 6).
kestrone::Variant var_add(const kestrone::Variant& a, const kestrone::Variant& b);
kestrone::Variant var_sub(const kestrone::Variant& a, const kestrone::Variant& b);
kestrone::Variant var_mul(const kestrone::Variant& a, const kestrone::Variant& b);

// Text to number: blanks around, a sign, a decimal point and an exponent; the whole text must be
// the number (error 13). A fraction rounds on the digits as written, ties to even.
Integer text_to_integer(std::string_view text);
Long text_to_long(std::string_view text);
double text_to_double(std::string_view text);
// "True"/"False" in any case, else a number: 0 is False, anything else True (error 13).
bool text_to_boolean(std::string_view text);

// CStr of numbers: plain digits, "-" before a negative value, no blank.
std::string cstr(std::int64_t x);
std::string cstr(double x, bool single_precision);
// Str: as CStr, with a blank before a number that is not negative.
std::string str(std::int64_t x);

// Tagged values to the runtime's types, as an assignment would convert them.
Integer to_integer(const kestrone::Variant& v);
Long to_long(const kestrone::Variant& v);
Single to_single(const kestrone::Variant& v);
double to_double(const kestrone::Variant& v);
bool to_boolean(const kestrone::Variant& v);
std::string to_string(const kestrone::Variant& v);
std::uint8_t to_byte(const kestrone::Variant& v);
// A tagged value converted to the scalar kind `type`; VarType::Variant keeps it as it is.
kestrone::Variant coerce(const kestrone::Variant& v, kestrone::VarType type);

// The Boolean of the runtime, as a number: True is -1.
inline Integer boolean_value(bool b) {
    return b ? Integer{-1} : Integer{0};
}

}  // namespace vb
