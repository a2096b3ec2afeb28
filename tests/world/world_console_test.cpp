// The console's world commands against the real module: answers and fail texts, the robot moved
// by the program's clock in 10 ms steps, and the panel's inputs set as a user sets them.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <utility>
#include <vector>

#include "console.h"
#include "support/temp_dir.h"

namespace {

using Exchanges = std::vector<std::pair<std::string, std::string>>;

// Each command's final line against its answer; a command without one is only run.
void play(const Exchanges& exchanges) {
    std::ostringstream out;
    console::Console console(out);
    ASSERT_TRUE(console.session().load_module(KESTRONE_MODULE));
    console.start();
    for (const auto& [command, answer] : exchanges) {
        out.str("");
        console.execute(command);
        std::string last, line;
        for (std::istringstream lines(out.str()); std::getline(lines, line);)
            last = line;
        if (!answer.empty()) {
            EXPECT_EQ(last, answer) << command;
        }
    }
}

// Facing up, 150 beyond the rim from the wall ahead; the left line sensor on a line; a light
// 200 off; a zone round the start.
const char* const kRoom = R"(size 1000 1000
robot 500 500 90
wall 200 710 800 710
line 10 485 530 485 600
light 700 500 1
zone start 400 400 200 200
zone far 800 800 100 100
)";

TEST(WorldConsole, AnswersThePoseTheZonesAndFailsAsItShould) {
    testing_support::TempDir dir;
    const std::string room = dir.write("room.world", kRoom);
    const std::string bad = dir.write("bad.world", "size 100 100\nrobot 50 50 0\nwall 1 2 3\n");
    // Only a file of a sane size is read.
    const std::string huge = dir.write("huge.kflow", "");
    std::filesystem::resize_file(huge, 17 * 1024 * 1024);  // sparse: nothing is written
    const Exchanges script = {
        {"world x", "fail no world is loaded"},
        {"world load " + dir.path(),
         "fail " + dir.path() + ": cannot read the file: it is a folder"},
        {"run " + huge, "fail cannot read the program " + huge +
                            ": it is too large to be a robot program (more than 16 MB)"},
        {"world load \"\\q\"", "fail not a file name: \"\\q\""},
        {"world load \"" + room + "\"", "ok"},
        {"world x", "ok 500&"},
        {"world heading", "ok 90&"},
        {"world in start", "ok True"},
        {"world in far", "ok False"},
        {"world in Start", "fail the world has no zone Start"},
        {"world in \"\\q\"", "fail the world has no zone \"\\q\""},
        // A bad file changes nothing.
        {"world load " + bad, "fail " + bad + ":3: wall takes 4 numbers (x1 y1 x2 y2), not 3"},
        {"world y", "ok 500&"},
        {"world", "fail world takes load FILE, reset, x, y, heading, in NAME or unload"},
        {"world turn", "fail world has no command turn"},
        {"world x 1", "fail world x takes nothing more"},
        {"world reset 1", "fail world reset takes nothing more"},
        {"world in", "fail world in takes a zone's name: world in NAME"},
        {"world load", "fail world load takes a file: world load FILE"},
        {"world unload", "ok"},
        {"world in start", "fail no world is loaded"},
        {"world reset", "fail no world is loaded"},
    };
    play(script);
}

// The inputs are set as the user's clicks and arrows would set them: the left ray's arrows run
// the other way, and it meets the wall after 210 sqrt 2, 0.21 of the full scale. Stopped, the
// wheels' speeds don't move the robot; simulating, it steps at each multiple of 10 ms of the
// clock, and into the wall at y 710 its centre stops 60 short of it with the bumpers pressed.
// Between changes of the world's readings the user's clicks and arrows hold. Unloaded, the inputs
// stay as they are and are the user's again.
TEST(WorldConsole, SetsThePanelsInputsAndStepsTheRobotOnTheClockWhileSimulating) {
    testing_support::TempDir dir;
    const std::string drive =
        dir.write("drive.kflow", "DriveBackwards(150)\ndelay 1000\nDriveStop()\n");
    const Exchanges script = {
        {"world load " + dir.write("room.world", kRoom), "ok"},
        {"get chkLineLeft.Value", "ok 1%"},
        {"get chkLineRight.Value", "ok 0%"},
        {"field lADCVal(0)", "ok 128&"},  // the light: 0.5
        {"field lADCVal(3)", "ok 128&"},  // the wall ahead: 0.5
        {"field lADCVal(2)", "ok 54&"},
        {"field lADCVal(4)", "ok 54&"},
        {"click chkLineRight", "ok"},
        {"bReturnInt = 1", "ok"},  // a full scale of 1023
        {"advance 10", "ok 0&"},
        {"get chkLineRight.Value", "ok 1%"},  // the user's click holds
        {"field lADCVal(3)", "ok 512&"},
        {"field lADCVal(2)", "ok 215&"},
        {"run " + drive, "ok 1000&"},
        {"world y", "ok 350&"},
        {"arrow updownADC(0) up", "ok"},
        {"click chkSwitchLeft", "ok"},
        {"advance 500", ""},
        {"field lADCVal(0)", "ok 400&"},  // 399 from the light, one up by hand, held
        {"KestroneVersion = 1281", "ok"},
        {"SimMacroCall 4 [150] 0& Empty 0&", "ok pRetVal=0& pvAffected=Empty pCycles=0&"},
        {"advance 100", ""},
        {"world y", "ok 350&"},
        {"StartSimulation", "ok"},
        {"advance 5", ""},
        {"world y", "ok 350&"},
        {"advance 5", ""},
        {"world y", "ok 352&"},  // 351.5, to the even 352
        {"get chkSwitchLeft.Value", "ok 1%"},
        {"get chkSwitchRight.Value", "ok 0%"},
        {"advance 3000", ""},
        {"world y", "ok 650&"},
        {"get chkSwitchLeft.Value", "ok 1%"},
        {"get chkSwitchRight.Value", "ok 1%"},
        {"field lADCVal(3)", "ok 1023&"},
        {"world reset", "ok"},
        {"world y", "ok 500&"},
        {"get chkSwitchLeft.Value", "ok 0%"},
        {"world unload", "ok"},
        {"click chkLineRight", "ok"},
        {"advance 100", ""},
        {"get chkLineRight.Value", "ok 1%"},
    };
    play(script);
}

}  // namespace
