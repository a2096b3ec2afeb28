// The console's written values and its splitting of a line into words.
#include <gtest/gtest.h>

#include <random>

#include "command_line.h"
#include "support/random_values.h"
#include "value_syntax.h"

namespace {

using console::format_value;
using console::parse_value;
using kestrone::Variant;
using kestrone::VarType;

TEST(ValueSyntax, ReadsEveryKind) {
    const std::pair<const char*, Variant> cases[] = {
        {"Empty", Variant()},
        {"5%", Variant::integer(5)},
        {"-32768%", Variant::integer(-32768)},
        {"5", Variant::integer(5)},
        {"32767", Variant::integer(32767)},
        {"-32768", Variant::integer(-32768)},
        {"-32769", Variant::long_(-32769)},
        {"40000", Variant::long_(40000)},
        {"1281&", Variant::long_(1281)},
        {"-1&", Variant::long_(-1)},
        {"3000000000", Variant::double_(3e9)},
        {"0.5", Variant::double_(0.5)},
        {"+12", Variant::integer(12)},
        {"1E3", Variant::double_(1000)},
        {"75!", Variant::single(75.0f)},
        {"1263.9409!", Variant::single(1263.9409f)},
        {"0.5#", Variant::double_(0.5)},
        {"True", Variant::boolean(true)},
        {"\"a\\\"b\"", Variant::string("a\"b")},
        {"\"line\\r\\n\\t\\x00\\xFF\\\\\"", Variant::string(std::string("line\r\n\t\0\xFF\\", 10))},
        {"Long[0 to 2](0, 1, 2)",
         Variant::array(VarType::Long, 0,
                        {Variant::long_(0), Variant::long_(1), Variant::long_(2)})},
        {"Variant[0 to -1]()", Variant::array(VarType::Variant, 0, {})},
        {"Byte[0 to 0](0)", Variant::array(VarType::Byte, 0, {Variant::byte(0)})},
        {"Single[1 to 1](1.5)", Variant::array(VarType::Single, 1, {Variant::single(1.5f)})},
        {"[0, \"a\", 1.5!]",
         Variant::array(VarType::Variant, 0,
                        {Variant::integer(0), Variant::string("a"), Variant::single(1.5f)})},
    };
    for (const auto& [text, expected] : cases) {
        const auto v = parse_value(text);
        ASSERT_TRUE(v.has_value()) << text;
        EXPECT_EQ(*v, expected) << text;
    }
}

TEST(ValueSyntax, RefusesWhatIsNoValue) {
    // clang-format off
    const char* const kNoValues[] = {
        "", "abc", "32768%", "2147483648&", "1.5%", "\"open", "\"\\q\"", "\"\\x4\"", "Long[0 to 1](1)",
        "Integer[0 to 0](70000)", "Byte[0 to 0](256)", "Long[0 to 0](\"a\")", "[1, 2", "[1,]", "1e",
        "5 6", "Long[a to b]()", "Boolean[0 to 0](1)", "1e999!", "nan(0x0)!", "nan(0x800000)!",
        "nan(0x1", "nanx", "inf%", "-nan&", "Single[0 to 0](1e39)", "Single[0 to 0](True)"};
    // clang-format on
    for (const char* text : kNoValues)
        EXPECT_FALSE(parse_value(text).has_value()) << text;
    // A sign at the end of the text is a number without digits, whatever lies beyond the text.
    std::string error;
    EXPECT_FALSE(parse_value(std::string_view("-inf").substr(0, 1), &error));
    EXPECT_EQ(error, "not a number: -");
}

TEST(ValueSyntax, WritesTheShortestFormThatReadsBack) {
    EXPECT_EQ(format_value(Variant::single(1263.9409f)), "1263.9409!");
    EXPECT_EQ(format_value(Variant::single(75.0f)), "75!");
    EXPECT_EQ(format_value(Variant::double_(0.1)), "0.1#");
    EXPECT_EQ(format_value(Variant::long_(-1)), "-1&");
    EXPECT_EQ(format_value(Variant::string("a\"b\\\r\x01\x7F")), "\"a\\\"b\\\\\\r\\x01\\x7F\"");
    EXPECT_EQ(format_value(Variant::array(VarType::Byte, 0, {Variant::byte(0)})),
              "Byte[0 to 0](0)");
    EXPECT_EQ(format_value(Variant::array(VarType::Variant, 0, {Variant::integer(1), Variant()})),
              "Variant[0 to 1](1%, Empty)");
}

// Floats that digits cannot write have words, read in any case; a float array's bare elements
// are read as its own kind, so that nothing is rounded twice or loses its sign.
TEST(ValueSyntax, FloatsBeyondDigitsHaveWords) {
    // clang-format off
    const std::pair<const char*, const char*> read_and_written[] = {
        {"-0.0", "-0#"}, {"NaN!", "nan!"}, {"-nan#", "-nan#"}, {"nan(0x1)!", "nan(0x1)!"},
        {"nan(0x400000)!", "nan!"}, {"-Infinity", "-inf#"},
        {"Single[0 to 2](-0, nan, -inf)", "Single[0 to 2](-0, nan, -inf)"},
        {"Double[0 to 1](-0, 16777217)", "Double[0 to 1](-0, 16777217)"},
        {"Single[0 to 0](16777217)", "Single[0 to 0](16777216)"},
        {"Single[0 to 0](1.00000005960464477539062501)", "Single[0 to 0](1.0000001)"}};
    // clang-format on
    for (const auto& [text, written] : read_and_written) {
        const auto v = parse_value(text);
        ASSERT_TRUE(v) << text;
        EXPECT_EQ(format_value(*v), written) << text;
    }
}

// Whatever is written reads back to the same value, bit for bit.
TEST(ValueSyntax, EveryValueReadsBackBitForBit) {
    const std::uint32_t seed = std::random_device{}();
    testing_support::RandomValues values(seed, false);
    for (int i = 0; i < 3000; ++i) {
        const Variant v = values.value();
        const auto back = parse_value(format_value(v));
        ASSERT_TRUE(back && testing_support::same_bits(*back, v))
            << format_value(v) << " (seed " << seed << ")";
    }
}

TEST(CommandLine, KeepsStringsAndArraysAsOneWord) {
    const auto c = console::split_command("SimMacroCall 9 [0, 200, 255, 56] 0& Empty 0&");
    ASSERT_TRUE(c);
    EXPECT_EQ(c->words, (std::vector<std::string>{"SimMacroCall", "9", "[0, 200, 255, 56]", "0&",
                                                  "Empty", "0&"}));
    EXPECT_FALSE(c->equals);
    const auto w = console::split_command("Port 0 = 5");
    ASSERT_TRUE(w && w->equals);
    EXPECT_EQ(*w->equals, 2u);
    const auto s = console::split_command("x \"a = [b\" Long[0 to 1](1, 2)");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->words, (std::vector<std::string>{"x", "\"a = [b\"", "Long[0 to 1](1, 2)"}));
    EXPECT_FALSE(console::split_command("x \"open"));
    EXPECT_FALSE(console::split_command("x [1, 2"));
    EXPECT_FALSE(console::split_command("x ]"));
    EXPECT_TRUE(console::is_skipped_line("   # note"));
    EXPECT_TRUE(console::is_skipped_line(" \t"));
    EXPECT_FALSE(console::is_skipped_line("quit"));
}

}  // namespace

