// The runtime's numeric rules: rounding, checked widths, text to number and Boolean.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace {

using kestrone::Variant;

// The Basic error a call raises, or 0 when it returns.
template <class F>
int error_of(F f) {
    try {
        f();
    } catch (const vb::BasicError& e) {
        return e.number();
    }
    return 0;
}

// The text in a buffer of its own length with nothing after it, and none at all when empty: a read
// past either end crashes, or the address sanitizer reports it.
std::vector<char> alone(const char* text) {
    return {text, text + std::strlen(text)};
}

struct TextCase {
    const char* text;
    std::optional<long long> value;  // nullopt: the error below
    int error;
};

TEST(TextToInteger, RoundsOnTheDigitsAsWrittenAndChecksTheRange) {
    const TextCase cases[] = {
        {"0.5", 0, 0},
        {"1.5", 2, 0},
        {"2.5", 2, 0},
        {"-1.5", -2, 0},
        {"-2.5", -2, 0},
        {"0.51", 1, 0},
        {"2.6", 3, 0},
        {"-0.7", -1, 0},
        {" 12 ", 12, 0},
        {"\t+7", 7, 0},
        {"1E3", 1000, 0},
        {"1e-1", 0, 0},
        {"25E-1", 2, 0},
        {"35e-1", 4, 0},
        {"32767", 32767, 0},
        {"-32768", -32768, 0},
        {"32767.5", {}, 6},
        {"-32768.5", -32768, 0},
        {"32768", {}, 6},
        {"-32769", {}, 6},
        {"1E300", {}, 6},
        {"007", 7, 0},
        {"0.50000000000000000001", 1, 0},
        {".5", 0, 0},
        {"5.", 5, 0},
        {"", {}, 13},
        {"  ", {}, 13},
        {"12a", {}, 13},
        {"1 2", {}, 13},
        {"1e", {}, 13},
        {"--1", {}, 13},
        {"0x10", {}, 13},
        {".", {}, 13},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.text);
        const std::vector<char> bytes = alone(c.text);
        const std::string_view text(bytes.data(), bytes.size());
        if (c.value) {
            EXPECT_EQ(vb::text_to_integer(text), *c.value);
        } else {
            EXPECT_EQ(error_of([&] { vb::text_to_integer(text); }), c.error);
        }
    }
}

