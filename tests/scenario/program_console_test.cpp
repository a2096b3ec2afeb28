// Robot programs and checks through the console: `run` with its clock and its failures, `var`,
// `expect` with the console's exit status, and the demonstrations' own scripts in examples/.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

// Drives on for 300 ms, a tone, then stops: the wheels' timers tick while it waits.
const char* const kDrive =
    "int n = 0\n"
    "DriveForwards(200)\n"
    "delay 300\n"
    "n = n + 7\n"
    "PlayTone(44, 0, 125)\n"
    "delay 45\n"
    "DriveStop()\n";

struct ProgramConsole : testing::Test {
    ComponentFolder robot{shipped_code_file()};
    std::string program(const std::string& name, const std::string& text) {
        return robot.temp().write(name, text);
    }
};

TEST_F(ProgramConsole, RunAnswersTheTimeOnTheClockAndKeepsTheVariables) {
    const std::string drive = program("drive.kflow", kDrive);
    const auto run = robot.run("var n\nfield iVersionMajor\nrun " + drive +
                               "\nvar n\nvar missing\nfield iVersionMajor\nfield bSimulating\n"
                               "field iWheelPhase(0)\nadvance 0\nnew\nvar n\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "fail no program has run", "ok 0%", "tone 440 125", "ok 345&",
                            "ok 7%", "fail the program has no variable missing", "ok 5%",
                            "ok False", testing::Ne("ok 0%"), "ok 0&", "ok", "ok 7%"))
        << run.text();
}

TEST_F(ProgramConsole, TheClockOfARunGoesOnFromWhereTheConsoleStood) {
    const std::string drive = program("drive.kflow", kDrive);
    // The program's delays count from the console's present, and the wheels' interval from
    // the moment the program set it: a run that starts at 50 ms turns them as one from 0.
    const auto first = robot.run("run " + drive + "\nfield iWheelPhase(0)\n");
    const auto later =
        robot.run("advance 50\nrun " + drive + "\nfield iWheelPhase(0)\nadvance 1000\n");
    ASSERT_EQ(first.lines.size(), 4u) << first.text();
    ASSERT_EQ(later.lines.size(), 6u) << later.text();
    EXPECT_EQ(later.lines[3], "ok 345&");
    EXPECT_EQ(later.lines[4], first.lines[3]);
    // Stopped, both timers are back at 100 ms: ten ticks each in the next second.
    EXPECT_EQ(later.lines[5], "ok 20&");
}

TEST_F(ProgramConsole, ARunGivenATimeStopsThereWithThePanelAsTheProgramHadIt) {
    const std::string drive = program("drive.kflow", kDrive);
    const auto run =
        robot.run("run " + drive + " 150\nvar n\nfield iMotorSpeed(0)\nfield bSimulating\n" +
                  "run " + drive + " 300\nvar n\nrun " + drive + " 346\nfield iMotorSpeed(0)\n" +
                  "run " + drive + " 600000\nrun " + drive + " 600001\nrun " + drive + " 1.5\n" +
                  "run " + program("zero.kflow", "int z = 0\ndelay 5\nz = 1 / z\n") + " 100\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok 150&", "ok 0%", "ok 200%", "ok False", "tone 440 125",
                            "ok 300&", "ok 7%", "tone 440 125", "ok 345&", "ok 0%", "tone 440 125",
                            "ok 345&", StartsWith("fail run stops at a whole number"),
                            StartsWith("fail run stops at a whole number"),
                            EndsWith("zero.kflow:3:7: division by 0")))
        << run.text();
}

