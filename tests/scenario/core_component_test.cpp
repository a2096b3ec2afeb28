// The component object, its code file, pin and macro tables and code text, driven through
// `kestrone-host console` against a copy of the module in a folder of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing_support::ComponentFolder;

// Lines joined with CR LF, as the code file has them.
std::string crlf(std::initializer_list<const char*> lines) {
    std::string out;
    for (const char* l : lines)
        out += std::string(l) + "\r\n";
    return out;
}

const std::string kRobot = crlf({
    "/*",
    "[Settings]",
    "IsAnalogue=1",
    "Description=Test robot",
    "[Pins]",
    "Count=3",
    "1=LED A",
    "2=SW",
    "3=LINE",
    "[PinPort]",
    "1=1",
    "[PinDesiredBit]",
    "1=5",
    "[PinMustUsePort]",
    "2=True",
    "[PinValue]",
    "3=-1",
    "[MacroNames]",
    "Count=3",
    "1=Alpha",
    "2=Beta",
    "3=Gamma",
    "[MacroReturns]",
    "2=int",
    "[MacroIsPrivate]",
    "1=1",
    "[MacroParameters_Beta]",
    "Count=2",
    "1=Speed",
    "2=Side",
    "[MacroParamTypes_Beta]",
    "1=int",
    "*/",
    "/*InitialisationCode_Start*/",
    "init1;",
    "init2;",
    "/*InitialisationCode_End*/",
    "/*InterruptCode_Start*/",
    "/*InterruptCode_End*/",
    "/*Macro_Alpha_Start*/",
    "alpha(%a, %g);",
    "/*Macro_Alpha_End*/",
    "/*Macro_Beta_Start*/",
    "/*Macro_Beta_Start*/",
    "/*Macro_Beta_End*/",
    "/*Macro_Gamma_Start*/ ",
    "/*Macro_Gamma_End*/",
    "/*DefinesCode_Start*/",
    "#define A 1",
    "/*DefinesCode_End*/",
    "between",
    "/*DefinesCode_Start*/",
    "#define B 2",
    "/*DefinesCode_End*/",
});

TEST(StartUp, StandsWithTheValuesOfItsCodeFile) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "field VERSION_STRING\nfield bIsAnalogue\nfield bMultipleAllowed\nfield "
        "sDescription\nfield sCodeFile\n"
        "field HelpFile\nbUseI2C\nbWaitForButton\niThreshL\nfield iADCMax\nMacroNames\nfield "
        "iVersionMajor\n"
        "HasInitialisation\nHasInterrupts\nInitialisationCode\nCodeFilename\nGeneralGet 3\nfield "
        "bInitialised\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok \"v5.0\"", "ok True", "ok False", "ok \"Test robot\"",
                            "ok \"Robo.c\"", "ok \"" + robot.dir() + "/help/Robo.chm\"", "ok 128%",
                            "ok 1%", "ok 200%", "ok 255%", "ok \"\"", "ok 0%", "ok -1&", "ok 0&",
                            "ok \"init1;\\ninit2;\\n\"", "ok \"" + robot.dir() + "/Robo.c\"",
                            "ok \"" + robot.dir() + "/Robo.c\"", "ok False"))
        << run.text();
}

TEST(StartUp, PrefersTheHlpHelpAndReportsAMissingOne) {
    ComponentFolder both(kRobot);
    both.temp().write("help/Robo.hlp", "help");
    EXPECT_THAT(both.run("field HelpFile\n").lines,
                ElementsAre("ok", "ok \"" + both.dir() + "/help/Robo.hlp\""));

    // Unchanged: it still names the project's help file, and is not emptied.
    ComponentFolder none(kRobot, "Robo", false);
    EXPECT_THAT(none.run("field HelpFile\n").lines,
                ElementsAre("message \"Can't find Robo help file\"", "ok", "ok \"Rovanta.chm\""));
}

TEST(StartUp, WithoutACodeFileShowsEightMessagesAndStands) {
    ComponentFolder robot("");
    const std::string missing =
        "message \"Error - cannot find C code file:\\r\\n\\r\\n" + robot.dir() + "/Robo.c\"";
    const std::string not_found = "message \"File not found\"";
    const auto run = robot.run(
        "field sDescription\nHasInitialisation\nHasInterrupts\nPinCount\nPinName 0\nPinName 1\n");
    EXPECT_THAT(run.lines, ElementsAre(missing, missing, missing, missing, not_found, missing,
                                       not_found, missing, "ok", "ok \"default\"", "ok 0&", "ok 0&",
                                       "ok 0&", "ok \"XX\"", "ok \"\""))
        << run.text();

    ComponentFolder bare("", "Robo", false);
    EXPECT_EQ(bare.run("").lines.size(), 10u);  // the help file's message as well
}

