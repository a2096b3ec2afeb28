// The console's clock: `advance` as a step of the panel's clock, `tick`, the panel commands' bad
// input, and the simulated second that `kestrone-host info` reports beside the module's macros.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

TEST(PanelClockConsole, AdvanceStepsTheClockAndTickLeavesTheBeat) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "advance 99\nadvance 1\nadvance 0\ntick 0\nadvance 100\n"
        "tick 3000000000\nmouse down 1 2\nmouse down x 1 1\nmouse down 1 x 5\nmouse jump 1 2 "
        "3\narrow updownADC(0) "
        "sideways\n"
        "put imageUp(0).Visible x True\n");
    EXPECT_THAT(
        run.lines,
        ElementsAre("ok", "ok 0&", "ok 2&", "ok 0&", "ok", "ok 2&",
                    "fail not a timer index: 3000000000", "fail mouse takes down|move|up B X Y",
                    "fail not a button number: x", "fail mouse takes X and Y as numbers",
                    "fail mouse takes down, move or up, not jump",
                    "fail arrow takes ELEMENT up or ELEMENT down",
                    "fail put takes ELEMENT.PROPERTY = VALUE"))
        << run.text();
}

TEST(PanelClockConsole, TheInfoReportRunsASimulatedSecond) {
    ComponentFolder robot(shipped_code_file());
    const auto run =
        testing_support::run_host("info --module " + testing_support::shell_quote(robot.module()));
    EXPECT_EQ(run.exit_code, 0) << run.text();
    const std::string text = run.text();
    EXPECT_THAT(text, HasSubstr("Component version: 5.0.3\n"));
    EXPECT_THAT(text, HasSubstr("Macros (21):\n   0  int ReadAnalogue(char Channel)  [private]\n"));
    EXPECT_THAT(text, HasSubstr("\n  20  char ReadLine(char Side)\n"));
    // Both timers at (256 - 200) x 2 = 112 ms: eight ticks each, the right wheel backwards.
    EXPECT_THAT(text, HasSubstr("speeds 200% and -200%, timers every 112& ms\n"));
    EXPECT_THAT(text, HasSubstr("after 1000 ms: 16 ticks, wheel phases 8% and 3%"));
}

}  // namespace
