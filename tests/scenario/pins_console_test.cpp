// Pin negotiation and the simulated levels, as a host drives them through the console.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing_support::ComponentFolder;

TEST(PinsConsole, NegotiatesAndRefusesToMovePins) {
    ComponentFolder robot(
        "[Settings]\nDescription=Pins\n[Pins]\nCount=2\n1=A\n2=B\n[PinPort]\n1=1\n2=-1\n"
        "[PinDesiredBit]\n1=4\n[PinMustUsePort]\n1=True\n");
    const auto run = robot.run(
        "Description\nPort 0 = 5\nPort 0\nDesiredPort -1\nPort -1\nPortMandatory 0\n"
        "ConnectedOK\nKestroneVersion = 1281\nPort 0 = 5\nBit 1 = 5\nPort 0\nBit 0\n");
    EXPECT_THAT(run.lines, ElementsAre("ok", "ok \"Pins\"", "ok", "ok 1&",
                                       "error 9 Subscript out of range", "ok 0&", "ok -1&", "ok 0&",
                                       "ok", "message \"Cannot change pins for this component\"",
                                       "ok", "message \"Cannot change ports for this component\"",
                                       "ok", "ok 1&", "ok 4&"))
        << run.text();
}

TEST(PinsConsole, MovesLevelsAsOneArray) {
    ComponentFolder robot("[Settings]\nDescription=Pins\n[Pins]\nCount=3\n1=A\n2=B\n3=C\n");
    const auto run = robot.run(
        "GeneralGet 1\nSimWritePins Single[0 to 2](0.5, 0, -2)\nGeneralGet 1\nGeneralGet 1\n"
        "SimReadPins Empty\nGeneralGet 1\nSimWritePins [True, \"1\"]\nSimReadPins Empty\n"
        "GeneralGet 1\nSimWritePins Byte[0 to 2](0, 0, 0)\nSimWritePins \"x\"\n");
    EXPECT_THAT(run.lines, ElementsAre("ok", "ok False", "ok", "ok True", "ok False",
                                       "ok pVal=Boolean[0 to 2](True, False, True)", "ok True",
                                       "error 9 Subscript out of range",
                                       "ok pVal=Boolean[0 to 2](True, True, True)", "ok True", "ok",
                                       "error 13 Type mismatch"))
        << run.text();
}

}  // namespace