TEST(StartUp, FailsCleanlyOnAValueThatDoesNotConvert) {
    ComponentFolder robot(crlf({"[Pins]", "Count=three"}));
    const auto run = robot.run("PinCount\nnew\nquit\n");
    EXPECT_THAT(run.lines, ElementsAre("error 13 Type mismatch", testing::StartsWith("fail"),
                                       "error 13 Type mismatch"));
    ComponentFolder negative(crlf({"[Pins]", "Count=-4"}));
    EXPECT_THAT(negative.run("").lines, ElementsAre("error 9 Subscript out of range"));
}

TEST(PinTable, BuildsThePinsFromTheCodeFile) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "PinCount\nPinName 2\nPinName 3\nPinName -1\nfield Pins(0).Port\nfield Pins(0).Bit\n"
        "field Pins(0).DesiredBit\nfield Pins(1).PortMandatory\nfield Pins(1).Direction\nfield "
        "Pins(1).SamePortAsID\n"
        "field Pins(2).SimValue\nfield Pins(3).Port\nfield Pins(0).Nope\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok 3&", "ok \"LINE\"", "ok \"\"", "ok \"\"", "ok 1&", "ok 5&",
                            "ok 5&", "ok True", "ok 3&", "ok 0&", "ok True",
                            "error 9 Subscript out of range", testing::StartsWith("fail")))
        << run.text();

    ComponentFolder fallback(crlf({"[Settings]"}));
    EXPECT_THAT(
        fallback.run("field Pins(0).Direction\nfield Pins(0).SamePortAsID\nPinCount\n").lines,
        ElementsAre("ok", "ok 2&", "ok -1&", "ok 0&"));
}

TEST(MacroTable, IsBuiltWhenTheHostTellsItsVersion) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "MacroIsFunction 0\nKestroneVersion = 1281\nfield iVersionMajor\nfield "
        "iVersionMinor\nMacroNames\n"
        "MacroIsFunction 1\nMacroIsFunction 0\nMacroIsPrivate 0\nMacroIsPrivate 9\nMacroParameters "
        "1\n"
        "MacroParameters 0\nMacroParameters 3\nMacroIsFunction -1\n");
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            "ok", "error 9 Subscript out of range", "ok", "ok 5%", "ok 1%",
            "ok String[0 to 2](\"Alpha|Alpha|void\", \"Beta|Beta|int\", \"Gamma|Gamma|void\")",
            "ok -1&", "ok 0&", "ok -1&", "ok 0&",
            "ok String[0 to 1](\"Speed|Speed|int\", \"Side|Side|char\")", "ok Variant[0 to -1]()",
            "ok Empty", "ok 0&"))
        << run.text();
}

TEST(MacroTable, ReportsMissingNamesEveryTimeItIsBuilt) {
    ComponentFolder robot(crlf({"[MacroNames]", "Count=2", "[MacroParameters_]", "Count=1"}));
    const auto run = robot.run(
        "KestroneVersion = 255\nMacroNames\nKestroneVersion = 1282\nfield iVersionMinor\n");
    const char* m1 = "message \"Error: Macro 1 is missing from the code file!\"";
    const char* p1 = "message \"Error: Parameter 1.1 is missing from the code file!\"";
    const char* m2 = "message \"Error: Macro 2 is missing from the code file!\"";
    const char* p2 = "message \"Error: Parameter 2.1 is missing from the code file!\"";
    EXPECT_THAT(run.lines,
                ElementsAre("ok", m1, p1, m2, p2, "ok", "ok String[0 to 1](\"||void\", \"||void\")",
                            m1, p1, m2, p2, "ok", "ok 2%"))
        << run.text();
}

TEST(MacroTable, RefusesAVersionWhoseMajorNumberOverflows) {
    ComponentFolder robot(kRobot);
    EXPECT_THAT(robot
                    .run("KestroneVersion = 8388608\nfield "
                         "iVersionMajor\nMacroNames\nKestroneVersion = -8388608\n"
                         "field iVersionMajor\nKestroneVersion = -8388609\n")
                    .lines,
                ElementsAre("ok", "error 6 Overflow", "ok 0%", "ok \"\"", "ok", "ok -32768%",
                            "error 6 Overflow"));
}

