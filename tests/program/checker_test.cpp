// Programs with faults: each is answered with the place and the words of its first fault, and
// none of them starts a simulation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_support.h"

namespace {

using program_testing::run_program;
using testing::HasSubstr;

struct Broken {
    std::string source;
    int line, column;
    const char* words;
    std::size_t faults = 1;  // how many the program has in all; 0: a cascade, not counted
};

std::string repeated(const std::string& s, int n) {
    std::string out;
    for (int i = 0; i < n; ++i)
        out += s;
    return out;
}

const std::vector<Broken> kBroken = {
    {"Foo(1)\n", 1, 1, "there is no macro 'Foo' in this component"},
    {"# steer\n  drivestop()\n", 2, 3, "did you mean 'DriveStop'?"},
    {"int a\nb = 1\n", 2, 1, "there is no variable 'b'"},
    {"int v = ReadAnalogue(0)\n", 1, 9, "'ReadAnalogue' is private"},
    {"DriveForwards(1, 2)\n", 1, 1, "'DriveForwards' takes 1 argument, but 2 are given"},
    {"SetMotors(0, 200)\n", 1, 1, "takes 4 arguments, but 2 are given"},
    {"DriveForwards(ReadSwitch())\n", 1, 15, "'ReadSwitch' takes 1 argument, but 0 are given"},
    {"int x = 1 + DriveStop()\n", 1, 13, "'DriveStop' gives no value"},
    {"int x\nbyte y\nint x = 2\n", 3, 5, "'x' is already declared on line 1"},
    {"x = 1\nint x\n", 1, 1, "'x' is used before its declaration on line 2"},
    {"repeat 3\n    DriveStop()\nend\nend\n", 4, 1, "'end' has no block to close"},
    {"DriveStop()\nrepeat 3\n    DriveStop()\n", 2, 1, "'repeat' has no 'end'"},
    {"while 1\n    if 1\n        stop\nend\n", 1, 1, "'while' has no 'end'"},
    {"else\n    DriveStop()\n", 1, 1, "'else' without 'if'"},
    {"if 1\n  repeat 2\n  else\n  end\nend\n", 3, 3,
     "'else' cannot stand inside the 'repeat' of line 2"},
    {"if 1\nelse\nelse\nend\n", 3, 1, "already had its last 'else' on line 2"},
    {"int big = 70000\n", 1, 11, "the number 70000 is too large"},
    {"int mask = 0x1FFFF\n", 1, 12, "too large"},
    {"int b = 0b102\n", 1, 9, "'0b102' is not a number"},
    {"int d = 5b1\n", 1, 9, "'5b1' is not a number"},
    {"int c = 'AB'\n", 1, 9, "'AB' holds more than one character"},
    {"int c = 'A\n", 1, 9, "needs its closing '"},
    {"int c = 'A", 1, 9, "needs its closing '"},  // the file's last line, with no line end
    {"DriveForwards(200) @ 3\n", 1, 20, "'@' does not belong in a program", 2},
    {"DriveStop()\x1B\n", 1, 12, "the control character 0x1B does not belong"},
    {"int \xC3\xA9t\xC3\xA9 = 1\n", 1, 5, "'\xC3\xA9' does not belong in a program", 2},
    {"int repeat = 1\n", 1, 5, "'repeat' is a word of the language"},
    {"byte LedOn\n", 1, 6, "'LedOn' is the name of a macro"},
    {"int x\nif x = 1\nend\n", 2, 6, "to compare two values, write '=='"},
    {"int x = ReadLdr\n", 1, 9, "call it with brackets, as ReadLdr()"},
    {"int x\nx(1)\n", 2, 1, "'x' is a variable, not a macro"},
    {"DriveStop = 1\n", 1, 1, "only a variable can be set"},
    {"repeat 2\n  int y = 1\nend\n", 2, 3, "declared at the outermost level"},
    {"delay\n", 1, 6, "'delay' needs a time in milliseconds"},
    {"int x = (1 + 2\n", 1, 15, "a ')' is missing to close the '(' at column 9"},
    {"DriveStop() 5\n", 1, 13, "the number 5 is one word too many"},
    {"5 + 3\n", 1, 1, "the number 5 cannot start a line"},
    {"forever 3\nend\n", 1, 9, "one word too many"},
    {"int x = 2 *\n", 1, 12, "a value is missing at the end of the line"},
    {"int x = 2 * / 3\n", 1, 13, "a value is missing before '/'"},
    {"LedOn\n", 1, 1, "'LedOn' alone does nothing"},
    {"if 1\nelse if\nend\n", 2, 8, "'else if' needs a condition"},
    {"stop 5\n", 1, 6, "the number 5 is one word too many"},
    {"int c = '\x7F'\n", 1, 9, "must be a plain letter, digit or sign"},
    {"int c = '\xC3\xA9\n", 1, 9, "must be a plain letter, digit or sign"},
    // Nesting is refused at the bracket, sign, call or block one level too deep, at a depth that
    // the parser, the checker and the interpreter all survive.
    {"int x = " + repeated("(", 100000) + "1" + repeated(")", 100000) + "\n", 1, 209,
     "nested more than 200 deep"},
    {"int x = " + repeated("-", 100000) + "1\n", 1, 209, "nested more than 200 deep"},
    {"DriveForwards(" + repeated("ReadSwitch(", 3000) + "\n", 1, 14 + 200 * 11,
     "nested more than 200 deep"},
    {"int x = 1" + repeated(" + 1", 100000) + "\n", 1, 7 + 201 * 4,
     "more than 200 operations build on one another"},
    {repeated("forever\n", 3000) + repeated("end\n", 3000), 201, 1,
     "blocks are nested more than 200 deep"},
    {repeated("if 1\n", 3000) + "stop\n" + repeated("end\n", 3000), 201, 1,
     "blocks are nested more than 200 deep"},
};

class BrokenProgram : public testing::TestWithParam<Broken> {};

TEST_P(BrokenProgram, IsAnsweredWithItsPlaceAndNothingRuns) {
    const Broken& b = GetParam();
    const auto run = run_program(b.source);
    ASSERT_FALSE(run->checked.faults.empty()) << b.source.substr(0, 100);
    const kflow::Diagnostic& first = run->checked.faults.front();
    EXPECT_EQ(first.at.line, b.line) << first.text;
    EXPECT_EQ(first.at.column, b.column) << first.text;
    EXPECT_THAT(first.text, HasSubstr(b.words));
    if (b.faults) {
        EXPECT_EQ(run->checked.faults.size(), b.faults);
    }
    EXPECT_FALSE(run->checked.program.has_value());
    EXPECT_EQ(run->component.starts, 0);
    EXPECT_TRUE(run->component.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(Table, BrokenProgram, testing::ValuesIn(kBroken));

TEST(ProgramFaults, ProgramsAtTheEdgesOfTheLanguageAreAccepted) {
    // Comments after lines, CR LF ends, tabs, the largest literals, a character literal,
    // a function macro dropped as a statement, and case-sensitive names beside keywords.
    const auto run = run_program(
        "int Repeat = 65535  # the largest literal\r\n"
        "\tbyte c = '\\''\r\n"
        "int h = 0xFFFF + 0b1111111111111111\n"
        "int k = 0X7f + 0B11\n"
        "ReadLdr()\n"
        "if Repeat == -1 && h == -2\n"
        "else if 1\n"
        "else\n"
        "end\n");
    ASSERT_TRUE(run->checked.faults.empty()) << run->checked.faults.front().text;
    EXPECT_EQ(run->var("c"), '\'');
    EXPECT_EQ(run->var("k"), 130);
}

// At the limits of nesting a program still runs.
TEST(ProgramFaults, NestingJustBelowTheLimitsRuns) {
    const auto deep = run_program("int x = " + repeated("-(", 100) + "7" + repeated(")", 100) +
                                  "\n" + repeated("repeat 1\n", 200) + "x = x" +
                                  repeated(" + 1", 200) + "\n" + repeated("end\n", 200));
    EXPECT_EQ(deep->var("x"), 207);
}

}  // namespace
