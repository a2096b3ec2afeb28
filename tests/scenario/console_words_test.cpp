// What the console's own commands make of their words, in whole sessions against the real module:
// the panel's clock and input, the page, and bad input of every kind answered with a status, never
// a crash. What the component itself answers is its own tests'.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

// Each command of one session beside its answer line, the start-up's "ok" first.
void expect_session(const std::vector<std::pair<std::string, std::string>>& session) {
    std::string script;
    std::vector<std::string> expected{"ok"};
    for (const auto& [command, answer] : session) {
        script += command + "\n";
        expected.push_back(answer);
    }
    const auto run = ComponentFolder(shipped_code_file()).run(script);
    EXPECT_THAT(run.lines, ElementsAreArray(expected)) << run.text();
}

TEST(ConsoleWords, AdvanceStepsTheClockAndTickLeavesTheBeat) {
    expect_session({
        {"advance 99", "ok 0&"},
        {"advance 1", "ok 2&"},
        {"advance 0", "ok 0&"},
        {"tick 0", "ok"},
        {"advance 100", "ok 2&"},
        {"tick 3000000000", "fail not a timer index: 3000000000"},
        {"mouse down 1 2", "fail mouse takes down|move|up B X Y"},
        {"mouse down x 1 1", "fail not a button number: x"},
        {"mouse down 1 x 5", "fail mouse takes X and Y as numbers"},
        {"mouse jump 1 2 3", "fail mouse takes down, move or up, not jump"},
        {"arrow updownADC(0) sideways", "fail arrow takes ELEMENT up or ELEMENT down"},
        {"put imageUp(0).Visible x True", "fail put takes ELEMENT.PROPERTY = VALUE"},
        {"log begin", "fail log takes start FILE or stop"},
    });
}

TEST(ConsoleWords, BadInputToTheSimulationGetsAStatus) {
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

const char* const kSettingsQuery =
    "bReturnInt\niThreshL\niThreshF\niThreshR\niThreshMic\niThreshLdr\nbUseI2C\nbWaitForButton\n"
    "bDummyBool1\nbDummyBool2\niDummyInt1\niDummyInt2\nsDummyString1\nsDummyString2\niMotorBias\n";

TEST(ConsoleWords, ThePageOpensFilledAndAppliesExactlyTheSettings) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "iThreshMic = 50\nsDummyString2 = \"x\"\npage open\npage get Changed\n"
        "page get txtiThreshL.Text\npage get optByte.Value\npage get chkWaitForButton.Value\n"
        "page get lblVersion.Caption\npage put txtiThreshL.Text = \"150.5\"\n"
        "page put sldMotorBias.Value = -100\npage get lblBiasVal.Caption\npage click optInt\n"
        "page click chkWaitForButton\npage apply\npage get Changed\n" +
        std::string(kSettingsQuery) + "field iADCMax\n");
    EXPECT_THAT(run.lines, testing::ElementsAre(
                               "ok", "ok", "ok", "ok", "ok True", "ok \"200\"", "ok True", "ok 1%",
                               "ok \"v5.0.3\"", "ok", "ok", "ok \"-100\"", "ok", "ok", "ok",
                               "ok False", "ok 1%", "ok 150%", "ok 200%", "ok 200%", "ok 128%",
                               "ok 128%", "ok 0%", "ok 0%", "ok 0%", "ok 0%", "ok 0%", "ok 0%",
                               "ok \"\"", "ok \"\"", "ok -100%", "ok 1023%"))
        << run.text();
}

TEST(ConsoleWords, ThePageRefusesWhatItDoesNotHave) {
    const std::string unsupported = "error 438 Object doesn't support this property or method";
    expect_session({
        {"page get Changed", "fail there is no property page: page open first"},
        {"page open", "ok"},
        {"page get txtNone.Text", "fail the page has no txtNone.Text"},
        {"page click lblVersion", unsupported},
        {"page put optInt.Caption = \"x\"", unsupported},
        {"page frobnicate", "fail page open, page get, page put, page click or page apply"},
        {"page get .Caption", "fail not WIDGET.PROPERTY: .Caption"},
    });
}

TEST(ConsoleWords, TheInfoReportRunsASimulatedSecond) {
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