TEST(CodeText, CutsBlocksOutOfTheCodeFile) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "KestroneVersion = 1281\nMacroCode 0\nMacroCode 1\nMacroCode 2\nMacroCode 3\nDefinesCode\n"
        "GetCodeFromFile \"Nope\"\nInterruptCode\n");
    EXPECT_THAT(
        run.lines,
        ElementsAre("ok", "ok", "ok \"alpha(%a, %g);\\n\"", "ok \"/*Macro_Beta_Start*/\\n\"",
                    "ok \"//Error Reading Code For Test robot::Macro_Gamma\\r\\n\"", "ok \"\"",
                    "ok \"#define A 1\\n#define B 2\\n\"",
                    "ok \"//Error Reading Code For Test robot::Nope\\r\\n\"", "ok \"\""))
        << run.text();
}

TEST(CodeText, FillsTheSettingsIntoATextPassedThrough) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "MacroCodeOverride \"%g %a%b %x 100%\"\niMotorBias = -20\nMacroCodeOverride "
        "\"%o/%p\"\niMotorBias = 20\n"
        "MacroCodeOverride \"%o/%p\"\niMotorBias = 0\nMacroCodeOverride \"%o/%p\"\nsDummyString1 = "
        "\"<%n>\"\n"
        "sDummyString2 = \"%b\"\nMacroCodeOverride \"%m\"\nsDummyString1 = "
        "\"%m!\"\nMacroCodeOverride \"%m %m\"\n"
        "sDummyString2 = \"%n%n\"\nMacroCodeOverride \"%n\"\nMacroCodeOverride \"no tokens\"\n"
        "sDummyString2 = \"n\"\nMacroCodeOverride \"%%%n\"\n");
    EXPECT_THAT(run.lines,
                ElementsAre("ok", "ok pVal=\"128 0200 %x 100%\"", "ok", "ok pVal=\"20/0\"", "ok",
                            "ok pVal=\"0/20\"", "ok", "ok pVal=\"0/0\"", "ok", "ok",
                            "ok pVal=\"<%b>\"", "ok", "ok pVal=\"%m! %m!\"", "ok",
                            "ok pVal=\"%n%n\"", "ok pVal=\"no tokens\"", "ok", "ok pVal=\"n\""))
        << run.text();
}

// The bias's magnitude is an Integer operation: -32768 has none, and the texts of all tokens
// are formed before any token is looked for, so even a text without tokens fails.
TEST(CodeText, ABiasWithoutA16BitMagnitudeOverflowsBeforeAnyToken) {
    ComponentFolder robot(kRobot);
    const auto run = robot.run(
        "iMotorBias = -32767\nMacroCodeOverride \"%o/%p\"\niMotorBias = -32768\n"
        "MacroCodeOverride \"no tokens\"\nMacroCodeOverride \"%a\"\niMotorBias = 32767\n"
        "MacroCodeOverride \"%o/%p\"\n");
    EXPECT_THAT(run.lines, ElementsAre("ok", "ok", "ok pVal=\"32767/0\"", "ok", "error 6 Overflow",
                                       "error 6 Overflow", "ok", "ok pVal=\"0/32767\""))
        << run.text();
}

TEST(CodeText, CountsCharacterPlacesIn16Bits) {
    ComponentFolder robot(kRobot);
    const std::string before(32766, 'x');
    const auto run = robot.run("MacroCodeOverride \"" + before + "%a\"\nMacroCodeOverride \"" +
                               before + "x%a\"\n");
    ASSERT_EQ(run.lines.size(), 3u);
    EXPECT_EQ(run.lines[1], "ok pVal=\"" + before + "0\"");
    EXPECT_EQ(run.lines[2], "error 6 Overflow");
}

TEST(CodeText, RereadsTheBlocksForAProjectFileName) {
    ComponentFolder robot(kRobot);
    const auto first =
        robot.run("KtxFilename = \"other.ktx\"\nfield sKtxFile\nfield sCodeFile\nGeneralGet 3\n");
    EXPECT_THAT(first.lines, ElementsAre("ok", "ok", "ok \"other.ktx\"", "ok \"Robo.c\"",
                                         "ok \"" + robot.dir() + "/Robo.c\""));
}

}  // namespace
