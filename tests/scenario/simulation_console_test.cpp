// Whole simulated runs through the console: macros, ticks, the user's pointer and clicks, and
// bad input that must come back as a status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "support/console_driver.h"

namespace {

using testing::ElementsAreArray;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

struct Exchange {
    const char* command;
    const char* answer;
};

// Runs the commands in one session and compares every answer line, the start-up's first.
void expect_session(const std::vector<Exchange>& session) {
    ComponentFolder robot(shipped_code_file());
    std::string script;
    std::vector<std::string> expected{"ok"};
    for (const Exchange& e : session) {
        script += std::string(e.command) + "\n";
        std::istringstream lines(e.answer);
        for (std::string line; std::getline(lines, line);)
            expected.push_back(line);
    }
    const auto run = robot.run(script);
    EXPECT_THAT(run.lines, ElementsAreArray(expected)) << run.text();
}

TEST(SimulationScenario, TheUserSetsSensorsSwitchesAndSeesTheLeds) {
    expect_session({
        {"KestroneVersion = 1281", "ok"},
        {"mouse down 1 20 60", "ok"},
        {"mouse move 1 20 61", "ok"},
        {"mouse up 1 20 61", "ok"},
        {"field lADCVal(0)", "ok 116&"},
        {"get lblADCVal(0).Caption", "ok \"116\""},
        {"SimMacroCall 17 [] 0& Empty 0&", "ok pRetVal=116& pvAffected=Empty pCycles=0&"},
        {"event frameADC_MouseDown 4 1 0 800! 0!", "ok"},
        {"SimMacroCall 19 [82] 0& Empty 0&", "ok pRetVal=144& pvAffected=Empty pCycles=0&"},
        {"arrow updownADC(4) up", "ok"},
        {"get imSlideBar(4).Left", "ok 730!"},
        {"bReturnInt = 1", "ok"},
        {"field lADCVal(4)", "ok 582&"},
        {"click chkSwitchRight", "ok"},
        {"SimMacroCall 13 [1] 0& Empty 0&", "ok pRetVal=1& pvAffected=Empty pCycles=0&"},
        {"SimMacroCall 10 [165] 0& Empty 0&",
         "ok pRetVal=0& pvAffected=Long[0 to 7](0, 1, 2, 3, 4, 5, 6, 7) pCycles=0&"},
        {"get imageLedOn(0).Visible", "ok False"},
        {"Refresh", "ok"},
        {"get imageLedOn(0).Visible", "ok True"},
        {"SimMacroCall 15 [44, 1, 244] 0& Empty 0&",
         "tone 440 500\nok pRetVal=0& pvAffected=Empty pCycles=0&"},
        {"put UserControl.Height = 99", "ok"},
        {"get UserControl.Height", "ok 4230!"},
    });
}

TEST(SimulationScenario, BadInputGetsAStatusNeverACrash) {
    expect_session({
        {"SimMacroCall 4 [1] 0& Empty 0&", "error 9 Subscript out of range"},  // no macro table
        {"KestroneVersion = 1281", "ok"},
        {"SimMacroCall 4 5 0& Empty 0&", "error 13 Type mismatch"},
        {"SimMacroCall 4 [1e300] 0& Empty 0&", "error 6 Overflow"},
        {"SimMacroCall -2147483648 [1] 5& Empty 0&", "ok pRetVal=5& pvAffected=Empty pCycles=0&"},
        {"SimMacroCall2 4 [100] 0& Empty 0&",
         "message \"Error in <SimMacroCall2>\"\nok pRetVal=0& pvAffected=Empty pCycles=0&"},
        {"mouse down 1 1e30 1e30", "ok"},
        {"mouse move 7 -1e30 5", "ok"},
        {"mouse up 1 3e38 3e38", "ok"},
        {"arrow updownADC(9) up", "error 340 Control array element doesn't exist"},
        {"arrow chkSwitchLeft up", "error 5 Invalid procedure call or argument"},
        {"tick 7", "error 340 Control array element doesn't exist"},
        {"advance -1", "fail advance takes a whole number of milliseconds, 0 or more"},
        {"event frameADC_MouseDown", "fail frameADC_MouseDown does not take 0 argument(s)"},
        {"event frameADC_MouseDown 0 1 0 0!",
         "fail frameADC_MouseDown does not take 4 argument(s)"},
        {"event frameADC_MouseDown 9 1 0 0! 0!", "error 340 Control array element doesn't exist"},
        {"event nosuch 1", "fail the panel has no event handler nosuch"},
        {"put Timer1(0).Interval = 70000", "error 380 Invalid property value"},
        {"get WheelLine(3).Bogus", "fail the panel has no WheelLine(3).Bogus"},
        {"field iMotorSpeed(0)", "ok 0%"},
    });
}

}  // namespace
