// A property page session through the console: open, edit, apply, cancel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

const char* const kSettingsQuery =
    "bReturnInt\niThreshL\niThreshF\niThreshR\niThreshMic\niThreshLdr\nbUseI2C\nbWaitForButton\n"
    "bDummyBool1\nbDummyBool2\niDummyInt1\niDummyInt2\nsDummyString1\nsDummyString2\niMotorBias\n";

TEST(PageConsole, OpensFilledAndAppliesExactlyTheSettings) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "iThreshMic = 50\nsDummyString2 = \"x\"\npage open\npage get Changed\n"
        "page get txtiThreshL.Text\npage get optByte.Value\npage get chkWaitForButton.Value\n"
        "page get lblVersion.Caption\npage put txtiThreshL.Text = \"150.5\"\n"
        "page put sldMotorBias.Value = -100\npage get lblBiasVal.Caption\npage click optInt\n"
        "page click chkWaitForButton\npage apply\npage get Changed\n" +
        std::string(kSettingsQuery) + "field iADCMax\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok", "ok", "ok", "ok True", "ok \"200\"", "ok True", "ok 1%",
                            "ok \"v5.0.3\"", "ok", "ok", "ok \"-100\"", "ok", "ok", "ok",
                            "ok False", "ok 1%", "ok 150%", "ok 200%", "ok 200%", "ok 128%",
                            "ok 128%", "ok 0%", "ok 0%", "ok 0%", "ok 0%", "ok 0%", "ok 0%",
                            "ok \"\"", "ok \"\"", "ok -100%", "ok 1023%"))
        << run.text();
}

TEST(PageConsole, RefusesWhatThePageDoesNotHave) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "page get Changed\npage open\npage get txtNone.Text\n"
        "page click lblVersion\npage put optInt.Caption = \"x\"\n"
        "page frobnicate\npage get .Caption\n");
    ASSERT_EQ(run.lines.size(), 8u) << run.text();
    EXPECT_THAT(run.lines[1], testing::StartsWith("fail "));
    EXPECT_THAT(run.lines[3], testing::StartsWith("fail "));
    EXPECT_EQ(run.lines[4], "error 438 Object doesn't support this property or method");
    EXPECT_EQ(run.lines[5], "error 438 Object doesn't support this property or method");
    EXPECT_THAT(run.lines[6], testing::StartsWith("fail "));
    EXPECT_EQ(run.lines[7], "fail not WIDGET.PROPERTY: .Caption");
}

}  // namespace
