// Reading arena files: the border and names as written, and bad files each refused at their line
// with what is wrong, the world left as it was.
#include <gtest/gtest.h>

#include "arena.h"
#include "world.h"

namespace world {
namespace {

const char* const kTrack = R"(# a square track
size 2000 1500                 # the border is a wall
robot 200 300 90
line 20  200 200  1800 200  1800 1300
wall 1000 500  1000 1000
light 1800 1400 0.5
zone goal 1600 1100 400 400
zone start 0 0 400 400
zone mark 100 100 1 0.5
line 0.5 2000 600 300 1500     # as thin as a user likes, to the floor's right and top edges
)";

// The items' values show in the sensors' and the motion's tests; here what only the reading does.
TEST(ArenaFile, PutsTheBorderFirstAndKeepsNamesAsWritten) {
    const ArenaReading r = read_arena(kTrack);
    ASSERT_TRUE(r.arena) << r.error.line << ": " << r.error.text;
    const Arena& a = *r.arena;
    ASSERT_EQ(a.walls.size(), 5u);
    EXPECT_EQ(a.walls[1].b, (Vec{2000, 1500}));
    EXPECT_EQ(a.walls[4].a, (Vec{1000, 500}));
    EXPECT_EQ(a.zone("Goal"), nullptr);
    EXPECT_TRUE(a.zone("mark")->contains({101, 100.5}));  // a zone of a millimetre and less
    EXPECT_FALSE(a.zone("mark")->contains({101, 100.6}));
    EXPECT_EQ(a.lines.at(1).width, 0.5);
    // Headings are brought into one turn; blanks, tabs and CRs are skipped.
    const ArenaReading turned = read_arena("\n\t# nothing\nrobot 500 500 -270\r\nsize 1000 1000\n");
    ASSERT_TRUE(turned.arena) << turned.error.text;
    EXPECT_EQ(whole_pose(turned.arena->start).heading, 90);
}

struct BadFile {
    const char* text;
    int line;
    const char* says;  // a part of the message
};

const BadFile kBadFiles[] = {
    {"robot 100 100 0\nwall 0 0 10 10\n", 2, "size must come before wall"},
    {"size 1000 1000\nwall 0 0 10 10\n", 2, "robot must come before wall"},
    {"# empty\n\n", 2, "no size"},
    {"size 1000 1000\n", 1, "no robot"},
    {"size 1000 1000\nrobot 500 500 0\nwall 100 100 200\n", 3, "wall takes 4 numbers"},
    {"size 0 1000\nrobot 500 500 0\n", 1, "above 0"},
    {"size 1000 0\nrobot 500 500 0\n", 1, "above 0"},
    {"size 1000 1000\nrobot 500 500 0\nline 0 10 10 90 90\n", 3, "width must be above 0"},
    {"size 1000 1000\nrobot 500 500 0\nzone a 0 0 10 10\nzone a 20 20 5 5\n", 4,
     "zone a comes twice (first on line 3)"},
    {"size 1000 1000\nrobot 500 five 0\n", 2, "'five' is not a number (y)"},
    {"size 1000 1000\nrobot 500 500 0\nsize 900 900\n", 3, "size comes twice"},
    {"size 1000 1000\nrobot 500 500 0\nlight 10 10 1.5\n", 3, "intensity must be 0 to 1"},
    {"size 1000 1000\nrobot 500 500 0\ndoor 1 2 3 4\n", 3, "unknown item 'door'"},
    // A long word is repeated only by its start.
    {"size 1000 1000\nrobot 500 500 0\ndoorwaydoorwaydoorwaydoorwaydoorwaydoorway 1\n", 3,
     "unknown item 'doorwaydoorwaydoorwaydoorwaydoorwaydoorw...'"},
    {"size 1000 1000\nrobot 500 500 0\nline 10 5 5 6 6 7\n", 3, "two points or more, not 6"},
    {"size 1000 1000\nrobot 500 500 0\nlight -5 10 1\n", 3, "the light lies outside the floor"},
    {"size 1000 1000\nrobot 500 500 0\nwall 10 10 1200 10\n", 3, "outside the floor"},
    {"size 1000 1000\nrobot 500 500 0\nzone z 900 900 200 50\n", 3, "outside the floor"},
    {"size 1000 1000\nrobot 500 500 0\nwall 10 10 10 10\n", 3, "same point"},
    {"size 1000 1000\nrobot 500 0 0\n", 2, "closer than 60 to a wall"},
    {"size 1000 1000\nrobot 500 500 0\nwall 500 450 600 450\n", 2, "closer than 60"},
    {"size 1000 1000\nrobot 1500 500 0\n", 2, "outside the floor"},
    {"size 1000 1000\nrobot 500 500 0x10\n", 2, "'0x10' is not a number"},
    {"size 1000 1000 7\nrobot 500 500 0\n", 1, "size takes 2 numbers"},
    {"size 1000 1000\nrobot 500 500 0\nzone goal 1 2 3\n", 3, "zone takes a name and 4"},
    {"size 1e9 1000\nrobot 500 500 0\n", 1, "at most"},
};

TEST(ArenaFile, EachBadFileNamesItsLineAndFaultAndLeavesTheWorldAsItWas) {
    World w;
    std::string error;
    ASSERT_TRUE(w.load_text(kTrack, "track.world", &error)) << error;
    ASSERT_TRUE(w.step(200, 200));
    const Pose before = w.pose();
    const std::uint64_t revision = w.revision();
    for (const BadFile& bad : kBadFiles) {
        SCOPED_TRACE(bad.text);
        const ArenaReading r = read_arena(bad.text);
        EXPECT_FALSE(r.arena);
        EXPECT_EQ(r.error.line, bad.line);
        EXPECT_NE(r.error.text.find(bad.says), std::string::npos) << r.error.text;
        EXPECT_FALSE(w.load_text(bad.text, "bad.world", &error));
        EXPECT_EQ(error.rfind("bad.world:" + std::to_string(bad.line) + ": ", 0), 0u) << error;
    }
    // A long word of nothing but a character's trailing bytes is cut to no byte at all.
    const ArenaReading trailing =
        read_arena("size 1000 1000\nrobot 500 500 0\n" + std::string(41, '\x80'));
    EXPECT_NE(trailing.error.text.find("unknown item '...'"), std::string::npos)
        << trailing.error.text;
    EXPECT_EQ(w.pose().centre, before.centre);
    EXPECT_EQ(w.revision(), revision);
    EXPECT_EQ(w.arena().walls.size(), 5u);
    EXPECT_EQ(w.arena().zones.size(), 3u);
    EXPECT_FALSE(w.load_file("/nonexistent/arena.world", &error));
    EXPECT_EQ(error, "/nonexistent/arena.world: cannot read the file: No such file or directory");
    EXPECT_TRUE(w.loaded());
}

}  // namespace
}  // namespace world
