// The console's world commands against the real module: answers and fail texts, the robot moved
// by the program's clock in 10 ms steps, the panel's inputs set as a user sets them, and the
// demonstrations' checks in their arenas.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "console_session.h"
#include "support/temp_dir.h"

namespace {

class Console {
  public:
    Console() {
        EXPECT_TRUE(console_.session().load_module(KESTRONE_MODULE));
        console_.start();
    }
    // The command's final line.
    std::string operator()(const std::string& line) {
        out_.str("");
        console_.execute(line);
        std::string last, l;
        std::istringstream lines(out_.str());
        while (std::getline(lines, l))
            last = l;
        return last;
    }
    bool expectations_met() const { return console_.expectations_met(); }
    std::string all() const { return out_.str(); }

  private:
    std::ostringstream out_;
    console::ConsoleSession console_{out_};
};

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
    Console c;
    EXPECT_EQ(c("world x"), "fail no world is loaded");
    EXPECT_EQ(c("world reset"), "fail no world is loaded");
    EXPECT_EQ(
        c("world load " + dir.path() + "/none.world"),
        "fail " + dir.path() + "/none.world: cannot read the file: No such file or directory");
    EXPECT_EQ(c("world load \"\\q\""), "fail not a file name: \"\\q\"");
    EXPECT_EQ(c("world load \"" + room + "\""), "ok");
    EXPECT_EQ(c("world x"), "ok 500&");
    EXPECT_EQ(c("world y"), "ok 500&");
    EXPECT_EQ(c("world heading"), "ok 90&");
    EXPECT_EQ(c("world in start"), "ok True");
    EXPECT_EQ(c("world in far"), "ok False");
    EXPECT_EQ(c("world in Start"), "fail the world has no zone Start");
    // A bad file changes nothing.
    EXPECT_EQ(c("world load " + bad),
              "fail " + bad + ":3: wall takes 4 numbers (x1 y1 x2 y2), not 3");
    EXPECT_EQ(c("world in start"), "ok True");
    EXPECT_EQ(c("world y"), "ok 500&");
    EXPECT_EQ(c("world"), "fail world takes load FILE, reset, x, y, heading, in NAME or unload");
    EXPECT_EQ(c("world turn"), "fail world has no command turn");
    EXPECT_EQ(c("world x 1"), "fail world x takes nothing more");
    EXPECT_EQ(c("world in"), "fail world in takes a zone's name: world in NAME");
    EXPECT_EQ(c("world load"), "fail world load takes a file: world load FILE");
    EXPECT_EQ(c("world unload"), "ok");
    EXPECT_EQ(c("world in start"), "fail no world is loaded");
}

// A device, a FIFO or a folder named by mistake is refused at once, and so is a file too large
// to be what it is named as; nothing is read without end.
TEST(WorldConsole, OnlyRegularFilesOfASaneSizeAreRead) {
    testing_support::TempDir dir;
    const std::string fifo = dir.path() + "/fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const std::string huge = dir.write("huge.kflow", "");
    std::filesystem::resize_file(huge, 17 * 1024 * 1024);  // sparse: nothing is written
    const struct {
        std::string line, why;
    } cases[] = {
        {"world load /dev/urandom", "/dev/urandom: cannot read the file: it is not a regular file"},
        {"world load " + fifo, "it is not a regular file"},
        {"world load " + dir.path(), "it is a folder"},
        {"run /dev/zero", "cannot read the program /dev/zero: it is not a regular file"},
        {"run " + huge, "it is too large to be a robot program (more than 16 MB)"},
    };
    Console c;
    for (const auto& k : cases) {
        const std::string answer = c(k.line);
        EXPECT_EQ(answer.rfind("fail ", 0), 0u) << answer;
        EXPECT_NE(answer.find(k.why), std::string::npos) << k.line << ": " << answer;
    }
}

