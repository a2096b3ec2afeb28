// Broken set-ups a user meets: a module cut short or missing, a code file missing or of garbage,
// a registration folder that can't be written. Each is said once, in words that name the file,
// and ends with a non-zero status; nothing crashes or hangs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/console_driver.h"

namespace {

using testing::HasSubstr;
using testing_support::ComponentFolder;
using testing_support::run_host;
using testing_support::shell_quote;
using testing_support::shipped_code_file;
using testing_support::TempDir;

// A byte short of the end: the loader would map past the file's end. Each fault of the headers is
// named in the session's own tests; here every command that loads the module says it once.
TEST(BrokenModule, ACutShortModuleIsNamedNotCrashedOn) {
    const std::string whole = testing_support::read_file(KESTRONE_MODULE);
    TempDir dir;
    const std::string module = dir.write("Cut.so", whole.substr(0, whole.size() - 1));
    for (const std::string& command : {"info", "register", "console"}) {
        SCOPED_TRACE(command);
        const auto run =
            run_host(command + " --module " + shell_quote(module), "MacroIsFunction 13\n");
        EXPECT_EQ(run.exit_code, 2) << run.text();
        ASSERT_EQ(run.lines.size(), 1u) << run.text();
        EXPECT_THAT(run.lines[0], HasSubstr(module));
        EXPECT_THAT(run.lines[0], HasSubstr("cut short or damaged"));
    }
}

TEST(BrokenModule, NamesAreFilesAndAnEmptyNameIsSaid) {
    ComponentFolder folder(shipped_code_file());
    // A bare name is the file in the current folder, not a library on the search path.
    const auto bare = run_host("console --module Robo.so",
                               "KestroneVersion = 1281\nMacroIsFunction 13\n", "", folder.dir());
    EXPECT_EQ(bare.exit_code, 0) << bare.text();
    EXPECT_THAT(bare.lines, testing::ElementsAre("ok", "ok", "ok -1&"));

    const auto empty = run_host("console --module ''", "MacroIsFunction 13\n");
    EXPECT_EQ(empty.exit_code, 2);
    EXPECT_THAT(empty.text(), HasSubstr("--module names no file"));

    // A console without its module says so once and reads no further.
    const auto missing = run_host("console --module " + folder.dir() + "/Gone.so",
                                  "MacroIsFunction 13\nfield bSimulating\nnew\n");
    EXPECT_EQ(missing.exit_code, 2);
    ASSERT_EQ(missing.lines.size(), 1u) << missing.text();
    EXPECT_THAT(missing.lines[0], HasSubstr("fail cannot load the module"));
    EXPECT_THAT(missing.lines[0], HasSubstr("Gone.so"));
}

TEST(BrokenCodeFile, InfoSaysTheCodeFileIsMissingOrUnreadable) {
    const std::string code = shipped_code_file();
    struct Case {
        const char* name;
        std::string code_file;
        const char* says;
    };
    const Case cases[] = {
        {"none", "", "is missing or unreadable (No such file or directory)"},
        {"garbage",
         "\x7f"
         "ELF\x01\x02 garbage, no sections\n",
         "holds no macro definitions"},
        {"cut short", code.substr(0, 40), "holds no macro definitions"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ComponentFolder folder(c.code_file);
        const auto run = run_host("info --module " + shell_quote(folder.module()));
        EXPECT_EQ(run.exit_code, 1) << run.text();
        EXPECT_THAT(run.text(), HasSubstr(folder.dir() + "/Robo.c"));
        EXPECT_THAT(run.text(), HasSubstr(c.says));
        // Nothing after it contradicts it.
        EXPECT_THAT(run.text(), testing::Not(HasSubstr("A simulated second")));
    }
}

TEST(BrokenSetUp, RegisterNamesTheFolderAndWhy) {
    TempDir dir;
    const std::string blocker = dir.write("data", "a file where a folder should be");
    const auto run = run_host("register --module " + shell_quote(KESTRONE_MODULE), "",
                              "XDG_DATA_HOME=" + shell_quote(blocker));
    EXPECT_EQ(run.exit_code, 1) << run.text();
    EXPECT_THAT(run.text(), HasSubstr(blocker + "/kestrone/components"));
    EXPECT_THAT(run.text(), HasSubstr(blocker + " is a file, not a folder"));
}

// Every command's --help, the window's too, prints and exits 0 without a display; an unknown
// command names every command there is.
TEST(HostHelp, EachCommandDescribesItselfAndTheHelpPagesAreThere) {
    const std::vector<std::string> commands{"window",   "console",    "info", "code",
                                            "register", "unregister", "help", "components"};
    const std::string headless = "env -u DISPLAY -u WAYLAND_DISPLAY";
    for (const std::string& command : commands) {
        const auto run = run_host(command + " --help", "", headless);
        EXPECT_EQ(run.exit_code, 0) << command << ": " << run.text();
        EXPECT_THAT(run.text(), HasSubstr("kestrone-host " + command)) << command;
    }
    EXPECT_THAT(run_host("console --help").text(), HasSubstr("Ctrl-C"));
    const auto unknown = run_host("frobnicate", "", headless);
    EXPECT_EQ(unknown.exit_code, 2);
    for (const std::string& command : commands)
        EXPECT_THAT(unknown.text(), HasSubstr(command)) << unknown.text();
    const auto help = run_host("help", "", "env -u DISPLAY -u WAYLAND_DISPLAY");
    EXPECT_EQ(help.exit_code, 0) << help.text();
    ASSERT_THAT(help.text(), HasSubstr("the help is at /"));
    const std::string index = help.lines.front().substr(std::string("the help is at ").size());
    EXPECT_TRUE(std::filesystem::exists(index)) << index;
    EXPECT_TRUE(
        std::filesystem::exists(std::filesystem::path(index).parent_path() / "kestrone-host.html"));
}

}  // namespace
