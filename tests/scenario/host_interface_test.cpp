// The host interface's own operations, the module's boundary and the console's robustness.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <set>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;
using testing_support::ComponentFolder;
using testing_support::shipped_code_file;

TEST(HostInterface, AnswersItsOwnOperations) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "ComponentVersion\nKestroneVersion = 1282\nComponentVersion\nfield "
        "iVersionMinor\nMultipleAllowed\n"
        "IsAnalogue\nSupportsKeys\nHasExclusiveInts\nExclusiveInterrupts\nGeneralGet 2\nGeneralGet "
        "99\n"
        "GeneralGet 1\nGeneralMethod 5 \"keep\"\nGeneralPut 5 = [1, 2]\nVNodeCount\nVNodeProtocol "
        "3\nVNodeName 3\n"
        "VNodeMsgRead 7 99&\nVNodeMsgWrite 1 2 = \"m\"\nReadCustomImages 4\nWriteCustomImages 3 = "
        "\"abc\"\n"
        "KeyDown 65\nKeyUp 65\nClockSpeed = 20000000\nTargetController = \"PIC16F877A\"\nfield "
        "TargetController\n"
        "IKestroneComponentV5_VNodeMsgRead 1 5&\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok 1280&", "ok", "ok 1280&", "ok 2%", "ok 0&", "ok 0&", "ok 0&",
                            "ok 0&", "ok Long[0 to -1]()", "ok 0%", "ok 0%", "ok False",
                            "ok pVal=\"keep\"", "ok RHS=Variant[0 to 1](1%, 2%)", "ok 0&", "ok 0&",
                            "ok \"\"", "ok Byte[0 to 0](0) lSize=0&", "ok msg=\"m\"", "ok \"\"",
                            "message \"id=3  and filename = \\r\\nabc\"", "ok", "ok", "ok", "ok",
                            "ok", "ok \"PIC16F877A\"", "ok Byte[0 to 0](0) lSize=0&"))
        << run.text();
}

TEST(HostInterface, TurnsWrongKindsIntoStatusesNeverCrashes) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "KestroneVersion = 1281\nMacroIsFunction \"abc\"\nMacroIsFunction [1, 2]\nMacroIsFunction "
        "1e12\n"
        "MacroCode 2147483647\nMacroCode -2147483648\niThreshL = 40000\niThreshL = "
        "\"12.5\"\niThreshL\n"
        "sDummyString1 = [1]\nsDummyString1 = 1.5!\nsDummyString1\nKestroneVersion = "
        "\"x\"\nPinName True\n"
        "GetIniKeyValue Empty Empty Empty\nsetupAPin 99 \"x\" 0 False 0 0 False 0 False\n"
        "MacroCodeOverride Long[0 to 0](1)\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok", "error 13 Type mismatch", "error 13 Type mismatch",
                            "error 6 Overflow", "ok \"\"", "ok \"\"", "error 6 Overflow", "ok",
                            "ok 12%", "error 13 Type mismatch", "ok", "ok \"1.5\"",
                            "error 13 Type mismatch", "ok \"\"", "ok \"\"",
                            "error 9 Subscript out of range", "error 13 Type mismatch"))
        << run.text();
}

// Pins are negotiated, but once the host has told its version they no longer move.
TEST(HostInterface, NegotiatesAndRefusesToMovePins) {
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

TEST(Console, AnswersEveryLineAndKeepsGoing) {
    ComponentFolder robot(shipped_code_file());
    const auto run = robot.run(
        "\n   \n# a comment\nnosuch 1 2\nMacroIsFunction\nMacroIsFunction 1 2\nMacroIsFunction "
        "\"open\n"
        "MacroIsFunction 32768%\nMacroNames = 1\nKestroneVersion\nfield\nfield Nope\nfield "
        "lADCVal(9)\n"
        "field lADCVal(x)\nfield iMotorSpeed(1)\nfield Macros(0).MacroName\nKestroneVersion = 1281 "
        "2\n"
        "new extra\nnew\nComponentVersion\nquit\nComponentVersion\n");
    ASSERT_EQ(run.lines.size(), 18u) << run.text();
    EXPECT_EQ(run.lines[0], "ok");
    for (int i : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 14, 15})
        EXPECT_THAT(run.lines[i], StartsWith("fail ")) << i;
    EXPECT_EQ(run.lines[2], "fail MacroIsFunction takes 1 argument(s)");
    EXPECT_EQ(run.lines[3], "fail MacroIsFunction takes 1 argument(s)");
    EXPECT_EQ(run.lines[6], "fail MacroNames can't be written");
    EXPECT_EQ(run.lines[10], "error 9 Subscript out of range");
    EXPECT_EQ(run.lines[12], "ok 0%");
    EXPECT_EQ(run.lines[13], "error 9 Subscript out of range") << "no macro table yet";
    EXPECT_EQ(run.lines[16], "ok");
    EXPECT_EQ(run.lines[17], "ok 1280&");
    EXPECT_EQ(run.exit_code, 0);
}

TEST(Module, ExportsExactlyItsFourEntryPoints) {
    FILE* pipe = ::popen("nm -D --defined-only '" KESTRONE_MODULE "'", "r");
    ASSERT_NE(pipe, nullptr);
    std::set<std::string> exported;
    char line[512];
    while (std::fgets(line, sizeof line, pipe)) {
        char kind = 0;
        char name[400];
        if (std::sscanf(line, "%*s %c %399s", &kind, name) == 2 &&
            (kind == 'T' || kind == 'D' || kind == 'B'))
            exported.insert(name);
    }
    ::pclose(pipe);
    EXPECT_EQ(exported, (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                               "DllRegisterServer", "DllUnregisterServer"}));
}

// The module registers where the host lists its components: under HOME when XDG_DATA_HOME is no
// full path.
TEST(Module, RegistersWhereTheHostListsItsComponents) {
    ComponentFolder robot(shipped_code_file());
    testing_support::TempDir home;
    const std::string folder = home.path() + "/.local/share/kestrone/components";
    const std::string env =
        "XDG_DATA_HOME=relative HOME=" + testing_support::shell_quote(home.path());
    const auto reg = testing_support::run_host(
        "register --module " + testing_support::shell_quote(robot.module()), "", env);
    EXPECT_EQ(reg.exit_code, 0) << reg.text();
    const auto list = testing_support::run_host("components", "", env);
    EXPECT_EQ(list.exit_code, 0) << list.text();
    EXPECT_THAT(list.text(),
                testing::HasSubstr("components registered in " + folder + ":\n  Rovanta 5.0.3 "));
    EXPECT_THAT(list.text(), testing::HasSubstr(robot.module()));
}

}  // namespace
