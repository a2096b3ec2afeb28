// The console's debugger: a program stopped before its first statement, stepped one statement at
// a time through every construct, its breakpoints, going on for a while or to its end, its
// variables, and the clock moved while it is held.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAreArray;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

// Every kind of statement line, and lines that are none.
const char* const kEvery =
    "# a comment\n"     // 1
    "int a\n"           // 2  a declaration without a value still stops
    "byte b = 2\n"      // 3
    "repeat 2\n"        // 4  its count read once, on entry
    "    a = a + 1\n"   // 5
    "end\n"             // 6
    "while a > 0\n"     // 7  tested each time
    "    a = a - 1\n"   // 8
    "end\n"             // 9
    "if b == 3\n"       // 10
    "    LedOn(1)\n"    // 11
    "else if b == 2\n"  // 12 tested as the if's own
    "    LedOn(2)\n"    // 13
    "else\n"            // 14
    "    LedOn(3)\n"    // 15
    "end\n"             // 16
    "forever\n"         // 17 once, on entry
    "    delay 100\n"   // 18
    "    stop\n"        // 19
    "end\n";            // 20

TEST(DebugConsole, StepsStatementByStatementThroughEveryConstruct) {
    ComponentFolder robot(shipped_code_file());
    const std::string program = robot.temp().write("every.kflow", kEvery);
    std::string script = "KestroneVersion = 1281\ndebug " + program + "\n";
    const std::vector<std::string> lines{"3", "4",  "5",  "5",  "7",  "8",  "7", "8",
                                         "7", "10", "12", "13", "17", "18", "19"};
    for (std::size_t i = 0; i < lines.size(); ++i)
        script += "step\n";
    script += "step\nwhere\nvars\n";
    const auto run = robot.run(script);
    std::vector<std::string> expected{"ok", "ok", "ok 2&"};
    for (const std::string& l : lines)
        expected.push_back("ok " + l + "&");
    for (const char* last : {"ok end", "ok end", "ok a=0% b=2%"})
        expected.push_back(last);
    EXPECT_THAT(run.lines, ElementsAreArray(expected)) << run.text();
}

TEST(DebugConsole, BreakpointsGoingOnAndAHeldClock) {
    ComponentFolder robot(shipped_code_file());
    const std::string every = robot.temp().write("every.kflow", kEvery);
    const std::string drive =
        robot.temp().write("drive.kflow", "DriveForwards(200)\ndelay 5000\nDriveStop()\n");
    const auto run = robot.run(
        "step\nKestroneVersion = 1281\ndebug " + every +
        "\nbreak 1\nbreak 9\nbreak 99\nbreak 8\ncontinue\nvars\ncontinue\nbreak clear 8\n"
        "continue\nvar a\n"
        // Held: the clock moves and the wheels turn, the program stays where it stood.
        "debug " +
        drive +
        "\nStartSimulation\ncontinue 5 6\ncontinue 300\nfield iWheelPhase(0)\nadvance 1000\n"
        "where\nfield iMotorSpeed(0)\nundebug\nfield bSimulating\nwhere\nstep\n");
    EXPECT_THAT(run.lines,
                testing::ElementsAre(
                    "ok", "fail no program is being debugged: debug FILE first", "ok", "ok 2&",
                    "ok 2&", "ok 10&",
                    "fail line 99 comes after the "
                    "program's last statement",
                    "ok 8&", "ok 8&", "ok a=2% b=2%", "ok 8&", "ok", "ok 10&", "ok 0%", "ok 1&",
                    "ok", "fail continue takes at most MS: continue [MS]", "ok 2&",
                    testing::Ne("ok 0%"), testing::StartsWith("ok "), "ok 2&", "ok 200%", "ok",
                    "ok False", "ok end", "fail no program is being debugged: debug FILE first"))
        << run.text();
}

}  // namespace