TEST(WorldConsole, SetsThePanelsInputsAsTheUsersClicksAndArrowsWould) {
    testing_support::TempDir dir;
    Console c;
    ASSERT_EQ(c("world load " + dir.write("room.world", kRoom)), "ok");
    EXPECT_EQ(c("get chkLineLeft.Value"), "ok 1%");
    EXPECT_EQ(c("get chkLineRight.Value"), "ok 0%");
    EXPECT_EQ(c("field lADCVal(0)"), "ok 128&");  // the light: 0.5
    EXPECT_EQ(c("field lADCVal(3)"), "ok 128&");  // the wall ahead: 0.5
    // The left ray, whose arrows run the other way, meets the wall after 210 sqrt 2: 0.21.
    EXPECT_EQ(c("field lADCVal(2)"), "ok 54&");
    EXPECT_EQ(c("get updownADC(2).Value"), "ok 54&");
    EXPECT_EQ(c("field lADCVal(4)"), "ok 54&");
    EXPECT_EQ(c("field lADCVal(1)"), "ok 0&");
    // The user's click is undone at the next step; a change of full scale is followed.
    EXPECT_EQ(c("click chkLineRight"), "ok");
    EXPECT_EQ(c("advance 10"), "ok 0&");
    EXPECT_EQ(c("get chkLineRight.Value"), "ok 0%");
    EXPECT_EQ(c("bReturnInt = 1"), "ok");
    EXPECT_EQ(c("advance 10"), "ok 0&");
    EXPECT_EQ(c("field lADCVal(3)"), "ok 512&");
    EXPECT_EQ(c("field lADCVal(2)"), "ok 215&");
    // Unloaded, the inputs stay as they are and are the user's again.
    EXPECT_EQ(c("world unload"), "ok");
    EXPECT_EQ(c("click chkLineRight"), "ok");
    c("advance 100");
    EXPECT_EQ(c("get chkLineRight.Value"), "ok 1%");
    EXPECT_EQ(c("field lADCVal(3)"), "ok 512&");
}

TEST(WorldConsole, TheRobotStepsEveryTenMillisecondsWhileTheComponentSimulates) {
    testing_support::TempDir dir;
    Console c;
    ASSERT_EQ(c("world load " + dir.write("room.world", kRoom)), "ok");
    const std::string drive =
        dir.write("drive.kflow", "DriveBackwards(150)\ndelay 1000\nDriveStop()\n");
    EXPECT_EQ(c("run " + drive), "ok 1000&");
    EXPECT_EQ(c("world y"), "ok 350&");
    EXPECT_EQ(c("world in start"), "ok False");
    // Stopped, the wheels' speeds don't move it.
    EXPECT_EQ(c("KestroneVersion = 1281"), "ok");
    EXPECT_EQ(c("SimMacroCall 4 [150] 0& Empty 0&"), "ok pRetVal=0& pvAffected=Empty pCycles=0&");
    c("advance 100");
    EXPECT_EQ(c("world y"), "ok 350&");
    // Simulating: a step at each multiple of 10 ms of the clock, not before.
    EXPECT_EQ(c("StartSimulation"), "ok");
    c("advance 5");
    EXPECT_EQ(c("world y"), "ok 350&");
    c("advance 5");
    EXPECT_EQ(c("world y"), "ok 352&");  // 351.5, to the even 352
    c("advance 1000");
    EXPECT_EQ(c("world y"), "ok 502&");
    // Into the wall at y 710: the centre stops 60 short of it, and the bumpers touch.
    c("advance 2000");
    EXPECT_EQ(c("world y"), "ok 650&");
    EXPECT_EQ(c("get chkSwitchLeft.Value"), "ok 1%");
    EXPECT_EQ(c("get chkSwitchRight.Value"), "ok 1%");
    EXPECT_EQ(c("field lADCVal(3)"), "ok 255&");
    EXPECT_EQ(c("world reset"), "ok");
    EXPECT_EQ(c("world y"), "ok 500&");
    EXPECT_EQ(c("get chkSwitchLeft.Value"), "ok 0%");
}

// Each demonstration's check in its arena, run from examples/ as a teacher would.
TEST(WorldConsole, EachDemonstrationReachesItsGoalInItsArena) {
    const std::filesystem::path examples(KESTRONE_EXAMPLES);
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(examples);
    for (const char* name : {"line_track", "light_maze", "open_floor"}) {
        SCOPED_TRACE(name);
        std::ifstream in(examples / (std::string(name) + ".console"));
        ASSERT_TRUE(in.good());
        std::ostringstream out;
        console::ConsoleSession c(out);
        ASSERT_TRUE(c.session().load_module(KESTRONE_MODULE));
        c.start();
        std::size_t expects = 0;
        std::string line;
        while (std::getline(in, line)) {
            expects += line.rfind("expect ", 0) == 0;
            c.execute(line);
        }
        EXPECT_GE(expects, 3u);
        EXPECT_TRUE(c.expectations_met()) << out.str();
        EXPECT_EQ(out.str().find("fail"), std::string::npos) << out.str();
    }
    std::filesystem::current_path(here);
}

}  // namespace
