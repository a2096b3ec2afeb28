// kestrone-host code as a user runs it: the C on standard output or in a file, every fault of a
// program listed with its place, the settings of a project file, and the chip's compiler named
// when it is missing. Every demonstration's C goes through that compiler in the PIC tests.
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/console_driver.h"
#include "support/temp_dir.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::TempDir;

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// `kestrone-host code ARGS` in `dir`, standard error after standard output.
std::pair<int, std::string> code(const TempDir& dir, const std::string& args,
                                 const std::string& env = "") {
    const auto run = testing_support::run_host("code " + args, "", env, dir.path());
    return {run.exit_code, run.text()};
}

const char* const kSmall = "int n = 3\nrepeat n\n    LedOn(n)\n    n = n - 1\nend\n";

TEST(CodeCommand, WritesTheSameCToStandardOutputAndToAFile) {
    TempDir dir;
    dir.write("small.kflow", kSmall);
    const auto [status, out] = code(dir, "small.kflow");
    ASSERT_EQ(status, 0) << out;
    EXPECT_THAT(out, HasSubstr("void LedOn(char Led)\n{\n"));
    EXPECT_THAT(out, HasSubstr("void isr(void) __interrupt 0\n{\n"));
    EXPECT_THAT(out, HasSubstr("for (kfr0 = (unsigned int)kfv_n; kfr0 != 0; kfr0--) {"));
    EXPECT_THAT(out, Not(HasSubstr("DriveStop(")));  // a macro the program does not call
    EXPECT_EQ(code(dir, "small.kflow -o small.c"), std::make_pair(0, std::string()));
    EXPECT_EQ(slurp(dir.path() + "/small.c"), out);  // no date: the same every time
}

TEST(CodeCommand, ListsEveryFaultWithItsPlaceAndWritesNoC) {
    TempDir dir;
    dir.write("bad.kflow", "int a = 99999\nLedOn(a, 1)\nrepeat 2\n    Bogus()\n");
    EXPECT_EQ(
        code(dir, "bad.kflow -o bad.c"),
        std::make_pair(
            1, std::string("bad.kflow:1:9: the number 99999 is too large: numbers go from 0 to "
                           "65535 (0xFFFF)\n"
                           "bad.kflow:2:1: 'LedOn' takes 1 argument, but 2 are given\n"
                           "bad.kflow:3:1: 'repeat' has no 'end'\n"
                           "bad.kflow:4:5: there is no macro 'Bogus' in this component\n")));
    EXPECT_EQ(slurp(dir.path() + "/bad.c"), "");
}

TEST(CodeCommand, TakesTheSettingsOfAProjectFile) {
    TempDir dir;
    dir.write("small.kflow", kSmall);
    const auto saved = testing_support::run_console(
        "iThreshL = 77\niMotorBias = -20\nwriteprops\nstore save " + dir.path() + "/robot.ktx\n");
    ASSERT_EQ(saved.exit_code, 0) << saved.text();
    const auto [status, out] = code(dir, "small.kflow --project robot.ktx");
    ASSERT_EQ(status, 0) << out;
    EXPECT_THAT(out, HasSubstr("#define ROV_THRESH_LEFT     (77)"));
    EXPECT_THAT(out, HasSubstr("#define ROV_BIAS_LEFT_SET   (20)"));
    EXPECT_THAT(code(dir, "small.kflow").second, HasSubstr("#define ROV_THRESH_LEFT     (200)"));
    const auto missing = code(dir, "small.kflow --project nowhere.ktx");
    EXPECT_EQ(missing.first, 2);
    EXPECT_THAT(missing.second, HasSubstr("nowhere.ktx"));
}

TEST(CodeCommand, NamesTheMissingCompilerForHexAndKeepsTheC) {
    TempDir dir;
    dir.write("small.kflow", kSmall);
    const auto r = code(dir, "small.kflow --hex", "KESTRONE_PIC_PREFIX='" + dir.path() + "/none'");
    EXPECT_EQ(r.first, 3);
    EXPECT_THAT(r.second, HasSubstr("the PIC compiler is not installed: no " + dir.path() +
                                    "/none/bin/sdcc"));
    EXPECT_THAT(slurp(dir.path() + "/small.c"), HasSubstr("void main(void)"));
    // A program without an extension, in a folder with a dot in its name: the C goes beside it.
    dir.write("v1.2/robot", kSmall);
    EXPECT_EQ(code(dir, "v1.2/robot --hex", "KESTRONE_PIC_PREFIX=/nowhere").first, 3);
    EXPECT_THAT(slurp(dir.path() + "/v1.2/robot.c"), HasSubstr("void main(void)"));
    // A compiler that writes without end is stopped, and what it said first is shown.
    dir.write("loud/bin/sdcc", "#!/bin/sh\necho first words >&2\nexec yes popGet\n");
    ASSERT_EQ(::chmod((dir.path() + "/loud/bin/sdcc").c_str(), 0755), 0);
    const auto loud =
        code(dir, "small.kflow --hex", "KESTRONE_PIC_PREFIX='" + dir.path() + "/loud'");
    EXPECT_EQ(loud.first, 3);
    EXPECT_THAT(loud.second, HasSubstr("first words\npopGet\n"));
    EXPECT_THAT(loud.second,
                HasSubstr("(the compiler wrote more than 64 KB of messages and was stopped)"));
    EXPECT_LT(loud.second.size(), 80'000u);
    // One that ends well without its hex has failed all the same.
    dir.write("mute/bin/sdcc", "#!/bin/sh\nexit 0\n");
    ASSERT_EQ(::chmod((dir.path() + "/mute/bin/sdcc").c_str(), 0755), 0);
    const auto mute =
        code(dir, "small.kflow --hex", "KESTRONE_PIC_PREFIX='" + dir.path() + "/mute'");
    EXPECT_EQ(mute.first, 3);
    EXPECT_THAT(mute.second, HasSubstr("the compiler ended without writing small.hex"));
}

TEST(CodeCommand, WarnsOfAMacroWhoseCodeTheComponentCannotRead) {
    std::string file = testing_support::shipped_code_file();
    const std::string marker = "/*Macro_LedOn_Start*/\n";
    file.erase(file.find(marker), marker.size());
    const testing_support::ComponentFolder robot(file);
    TempDir dir;
    dir.write("small.kflow", kSmall);
    const auto [status, out] = code(dir, "small.kflow --module '" + robot.module() + "'");
    EXPECT_EQ(status, 0);
    EXPECT_THAT(out, HasSubstr("kestrone-host: warning: the component could not read its code "
                               "of the macro LedOn\n"));
    EXPECT_THAT(out, HasSubstr("void LedOn(char Led)\n{\n//Error Reading Code For "));
}

TEST(CodeCommand, AnswersBadUseWithAStatusOf2) {
    TempDir dir;
    EXPECT_EQ(code(dir, "").first, 2);
    const auto r = code(dir, "absent.kflow");
    EXPECT_EQ(r.first, 2);
    EXPECT_THAT(r.second, HasSubstr("cannot read the program absent.kflow"));
}

}  // namespace