TEST_F(ProgramConsole, AProgramWithAFaultDoesNotRunAtAll) {
    const std::string drive = program("drive.kflow", kDrive);
    const std::string faulty = program("faulty.kflow", "int n = 1\nDriveForwards(n)\nn = m + 1\n");
    const auto run =
        robot.run("run " + drive + "\nrun " + faulty + "\nvar n\nfield iMotorSpeed(0)\n" + "run " +
                  robot.dir() + "/none.kflow\n");
    ASSERT_EQ(run.lines.size(), 7u) << run.text();
    EXPECT_EQ(run.lines[3],
              "fail " + faulty + ":3:5: there is no variable 'm': declare it first, as int m = 0");
    EXPECT_EQ(run.lines[4], "ok 7%");  // the last program that ran
    EXPECT_EQ(run.lines[5], "ok 0%");
    EXPECT_EQ(run.lines[6], "fail cannot read the program " + robot.dir() +
                                "/none.kflow: No such file or directory");
}

TEST_F(ProgramConsole, ExpectComparesTheValueAsWrittenAndFailsTheConsole) {
    const auto met = robot.run(
        "expect iThreshL == 200\nexpect field lADCVal(1) == 0&\nexpect get lblSpeedVal(0).Caption "
        "== \"0\"\nKestroneVersion = 1281\nexpect MacroIsFunction 13 == -1&\n");
    EXPECT_THAT(met.lines, ElementsAre("ok", "ok", "ok", "ok", "ok", "ok")) << met.text();
    EXPECT_EQ(met.exit_code, 0);

    const auto unmet = robot.run(
        "expect iThreshL == 200&\nexpect field lADCVal(9) == 0\nexpect nosuch 1 == 1\n"
        "expect iThreshL = 5 == 5\nexpect iThreshL == 5%\nexpect iThreshL\nexpect quit == 1\n"
        "Port 0 = 5\nKestroneVersion = 1281\nexpect Port 0 = 5 == 1\n");
    EXPECT_THAT(
        unmet.lines,
        ElementsAre("ok", "fail expected 200&, got 200%",
                    "fail expected 0, got error 9 Subscript out of range",
                    "fail expected 1, got fail unknown command or operation: nosuch",
                    "fail expected 5, got ok", "ok", "fail expect takes COMMAND == VALUE",
                    "fail expect cannot check quit", "ok", "ok",
                    "message \"Cannot change pins for this component\"", "fail expected 1, got ok"))
        << unmet.text();
    EXPECT_EQ(unmet.exit_code, 1);
    // One failed expect fails the whole script, whatever comes after it.
    const auto then_met = robot.run("expect iThreshL == 2x\nexpect iThreshL == 200\nquit\n");
    EXPECT_THAT(then_met.lines,
                ElementsAre("ok", StartsWith("fail cannot read the value 2x: "), "ok"));
    EXPECT_EQ(then_met.exit_code, 1);
}

// Every demonstration ships with a script that runs it and checks its final state, those with
// an arena in theirs.
TEST(ExampleScripts, EachDemonstrationChecksItsOwnFinalState) {
    const std::filesystem::path examples(KESTRONE_EXAMPLES);
    for (const char* name : {"square", "line_follower", "light_seeker", "bumpers", "line_track",
                             "light_maze", "open_floor"}) {
        SCOPED_TRACE(name);
        std::ifstream in(examples / (std::string(name) + ".console"));
        ASSERT_TRUE(in.good());
        std::stringstream script;
        script << in.rdbuf();
        const std::string text = script.str();
        std::size_t expects = 0;
        for (std::size_t at = text.find("\nexpect "); at != std::string::npos;
             at = text.find("\nexpect ", at + 1))
            ++expects;
        EXPECT_GE(expects, 4u);
        const auto run = testing_support::run_console(
            text, "--module '" + std::string(KESTRONE_MODULE) + "'", examples.string());
        EXPECT_EQ(run.exit_code, 0) << run.text();
        EXPECT_EQ(std::count_if(run.lines.begin(), run.lines.end(),
                                [](const std::string& l) {
                                    return l.rfind("ok", 0) != 0 && l.rfind("tone ", 0) != 0;
                                }),
                  0)
            << run.text();
    }
}

}  // namespace