namespace {

TEST(NamePath, ReadsFieldsAndElementsAlike) {
    struct Case {
        const char* text;
        bool ok;
        const char* name;
        int index;  // -1: none
        const char* member;
    };
    const Case cases[] = {
        {"bSimulating", true, "bSimulating", -1, ""},
        {"lADCVal(2)", true, "lADCVal", 2, ""},
        {"Pins(+3).SimValue", true, "Pins", 3, "SimValue"},
        {"WheelLine(-1).Top", true, "WheelLine", -1, "Top"},
        {"chkSwitchLeft.Value", true, "chkSwitchLeft", -1, "Value"},
        {"(2)", false, "", 0, ""},
        {"a(x)", false, "", 0, ""},
        {"a()", false, "", 0, ""},
        {"a(1", false, "", 0, ""},
        {"a(1)b", false, "", 0, ""},
        {"a(1).", false, "", 0, ""},
        {"a.b.c", false, "", 0, ""},
        {"a(1).b(2)", false, "", 0, ""},
        {"a(99999999999)", false, "", 0, ""},
    };
    for (const Case& c : cases) {
        const auto p = console::parse_name_path(c.text);
        ASSERT_EQ(p.has_value(), c.ok) << c.text;
        if (!p) continue;
        EXPECT_EQ(p->name, c.name) << c.text;
        const bool indexed = std::string(c.text).find('(') != std::string::npos;
        EXPECT_EQ(p->has_index, indexed) << c.text;
        if (indexed) {
            EXPECT_EQ(p->index, c.index) << c.text;
        }
        EXPECT_EQ(p->member, c.member) << c.text;
    }
}

}  // namespace
