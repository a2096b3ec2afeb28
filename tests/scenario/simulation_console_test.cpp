// Bad input to the simulation through the console: every line comes back as a status, never a
// crash. What the simulation answers to a bad macro call or property is the component's own
// tests'; here what the console's own commands make of bad words.
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

TEST(SimulationScenario, BadInputGetsAStatusNeverACrash) {
    expect_session({
        {"SimMacroCall 4 [1] 0& Empty 0&", "error 9 Subscript out of range"},  // no macro table
        {"KestroneVersion = 1281", "ok"},
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
        {"event frameADC_MouseDown 4 1 0 800! 0!", "ok"},
        {"field lADCVal(4)", "ok 144&"},
        {"event nosuch 1", "fail the panel has no event handler nosuch"},
        {"get WheelLine(3).Bogus", "fail the panel has no WheelLine(3).Bogus"},
        {"field iMotorSpeed(0)", "ok 0%"},
    });
}

}  // namespace
