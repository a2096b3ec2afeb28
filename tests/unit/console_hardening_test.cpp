// The console under hostile input: values nested without end, bytes that would break an answer
// line, and counts that do not fit the protocol's 32 bits. No module is needed: each of these is
// answered before the component is reached.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "console.h"
#include "panel_commands.h"
#include "value_limits.h"
#include "value_syntax.h"

namespace {

using console::parse_value;
using kestrone::Variant;
using kestrone::VarType;
using testing::HasSubstr;

std::string nested(const std::string& open, const std::string& inner, const std::string& close,
                   int depth) {
    std::string out;
    for (int i = 0; i < depth; ++i)
        out += open;
    out += inner;
    for (int i = 0; i < depth; ++i)
        out += close;
    return out;
}

TEST(ValueNesting, StopsAtTheLimitInsteadOfTheStack) {
    const int limit = console::kMaxArrayNesting;
    for (const auto& [open, close] :
         {std::pair<std::string, std::string>{"[", "]"}, {"Variant[0 to 0](", ")"}}) {
        SCOPED_TRACE(open);
        auto at_limit = parse_value(nested(open, "7", close, limit));
        ASSERT_TRUE(at_limit);
        const Variant* v = &*at_limit;
        for (int i = 0; i < limit; ++i) {
            ASSERT_TRUE(v->is_array());
            v = &v->as_array().items.at(0);
        }
        EXPECT_EQ(*v, Variant::integer(7));
        std::string error;
        EXPECT_FALSE(parse_value(nested(open, "7", close, limit + 1), &error));
        EXPECT_THAT(error, HasSubstr("nested more than 64 deep"));
        // The line a tester sent: 30 000 brackets, never closed.
        EXPECT_FALSE(parse_value(std::string(30000, '['), &error));
        EXPECT_THAT(error, HasSubstr("nested more than"));
    }
    // Siblings are not depth: a long flat array is fine.
    std::string flat = "[";
    for (int i = 0; i < 5000; ++i)
        flat += (i ? ",[1]" : "[1]");
    ASSERT_TRUE(parse_value(flat + "]"));
}

struct Console {
    std::ostringstream out;
    console::Console session{out};
    std::string answer(const std::string& line) {
        out.str("");
        session.execute(line);
        return out.str();
    }
};

TEST(ConsoleAnswers, EscapeEveryByteThatWouldBreakALine) {
    Console c;
    EXPECT_EQ(c.answer(std::string("Bogus\0\x7f\xc3\xa9", 9)),
              "fail unknown command or operation: Bogus\\x00\\x7F\\xC3\\xA9\n");
    // A value that can't be read is quoted in the failure as written, escaped the same way.
    EXPECT_EQ(c.answer("store k = \x01"), "fail cannot read the value \\x01: not a value: \\x01\n");
    // A long one only by its start.
    EXPECT_EQ(c.answer("store k = " + nested("[", "", "]", 100)),
              "fail cannot read the value " + std::string(40, '[') +
                  "...: arrays nested more than 64 deep\n");
    // What a project file could not hold is refused at once, the store unchanged: beside a
    // string that takes 6 bytes a byte in the file, 64 MB in all, one more entry is too much.
    c.session.session().set_store_entry("big", Variant::string(std::string(11200000, '\x01')));
    EXPECT_THAT(c.answer("store k = 1"),
                testing::StartsWith("fail cannot store k: the project file would be 67200"));
    c.session.session().clear_store();

    EXPECT_EQ(c.answer("store \"a\\x00b\\xFF\" = 1"), "ok\n");
    EXPECT_EQ(c.answer("store plain = 2&"), "ok\n");
    EXPECT_EQ(c.answer("store \"two words\" = True"), "ok\n");
    EXPECT_EQ(c.answer("store"),
              "entry \"a\\x00b\\xFF\" 1%\nentry plain 2&\nentry \"two words\" True\nok\n");
    // Keys as listed are keys as written: the quoted one sets the same entry again.
    EXPECT_EQ(c.answer("store \"a\\x00b\\xFF\" = 3"), "ok\n");
    EXPECT_THAT(c.answer("store"), HasSubstr("entry \"a\\x00b\\xFF\" 3%\nentry plain"));
}

TEST(ConsoleAnswers, KeyTextIsABareWordOnlyWhenItReadsBackAsOne) {
    EXPECT_EQ(console::key_text("iThreshL"), "iThreshL");
    for (const char* key : {"", "=", "#x", "a b", "a\"b", "a[1]", "f(x)", "back\\slash"})
        EXPECT_EQ(console::key_text(key).front(), '"') << key;
    EXPECT_EQ(console::escape_text("tab\there\\ \"q\""), "tab\\there\\ \"q\"");
}

TEST(ConsoleAnswers, TickCountsBeyond32BitsKeepTheirValue) {
    EXPECT_EQ(commands::tick_count(2147483647), Variant::long_(2147483647));
    EXPECT_EQ(commands::tick_count(0), Variant::long_(0));
    EXPECT_EQ(commands::tick_count(2147483648LL + 2147483650LL), Variant::double_(4294967298.0));
    EXPECT_EQ(console::format_value(commands::tick_count(2147483649LL)), "2147483649#");
}

TEST(ConsoleAnswers, ProgressSaysHowFarWithoutOverflow) {
    EXPECT_EQ(console::progress_text("advance", 999, 1000),
              "advance: 999 of 1000 ms on the clock (99%), Ctrl-C stops");
    EXPECT_EQ(console::progress_text("run", 9000000000000000000, 9200000000000000000),
              "run: 9000000000000000000 of 9200000000000000000 ms on the clock (97%), Ctrl-C "
              "stops");
}

TEST(ConsoleHelp, ListsTheCommandsAndAnOperationsParameters) {
    Console c;
    const std::string all = c.answer("help");
    for (const char* command : {"advance MS", "store save FILE", "expect COMMAND == VALUE",
                                "page open|get|put|click|apply", "quit"})
        EXPECT_THAT(all, HasSubstr(command));
    EXPECT_THAT(all, testing::EndsWith("\nok\n"));
    EXPECT_EQ(c.answer("help SimMacroCall"),
              "SimMacroCall lMacroID Long, vParams Variant, pRetVal Long (by reference, reported "
              "after the call), pvAffected Variant (by reference, reported after the call), "
              "pCycles Long (by reference, reported after the call)\nok\n");
    // Read and written: both forms.
    const std::string port = c.answer("help Port");
    EXPECT_THAT(port, HasSubstr("Port PinID Long -> Long\n"));
    EXPECT_THAT(port, HasSubstr("Port PinID Long = RHS Long\n"));
    EXPECT_EQ(c.answer("help KestroneVersion"), "KestroneVersion = RHS Long\nok\n");
    EXPECT_EQ(c.answer("help Nothing"), "fail the component has no operation Nothing\n");
}

}  // namespace
