// The store through the console: save, clear, load and edit, the notices in their order, and
// project files that can't be read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/console_driver.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing_support::ComponentFolder;

// Two pins and nothing else, so that the walks are short enough to read whole.
const char* const kTwoPins =
    "[Settings]\nDescription=Two\n[Pins]\nCount=2\n1=L\n2=R\n"
    "[PinPort]\n1=3\n2=3\n[PinDesiredBit]\n1=0\n2=1\n";

std::vector<std::string> settings_lines(const std::string& word, const char* use_i2c) {
    return {word + " bReturnInt 0%",      word + " iThreshL 200%",      word + " iThreshF 200%",
            word + " iThreshR 200%",      word + " iThreshMic 128%",    word + " iThreshLdr 128%",
            word + " bUseI2C " + use_i2c, word + " bWaitForButton 1%",  word + " bDummyBool1 0%",
            word + " bDummyBool2 0%",     word + " iDummyInt1 0%",      word + " iDummyInt2 0%",
            word + " sDummyString1 \"\"", word + " sDummyString2 \"\"", word + " iMotorBias 0%"};
}

TEST(StoreConsole, SavesEveryKeyInOrderAndListsTheStore) {
    ComponentFolder robot(kTwoPins);
    const auto run = robot.run("writeprops\nstore\n");
    std::vector<std::string> expected{"ok", "write Port0 3&", "write Bit0 0&", "write Port1 3&",
                                      "write Bit1 1&"};
    for (const auto& l : settings_lines("write", "128%"))
        expected.push_back(l);
    expected.push_back("ok");
    const std::size_t writes = expected.size() - 1;
    for (std::size_t i = 1; i < writes; ++i)
        expected.push_back("entry " + expected[i].substr(6));
    expected.push_back("ok");
    EXPECT_THAT(run.lines, ElementsAreArray(expected)) << run.text();
}

// A cleared store forgets its keys: a load then gives the defaults.
TEST(StoreConsole, AClearedStoreLoadsTheDefaults) {
    ComponentFolder robot(kTwoPins);
    const auto run = robot.run("store iThreshL = 5\nstore clear\nreadprops\nbUseI2C\nstore\n");
    std::vector<std::string> expected{
        "ok", "ok", "ok", "read Port0 -1%", "read Bit0 -1%", "read Port1 -1%", "read Bit1 -1%"};
    for (const auto& l : settings_lines("read", "0%"))
        expected.push_back(l);
    expected.insert(expected.end(), {"ok", "ok 0%", "ok"});
    EXPECT_THAT(run.lines, ElementsAreArray(expected)) << run.text();
}

// A project saved by one console starts the next with the same store, kinds and all.
TEST(StoreConsole, AProjectFileCarriesTheStoreToTheNextSession) {
    ComponentFolder robot(kTwoPins);
    const std::string file = robot.dir() + "/robot.kproj";
    const auto first = robot.run(
        "iThreshL = -5\nwriteprops\nstore odd = Long[1 to 2](7, 8)\n"
        "store save \"" +
        file + "\"\n");
    EXPECT_EQ(first.lines.back(), "ok") << first.text();
    const auto second = robot.run("readprops\niThreshL\nstore\n", "--store '" + file + "'");
    EXPECT_THAT(second.lines, testing::Contains("read iThreshL -5%"));
    EXPECT_THAT(second.lines, testing::Contains("ok -5%"));
    EXPECT_THAT(second.lines, testing::Contains("entry odd Long[1 to 2](7, 8)"));
}

// A file that can't be read is refused with a message; the store and the file stay as they were.
// Why each kind of file is refused is the project file's own test.
TEST(StoreConsole, ABadProjectFileChangesNothing) {
    ComponentFolder robot(kTwoPins);
    const std::string cut = robot.temp().write("cut.kproj", "{\"format\": \"kestrone-pro");
    const auto run = robot.run("store keep = 2\nstore load \"" + cut + "\"\nstore\n");
    ASSERT_EQ(run.lines.size(), 5u) << run.text();
    EXPECT_THAT(run.lines[2], HasSubstr("fail cannot load the project file"));
    EXPECT_THAT(run.lines[2], HasSubstr("damaged or cut short"));
    EXPECT_EQ(run.lines[3], "entry keep 2%");
    const auto start = robot.run("store\n", "--store '" + cut + "'");
    ASSERT_EQ(start.lines.size(), 1u) << start.text();
    EXPECT_THAT(start.lines[0], HasSubstr("damaged or cut short"));
    EXPECT_EQ(start.exit_code, 1);
    EXPECT_EQ(testing_support::read_file(cut), "{\"format\": \"kestrone-pro");
}

}  // namespace
