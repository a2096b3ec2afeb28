#include "float_text.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace console {

namespace {

template <class F>
using BitsOf = std::conditional_t<sizeof(F) == 4, std::uint32_t, std::uint64_t>;
template <class F>
constexpr int kMantissaBits = std::numeric_limits<F>::digits - 1;
template <class F>
constexpr BitsOf<F> kQuiet = BitsOf<F>{1} << (kMantissaBits<F> - 1);

template <class F>
std::string text_of(F x) {
    using U = BitsOf<F>;
    char buf[64];
    if (x == x) return std::string(buf, std::to_chars(buf, buf + sizeof buf, x).ptr);
    const U bits = std::bit_cast<U>(x);
    const U mantissa = bits & ((U{1} << kMantissaBits<F>)-1);
    std::string out = bits >> (sizeof(U) * 8 - 1) ? "-nan" : "nan";
    if (mantissa == kQuiet<F>) return out;
    return out + "(0x" + std::string(buf, std::to_chars(buf, buf + sizeof buf, mantissa, 16).ptr) +
           ")";
}

bool same_ignoring_case(std::string_view a, std::string_view lower) {
    if (a.size() != lower.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if ((a[i] | 0x20) != lower[i]) return false;
    return true;
}

template <class F>
std::optional<F> word_of(std::string_view t) {
    using U = BitsOf<F>;
    const bool negative = !t.empty() && t.front() == '-';
    if (!t.empty() && (t.front() == '-' || t.front() == '+')) t.remove_prefix(1);
    constexpr F inf = std::numeric_limits<F>::infinity();
    if (same_ignoring_case(t, "inf") || same_ignoring_case(t, "infinity"))
        return negative ? -inf : inf;
    if (t.size() < 3 || !same_ignoring_case(t.substr(0, 3), "nan")) return std::nullopt;
    t.remove_prefix(3);
    U mantissa = kQuiet<F>;
    if (!t.empty()) {
        // (0xHHH): the mantissa's bits, not 0 (that is an infinity) and no more than it holds.
        if (t.size() < 5 || !t.starts_with("(0x") || t.back() != ')') return std::nullopt;
        const std::string_view hex = t.substr(3, t.size() - 4);
        const auto [end, ec] = std::from_chars(hex.data(), hex.data() + hex.size(), mantissa, 16);
        if (ec != std::errc() || end != hex.data() + hex.size() || mantissa == 0 ||
            mantissa >> kMantissaBits<F> != 0)
            return std::nullopt;
    }
    const U sign = negative ? U{1} << (sizeof(U) * 8 - 1) : 0;
    return std::bit_cast<F>(static_cast<U>(std::bit_cast<U>(inf) | mantissa | sign));
}

}  // namespace

std::string float_text(float f) {
    return text_of(f);
}
std::string float_text(double d) {
    return text_of(d);
}
std::optional<float> single_word(std::string_view text) {
    return word_of<float>(text);
}
std::optional<double> double_word(std::string_view text) {
    return word_of<double>(text);
}

}  // namespace console