TEST(TextToLong, HasThe32BitRange) {
    EXPECT_EQ(vb::text_to_long("2147483647"), 2147483647);
    EXPECT_EQ(vb::text_to_long("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(error_of([] { vb::text_to_long("2147483648"); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::text_to_long("99999999999999999999999"); }), vb::kOverflow);
    EXPECT_EQ(vb::text_to_long("70000"), 70000);
}

// Text has no limit of digits: only the value counts, however many zeros stand around it.
TEST(TextToNumber, TakesAnyNumberOfDigits) {
    const std::string zeros(450, '0');
    EXPECT_EQ(vb::text_to_integer("2." + zeros), 2);
    EXPECT_EQ(vb::text_to_integer(zeros + "3." + zeros + "1"), 3);
    EXPECT_EQ(vb::text_to_integer("-2.5" + zeros), -2);
    EXPECT_EQ(vb::text_to_integer("2.5" + zeros + "1"), 3);
    EXPECT_EQ(error_of([&] { vb::text_to_long("3" + std::string(9, '0') + "." + zeros); }),
              vb::kOverflow);
    EXPECT_EQ(vb::text_to_long("2" + std::string(9, '0') + "." + zeros), 2000000000);
    EXPECT_EQ(error_of([&] { vb::text_to_integer("1" + zeros); }), vb::kOverflow);
    EXPECT_EQ(vb::text_to_integer("0." + zeros + "9"), 0);
    // Trailing zeros before an exponent move it, they do not change the value.
    EXPECT_EQ(vb::text_to_integer("15" + zeros + "E-451"), 2);
    EXPECT_EQ(vb::text_to_integer("1" + std::string(100000, '0') + "e-100000"), 1);
    EXPECT_DOUBLE_EQ(vb::text_to_double("0.25" + zeros), 0.25);
    EXPECT_DOUBLE_EQ(vb::text_to_double("0." + zeros + "7E452"), 70.0);
    EXPECT_EQ(error_of([&] { vb::text_to_integer("2." + zeros + "x"); }), vb::kTypeMismatch);
}

TEST(TextToBoolean, TakesWordsInAnyCaseOrNumbers) {
    const std::pair<const char*, int> cases[] = {
        {"True", 1}, {"FALSE", 0}, {"tRuE", 1}, {" 1 ", 1},   {"0", 0},       {"-1", 1},
        {"0.0", 0},  {"2.5", 1},   {"", -13},   {"yes", -13}, {"Truth", -13}, {"1x", -13},
    };
    for (const auto& [written, expected] : cases) {
        SCOPED_TRACE(written);
        const std::vector<char> bytes = alone(written);
        const std::string_view text(bytes.data(), bytes.size());
        if (expected < 0)
            EXPECT_EQ(error_of([&] { vb::text_to_boolean(text); }), -expected);
        else
            EXPECT_EQ(vb::text_to_boolean(text), expected == 1);
    }
}

TEST(FloatToInteger, RoundsTiesToEvenAndChecksTheRange) {
    const std::pair<double, long long> rounded[] = {
        {0.5, 0},   {1.5, 2},    {2.5, 2},           {-0.5, 0},
        {-1.5, -2}, {2.4999, 2}, {-32768.5, -32768}, {32766.5, 32766},
    };
    for (const auto& [x, expected] : rounded)
        EXPECT_EQ(vb::cint(x), expected) << x;
    EXPECT_EQ(error_of([] { vb::cint(32767.5); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::cint(-32769.0); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::clng(2147483647.5); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::cint(std::nan("")); }), vb::kOverflow);
    EXPECT_EQ(vb::clng(-2147483648.4), -2147483647 - 1);
    EXPECT_EQ(error_of([] { vb::csng(1e39); }), vb::kOverflow);
}

TEST(CheckedArithmetic, OverflowsInTheWidthOfItsOperands) {
    EXPECT_EQ(vb::mul(vb::Integer{127}, vb::Integer{256}), 32512);
    EXPECT_EQ(error_of([] { vb::mul(vb::Integer{128}, vb::Integer{256}); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::sub(vb::Integer{-32768}, vb::Integer{1}); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::add(vb::Long{2147483647}, vb::Long{1}); }), vb::kOverflow);
    EXPECT_EQ(vb::add(vb::Long{2147483647}, vb::Long{-1}), 2147483646);
}

TEST(NumberToText, IsPlainWithAndWithoutTheBlankOfStr) {
    EXPECT_EQ(vb::cstr(std::int64_t{-20}), "-20");
    EXPECT_EQ(vb::cstr(std::int64_t{0}), "0");
    EXPECT_EQ(vb::str(1), " 1");
    EXPECT_EQ(vb::str(12), " 12");
    EXPECT_EQ(vb::str(-3), "-3");
    EXPECT_EQ(vb::cstr(1.5, false), "1.5");
    EXPECT_EQ(vb::cstr(0.1f, true), "0.1");
}

TEST(VariantConversions, FollowTheRuntimeForEveryKind) {
    EXPECT_EQ(vb::to_integer(Variant()), 0);
    EXPECT_EQ(vb::to_integer(Variant::boolean(true)), -1);
    EXPECT_EQ(vb::to_integer(Variant::single(2.5f)), 2);
    EXPECT_EQ(vb::to_integer(Variant::double_(3.5)), 4);
    EXPECT_EQ(vb::to_integer(Variant::string(" 42 ")), 42);
    EXPECT_EQ(vb::to_long(Variant::byte(200)), 200);
    EXPECT_EQ(error_of([] { vb::to_integer(Variant::long_(40000)); }), vb::kOverflow);
    EXPECT_EQ(error_of([] { vb::to_long(Variant::string("abc")); }), vb::kTypeMismatch);
    EXPECT_EQ(error_of([] { vb::to_long(Variant::array(kestrone::VarType::Long, 0, {})); }),
              vb::kTypeMismatch);
    EXPECT_EQ(error_of([] { vb::to_long(Variant::double_(1e20)); }), vb::kOverflow);
    EXPECT_TRUE(vb::to_boolean(Variant::string("true")));
    EXPECT_FALSE(vb::to_boolean(Variant::single(0.0f)));
    EXPECT_EQ(vb::to_string(Variant::boolean(false)), "False");
    EXPECT_EQ(vb::to_string(Variant::integer(-7)), "-7");
    EXPECT_EQ(vb::coerce(Variant::string("5"), kestrone::VarType::Long), Variant::long_(5));
    // Sums in the narrowest kind that holds them; a Single stays one.
    EXPECT_EQ(vb::var_add(Variant::long_(70000), Variant::integer(-1)), Variant::long_(69999));
    EXPECT_EQ(vb::var_add(Variant::single(0.5f), Variant::integer(1)), Variant::single(1.5f));
}

}  // namespace
