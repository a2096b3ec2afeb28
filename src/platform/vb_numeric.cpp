#include "platform/vb_numeric.h"

#include <algorithm>
#include <cfenv>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "platform/basic_error.h"

namespace vb {

using kestrone::Variant;
using kestrone::VarType;

double round_half_even(double x) {
    // nearbyint rounds in the current mode, which is to nearest with ties to even.
    return std::nearbyint(x);
}

namespace {
template <class T>
T narrow_whole(std::int64_t x) {
    if (x < std::numeric_limits<T>::min() || x > std::numeric_limits<T>::max())
        raise_error(kOverflow);
    return static_cast<T>(x);
}

template <class T>
T narrow_float(double x) {
    if (std::isnan(x)) raise_error(kOverflow);
    const double r = round_half_even(x);
    if (r < static_cast<double>(std::numeric_limits<T>::min()) ||
        r > static_cast<double>(std::numeric_limits<T>::max()))
        raise_error(kOverflow);
    return static_cast<T>(r);
}

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

// A number in text, split into its parts: value = sign * digits * 10^exponent.
struct DecimalText {
    bool negative = false;
    std::string digits;  // without leading zeros; empty means zero
    std::int64_t exponent = 0;
};

// Far beyond any range and any text's length, so that clamping an exponent changes no result.
constexpr std::int64_t kExponentCap = std::int64_t{1} << 50;

DecimalText parse_decimal(std::string_view text) {
    std::size_t i = 0, n = text.size();
    while (i < n && is_blank(text[i]))
        ++i;
    while (n > i && is_blank(text[n - 1]))
        --n;
    DecimalText d;
    if (i < n && (text[i] == '+' || text[i] == '-')) d.negative = text[i++] == '-';
    bool any_digit = false, seen_point = false;
    for (; i < n; ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            any_digit = true;
            if (!(d.digits.empty() && c == '0')) d.digits.push_back(c);
            if (seen_point) --d.exponent;
        } else if (c == '.' && !seen_point) {
            seen_point = true;
        } else {
            break;
        }
    }
    if (!any_digit) raise_error(kTypeMismatch);
    if (i < n && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool exp_negative = false;
        if (i < n && (text[i] == '+' || text[i] == '-')) exp_negative = text[i++] == '-';
        if (i >= n) raise_error(kTypeMismatch);
        std::int64_t e = 0;
        for (; i < n && text[i] >= '0' && text[i] <= '9'; ++i)
            e = std::min<std::int64_t>(e * 10 + (text[i] - '0'), kExponentCap);
        d.exponent += exp_negative ? -e : e;
    }
    if (i != n) raise_error(kTypeMismatch);
    // Any number of digits may stand; trailing zeros only move the exponent.
    const std::size_t kept = d.digits.find_last_not_of('0');
    const std::size_t zeros = kept == std::string::npos ? 0 : d.digits.size() - kept - 1;
    d.digits.resize(d.digits.size() - zeros);
    d.exponent += static_cast<std::int64_t>(zeros);
    return d;
}

// The decimal rounded to a whole number on its digits as written, ties to even; error 6 past
// the 64-bit range (every caller narrows further).
std::int64_t round_decimal(const DecimalText& d) {
    if (d.digits.empty()) return 0;
    const std::int64_t len = static_cast<std::int64_t>(d.digits.size());
    const std::int64_t whole_len = len + d.exponent;  // digits before the point
    if (whole_len > 19) raise_error(kOverflow);
    std::uint64_t whole = 0;
    for (std::int64_t k = 0; k < whole_len; ++k) {
        const int digit = k < len ? d.digits[static_cast<std::size_t>(k)] - '0' : 0;
        if (whole > (std::numeric_limits<std::uint64_t>::max() - 9) / 10) raise_error(kOverflow);
        whole = whole * 10 + static_cast<std::uint64_t>(digit);
    }
    if (whole_len < len) {
        // Compare the fraction with one half.
        const std::int64_t first = std::max<std::int64_t>(whole_len, 0);
        const int lead = whole_len >= 0 ? d.digits[static_cast<std::size_t>(first)] - '0' : 0;
        bool rest_nonzero = false;
        for (std::int64_t k = first + 1; k < len; ++k)
            if (d.digits[static_cast<std::size_t>(k)] != '0') rest_nonzero = true;
        if (whole_len < 0) rest_nonzero = true;  // 0.0ddd is below one half but not zero
        const bool up =
            whole_len >= 0 ? (lead > 5 || (lead == 5 && (rest_nonzero || (whole & 1)))) : false;
        if (up) ++whole;
    }
    if (whole > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        raise_error(kOverflow);
    return d.negative ? -static_cast<std::int64_t>(whole) : static_cast<std::int64_t>(whole);
}
}  // namespace

Integer cint(double x) {
    return narrow_float<Integer>(x);
}
Long clng(double x) {
    return narrow_float<Long>(x);
}
Integer cint(std::int64_t x) {
    return narrow_whole<Integer>(x);
}
Long clng(std::int64_t x) {
    return narrow_whole<Long>(x);
}

Single csng(double x) {
    if (std::isfinite(x) && std::fabs(x) > static_cast<double>(FLT_MAX)) raise_error(kOverflow);
    return static_cast<Single>(x);
}

Integer add(Integer a, Integer b) {
    return cint(std::int64_t{a} + b);
}
Integer sub(Integer a, Integer b) {
    return cint(std::int64_t{a} - b);
}
Integer mul(Integer a, Integer b) {
    return cint(std::int64_t{a} * b);
}
Long add(Long a, Long b) {
    return clng(std::int64_t{a} + b);
}
Long sub(Long a, Long b) {
    return clng(std::int64_t{a} - b);
}
Long mul(Long a, Long b) {
    return clng(std::int64_t{a} * b);
}

namespace {
Single checked_single(float r) {
    if (std::isnan(r) || std::isinf(r)) raise_error(kOverflow);
    return r;
}
}  // namespace

Single fadd(Single a, Single b) {
    return checked_single(a + b);
}
Single fsub(Single a, Single b) {
    return checked_single(a - b);
}
Single fmul(Single a, Single b) {
    return checked_single(a * b);
}
Single fdiv(Single a, Single b) {
    if (b == 0.0f) raise_error(a == 0.0f ? kOverflow : kDivisionByZero);
    return checked_single(a / b);
}

Integer text_to_integer(std::string_view text) {
    return cint(round_decimal(parse_decimal(text)));
}
Long text_to_long(std::string_view text) {
    return clng(round_decimal(parse_decimal(text)));
}

double text_to_double(std::string_view text) {
    const DecimalText d = parse_decimal(text);  // validates the form
    std::string clean;
    clean.reserve(d.digits.size() + 24);
    if (d.negative) clean.push_back('-');
    clean += d.digits.empty() ? "0" : d.digits;
    clean += "e" + std::to_string(d.exponent);
    const double v = std::strtod(clean.c_str(), nullptr);
    if (std::isinf(v)) raise_error(kOverflow);
    return v;
}

bool text_to_boolean(std::string_view text) {
    std::size_t i = 0, n = text.size();
    while (i < n && is_blank(text[i]))
        ++i;
    while (n > i && is_blank(text[n - 1]))
        --n;
    const std::string_view word = text.substr(i, n - i);
    auto equals_word = [word](std::string_view w) {
        if (word.size() != w.size()) return false;
        for (std::size_t k = 0; k < w.size(); ++k)
            if ((word[k] | 0x20) != w[k]) return false;
        return true;
    };
    if (equals_word("true")) return true;
    if (equals_word("false")) return false;
    return text_to_double(text) != 0.0;
}

std::string cstr(std::int64_t x) {
    return std::to_string(x);
}

std::string cstr(double x, bool single_precision) {
    if (x == 0) return "0";
    char buf[64];
    std::snprintf(buf, sizeof buf, single_precision ? "%.7G" : "%.15G", x);
    std::string s(buf);
    // %G keeps a zero-padded two-digit exponent; the runtime writes E+20, E-05 likewise.
    return s;
}

std::string str(std::int64_t x) {
    return x < 0 ? cstr(x) : " " + cstr(x);
}

namespace {
template <class R, class FromWhole, class FromFloat, class FromText>
R convert_scalar(const Variant& v, FromWhole whole, FromFloat floating, FromText text) {
    if (v.is_array()) raise_error(kTypeMismatch);
    switch (v.type()) {
        case VarType::Empty:
            return whole(0);
        case VarType::Integer:
            return whole(v.as_integer());
        case VarType::Long:
            return whole(v.as_long());
        case VarType::Byte:
            return whole(v.as_byte());
        case VarType::Boolean:
            return whole(v.as_boolean() ? -1 : 0);
        case VarType::Single:
            return floating(static_cast<double>(v.as_single()));
        case VarType::Double:
            return floating(v.as_double());
        case VarType::String:
            return text(v.as_string());
        default:
            raise_error(kTypeMismatch);
    }
}
}  // namespace

Integer to_integer(const Variant& v) {
    return convert_scalar<Integer>(
        v, [](std::int64_t x) { return cint(x); }, [](double x) { return cint(x); },
        [](const std::string& s) { return text_to_integer(s); });
}

Long to_long(const Variant& v) {
    return convert_scalar<Long>(
        v, [](std::int64_t x) { return clng(x); }, [](double x) { return clng(x); },
        [](const std::string& s) { return text_to_long(s); });
}

double to_double(const Variant& v) {
    return convert_scalar<double>(
        v, [](std::int64_t x) { return static_cast<double>(x); }, [](double x) { return x; },
        [](const std::string& s) { return text_to_double(s); });
}

Single to_single(const Variant& v) {
    return csng(to_double(v));
}

std::uint8_t to_byte(const Variant& v) {
    const Integer i = to_integer(v);
    if (i < 0 || i > 255) raise_error(kOverflow);
    return static_cast<std::uint8_t>(i);
}

bool to_boolean(const Variant& v) {
    if (!v.is_array() && v.type() == VarType::String) return text_to_boolean(v.as_string());
    return to_double(v) != 0.0;
}

std::string to_string(const Variant& v) {
    if (v.is_array()) raise_error(kTypeMismatch);
    switch (v.type()) {
        case VarType::Empty:
            return {};
        case VarType::String:
            return v.as_string();
        case VarType::Boolean:
            return v.as_boolean() ? "True" : "False";
        case VarType::Single:
            return cstr(static_cast<double>(v.as_single()), true);
        case VarType::Double:
            return cstr(v.as_double(), false);
        default:
            return cstr(static_cast<std::int64_t>(to_long(v)));
    }
}

Variant coerce(const Variant& v, VarType type) {
    switch (type) {
        case VarType::Integer:
            return Variant::integer(to_integer(v));
        case VarType::Long:
            return Variant::long_(to_long(v));
        case VarType::Single:
            return Variant::single(to_single(v));
        case VarType::Double:
            return Variant::double_(to_double(v));
        case VarType::Boolean:
            return Variant::boolean(to_boolean(v));
        case VarType::String:
            return Variant::string(to_string(v));
        case VarType::Byte:
            return Variant::byte(to_byte(v));
        default:
            return v;
    }
}

}  // namespace vb
