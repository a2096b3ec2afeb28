// kestrone-host code as a user runs it: the C on standard output or in a file, every fault of a
// program listed with its place, the settings of a project file, and the chip's compiler asked
// for when it is there and named when it is not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "support/console_driver.h"
#include "support/temp_dir.h"

namespace {

using testing::HasSubstr;
using testing::Not;

struct Result {
    int status = -1;
    std::string out, err;
};

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Runs `kestrone-host code ARGS` in `dir`, with `env` before it.
Result code(const testing_support::TempDir& dir, const std::string& args,
            const std::string& env = "") {
    const std::string out = dir.path() + "/stdout", err = dir.path() + "/stderr";
    const std::string command = "cd '" + dir.path() + "' && " + env +
                                " '" KESTRONE_HOST_BIN "' code " + args + " > '" + out + "' 2> '" +
                                err + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, slurp(out), slurp(err)};
}

const char* const kSmall = "int n = 3\nrepeat n\n    LedOn(n)\n    n = n - 1\nend\n";

TEST(CodeCommand, WritesTheSameCToStandardOutputAndToAFile) {
    testing_support::TempDir dir;
    dir.write("small.kflow", kSmall);
    const Result first = code(dir, "small.kflow");
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.out, HasSubstr("void LedOn(char Led)\n{\n"));
    EXPECT_THAT(first.out, HasSubstr("void isr(void) __interrupt 0\n{\n"));
    EXPECT_THAT(first.out, HasSubstr("for (kfr0 = (unsigned int)kfv_n; kfr0 != 0; kfr0--) {"));
    EXPECT_THAT(first.out, Not(HasSubstr("DriveStop(")));  // a macro the program does not call
    const Result to_file = code(dir, "small.kflow -o small.c");
    ASSERT_EQ(to_file.status, 0) << to_file.err;
    EXPECT_EQ(to_file.out, "");
    EXPECT_EQ(slurp(dir.path() + "/small.c"), first.out);  // no date: the same every time
}

TEST(CodeCommand, ListsEveryFaultWithItsPlaceAndWritesNoC) {
    testing_support::TempDir dir;
    dir.write("bad.kflow", "int a = 99999\nLedOn(a, 1)\nrepeat 2\n    Bogus()\n");
    const Result r = code(dir, "bad.kflow -o bad.c");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "bad.kflow:1:9: the number 99999 is too large: numbers go from 0 to 65535 (0xFFFF)\n"
              "bad.kflow:2:1: 'LedOn' takes 1 argument, but 2 are given\n"
              "bad.kflow:3:1: 'repeat' has no 'end'\n"
              "bad.kflow:4:5: there is no macro 'Bogus' in this component\n");
    EXPECT_EQ(slurp(dir.path() + "/bad.c"), "");
}

TEST(CodeCommand, TakesTheSettingsOfAProjectFile) {
    testing_support::TempDir dir;
    dir.write("small.kflow", kSmall);
    const auto saved = testing_support::run_console(
        "iThreshL = 77\niMotorBias = -20\nwriteprops\nstore save " + dir.path() + "/robot.ktx\n");
    ASSERT_EQ(saved.exit_code, 0) << saved.text();
    const Result r = code(dir, "small.kflow --project robot.ktx");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_THAT(r.out, HasSubstr("#define ROV_THRESH_LEFT     (77)"));
    EXPECT_THAT(r.out, HasSubstr("#define ROV_BIAS_LEFT_SET   (20)"));
    const Result defaults = code(dir, "small.kflow");
    EXPECT_THAT(defaults.out, HasSubstr("#define ROV_THRESH_LEFT     (200)"));

    const Result missing = code(dir, "small.kflow --project nowhere.ktx");
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("nowhere.ktx"));
}

TEST(CodeCommand, NamesTheMissingCompilerForHexAndKeepsTheC) {
    testing_support::TempDir dir;
    dir.write("small.kflow", kSmall);
    const Result r =
        code(dir, "small.kflow --hex", "KESTRONE_PIC_PREFIX='" + dir.path() + "/none'");
    EXPECT_EQ(r.status, 3);
    EXPECT_THAT(
        r.err, HasSubstr("the PIC compiler is not installed: no " + dir.path() + "/none/bin/sdcc"));
    EXPECT_THAT(slurp(dir.path() + "/small.c"), HasSubstr("void main(void)"));

    // A program without an extension, in a folder with a dot in its name: the C goes beside it.
    dir.write("v1.2/robot", kSmall);
    const Result bare = code(dir, "v1.2/robot --hex", "KESTRONE_PIC_PREFIX=/nowhere");
    EXPECT_EQ(bare.status, 3);
    EXPECT_THAT(slurp(dir.path() + "/v1.2/robot.c"), HasSubstr("void main(void)"));
}

TEST(CodeCommand, WarnsOfAMacroWhoseCodeTheComponentCannotRead) {
    std::string file = testing_support::shipped_code_file();
    const std::string marker = "/*Macro_LedOn_Start*/\n";
    file.erase(file.find(marker), marker.size());
    const testing_support::ComponentFolder robot(file);
    testing_support::TempDir dir;
    dir.write("small.kflow", kSmall);
    const Result r = code(dir, "small.kflow --module '" + robot.module() + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err,
              "kestrone-host: warning: the component could not read its code of the macro LedOn\n");
    EXPECT_THAT(r.out, HasSubstr("void LedOn(char Led)\n{\n//Error Reading Code For "));
}

TEST(CodeCommand, AnswersBadUseWithAStatusOf2) {
    testing_support::TempDir dir;
    EXPECT_EQ(code(dir, "").status, 2);
    const Result r = code(dir, "absent.kflow");
    EXPECT_EQ(r.status, 2);
    EXPECT_THAT(r.err, HasSubstr("cannot read the program absent.kflow"));
}

}  // namespace
