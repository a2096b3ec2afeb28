// The C that a program becomes does what the interpreter does: the same macro calls with the
// same arguments in the same order, run on this machine with macros that print their calls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "c_program.h"
#include "program_support.h"
#include "support/temp_dir.h"

namespace {

using program_testing::FakeComponent;
using program_testing::shell;

// The one SDCC keyword that a -D cannot take away for the host compiler: `__interrupt 0`.
std::string for_host_compiler(std::string c) {
    const std::string word = "__interrupt 0";
    const std::size_t at = c.find(word);
    if (at != std::string::npos) c.erase(at, word.size());
    return c;
}

// Component code whose macros print their calls, and answer as FakeComponent does by default.
kflow::ComponentCode printing_component(const kflow::Program& p) {
    kflow::ComponentCode code;
    code.description = "printing robot";
    code.defines =
        "#include <signal.h>\n#include <stdio.h>\n#include <unistd.h>\n"
        "static int fake_calls;\n"
        "static void fake_end(int s) { (void)s; fflush(stdout); _exit(0); }\n";
    // The program never returns: a stop and the end both hold it, so an alarm ends it.
    code.initialisation = "    signal(SIGALRM, fake_end);\n    ualarm(500000, 0);\n";
    for (std::int32_t id : p.used_macros) {
        const kflow::MacroInfo& m = p.macros.at(id);
        std::string format = m.name, args;
        for (const kflow::MacroParam& param : m.params) {
            format += " %d";
            args += ", (int)" + param.name;
        }
        std::string body = "    printf(\"" + format + "\\n\"" + args + ");\n";
        // The last line as the code file may leave it: a comment, and no line end.
        body += m.is_function ? "    return fake_calls++ * 37 + 11; // answered"
                              : "    fake_calls++; // counted";
        code.macro_bodies[id] = body;
    }
    return code;
}

// The program's part of main, from its name on: each line four spaces in for each brace that
// holds it.
void expect_indented_by_braces(const std::string& c, const std::string& name) {
    std::istringstream lines(c.substr(c.find("\n    /* " + name + " */\n") + 1));
    long depth = 1;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t text = line.find_first_not_of(' ');
        if (text == std::string::npos) continue;
        EXPECT_EQ(text, 4 * static_cast<std::size_t>(depth - (line[text] == '}'))) << line;
        depth +=
            std::count(line.begin(), line.end(), '{') - std::count(line.begin(), line.end(), '}');
    }
}

// The calls of a program, once through the interpreter and once through its C.
void expect_same_calls(const std::string& source) {
    auto interpreted = program_testing::run_program(source);
    ASSERT_TRUE(interpreted->checked.program) << interpreted->checked.faults.front().text;
    std::string expected;
    for (const program_testing::SimCall& call : interpreted->component.calls) {
        expected += interpreted->checked.program->macros.at(call.id).name;
        for (const kestrone::Variant& v : call.args)
            expected += " " + std::to_string(v.as_integer());
        expected += "\n";
    }

    const kflow::Program& p = *interpreted->checked.program;
    const std::string c = kflow::write_c_program(p, printing_component(p), "same.kflow");
    expect_indented_by_braces(c, "same.kflow");
    testing_support::TempDir dir;
    const std::string file = dir.write("same.c", for_host_compiler(c));
    // Plain char is unsigned on the robot's compiler.
    const auto cc = shell(std::string(KESTRONE_C_COMPILER) + " -std=gnu99 -funsigned-char -w -o " +
                          dir.path() + "/same " + file);
    ASSERT_EQ(cc.status, 0) << cc.output << c;
    const auto ran = shell(dir.path() + "/same");
    EXPECT_EQ(ran.output, expected) << c;
    EXPECT_FALSE(expected.empty());
}

TEST(ProgramAsC, CallsTheSameMacrosWithTheSameArgumentsInTheSameOrder) {
    // The count of the first repeat is 11 % 5 + 2, read once.
    expect_same_calls(
        "int a = 0\nbyte b = 250\nint i = 0\nrepeat ReadLdr() % 5 + 2\n    b = b + 3\n"
        "    LedOn(b)\n    i = i + 1\nend\nwhile i > 0\n    if i % 3 == 0\n"
        "        WriteLeds(i << 4)\n    else if i & 1 && ReadSwitch(i)\n"
        "        SetMotors(i, -i, ReadLdr() >> 2, WaitSwitch(1) + ReadMic())\n    else\n"
        "        DriveForwards(-7 >> 1)\n    end\n    i = i - 1\nend\n"
        "a = ReadSwitch(0) - ReadLdr() * 2 + ReadMic() / (ReadSwitch(1) | 1)\nLedOn(a)\n"
        "a = -7 / 2 + -7 % 2 * 10 + (-300 >> 3) + (5 << -1)\nPlayTone(a, 0, 'A')\n"
        "SpinLeft((a + 1) * 2 - -a)\na = -(a - 1) * (2 + a) - !(a == 1)\nLedOn(a)\ndelay 3\n"
        "if a > 0 || ReadLdr()\n    SpinLeft(~a)\nend\nforever\n    a = a + 1\n    if a > 3\n"
        "        stop\n    end\n    SpinRight(a)\nend\nLedOff(99)\n");
}

TEST(ProgramAsC, ResultsOfOtherTypesAreCutToIntAsTheInterpreterCutsThem) {
    FakeComponent c({{"Count", "long", {}}, {"Small", "char", {}}, {"Show", "void", {"int"}}});
    const auto checked = kflow::check_program("Show(Count() + 1)\nShow(Small() + 1)\n", "w.kflow",
                                              program_testing::table_of(c));
    ASSERT_TRUE(checked.program);
    const std::string text = kflow::write_c_program(*checked.program, {}, "w.kflow");
    EXPECT_THAT(text, testing::HasSubstr("Show((int)Count() + 1);"));
    EXPECT_THAT(text, testing::HasSubstr("Show((int)Small() + 1);"));
}

// The resting loop at main's end only where the flow can reach it: after a last `forever` or
// `stop` the chip's compiler would warn of unreachable code.
TEST(ProgramAsC, RestsAtTheEndOnlyWhenTheFlowCanGetThere) {
    FakeComponent c({{"Show", "void", {"int"}}});
    const auto rests = [&](const std::string& source) {
        const auto checked = kflow::check_program(source, "r.kflow", program_testing::table_of(c));
        EXPECT_TRUE(checked.program) << source;
        if (!checked.program) return false;
        return kflow::write_c_program(*checked.program, {}, "r.kflow")
                   .find("the chip stays here. */\n    for (;;)") != std::string::npos;
    };
    EXPECT_FALSE(rests("forever\n    Show(1)\n    delay 5\nend\n"));
    EXPECT_FALSE(rests("Show(2)\nstop\n"));
    EXPECT_FALSE(rests("forever\n    stop\nend\nShow(3)\n"));
    EXPECT_TRUE(rests("int a = 1\nwhile a\n    stop\nend\nShow(3)\n"));
    EXPECT_TRUE(rests("repeat 2\n    Show(4)\nend\n"));
}

TEST(ProgramAsC, StopsAtADivisionByZeroAsTheInterpreterDoes) {
    expect_same_calls("int z = 0\nLedOn(1)\nLedOn(ReadLdr() + 5 / z)\nLedOn(2)\n");
    expect_same_calls("int z = 0\nLedOn(1)\nz = ReadLdr() % z\nLedOn(2)\n");
}

}  // namespace
