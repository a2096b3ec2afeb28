// The robot's motion: runs, spins and arcs composed of 10 ms steps land where the closed formulas
// of a whole run put them, and a wall stops the body at the last step that keeps it clear.
#include <gtest/gtest.h>

#include <vector>

#include "motion.h"
#include "world.h"

namespace world {
namespace {

World open_floor(const char* start = "robot 1000 1000 0", const char* extra = "") {
    World w;
    std::string error;
    const std::string text = std::string("size 2000 2000\n") + start + "\n" + extra;
    EXPECT_TRUE(w.load_text(text, "floor.world", &error)) << error;
    return w;
}

void run(World& w, double left, double right, int ms) {
    for (int t = 0; t < ms; t += kStepMs)
        w.step(left, right);
}

TEST(Motion, RunsSpinsAndArcsLandWhereTheFormulasPutThem) {
    struct Run {
        const char* start;
        double left, right;
        int ms;
        std::int32_t x, y, heading;
    };
    const Run runs[] = {
        {"robot 1000 1000 90", 200, 200, 1000, 1000, 1200, 90},
        {"robot 1000 1000 90", -150, -150, 2000, 1000, 700, 90},
        {"robot 500 500 30", 100, 100, 4000, 846, 700, 30},  // 400 at 30 degrees: 346.41, 200
        // On the spot at the wheels' difference over their spacing: 2 rad, then -6 rad.
        {"robot 1000 1000 0", -100, 100, 1000, 1000, 1000, 115},
        {"robot 1000 1000 0", 100, -100, 3000, 1000, 1000, 16},
        // v 150, 1 rad/s for 1.5 s: 150 sin 1.5 across and 150 (1 - cos 1.5) up; and mirrored.
        {"robot 1000 1000 0", 100, 200, 1500, 1150, 1139, 86},
        {"robot 1000 1000 180", 200, 100, 1500, 850, 1139, 94},
        // One wheel stopped: half a circle of radius 50 about it.
        {"robot 1000 1000 0", 0, 100, 3150, 1000, 1100, 180},
    };
    for (const Run& r : runs) {
        SCOPED_TRACE(testing::Message() << r.start << " at " << r.left << ", " << r.right);
        World w = open_floor(r.start);
        run(w, r.left, r.right, r.ms);
        const WholePose p = whole_pose(w.pose());
        EXPECT_EQ(p.x, r.x);
        EXPECT_EQ(p.y, r.y);
        EXPECT_EQ(p.heading, r.heading);
    }
    // A whole run agrees with its steps to well below a millimetre.
    World w = open_floor();
    run(w, 100, 200, 1500);
    const Pose once = drive(open_floor().pose(), 100, 200, 1.5);
    EXPECT_NEAR(once.centre.x, w.pose().centre.x, 1e-6);
    EXPECT_NEAR(once.centre.y, w.pose().centre.y, 1e-6);
    EXPECT_NEAR(once.heading, w.pose().heading, 1e-9);
}

TEST(Motion, AWallStopsTheBodyAtTheLastStepThatKeepsItClear) {
    // A wall at x 700: the centre may come to 640 and no nearer. From 501 by 2 mm steps the last
    // clear place is 639.
    World w = open_floor("robot 501 500 0", "wall 700 100 700 900\n");
    run(w, 200, 200, 1000);
    EXPECT_NEAR(w.pose().centre.x, 639, 1e-9);
    EXPECT_FALSE(w.step(200, 200));
    // Exactly 60 away is clear.
    World edge = open_floor("robot 500 500 0", "wall 700 100 700 900\n");
    run(edge, 200, 200, 1000);
    EXPECT_NEAR(edge.pose().centre.x, 640, 1e-9);
    // Held there, it can still turn and back away.
    // Nor can it be put down nearer, or off the floor.
    EXPECT_FALSE(w.place({{660, 500}, 0}));
    EXPECT_FALSE(w.place({{3000, 500}, 0}));
    EXPECT_TRUE(w.step(-100, 100));
    run(w, -200, -200, 100);
    EXPECT_LT(w.pose().centre.x, 639);
    // A wall met at a slant holds it too, with the centre at least 60 from it.
    World slant = open_floor("robot 300 300 45", "wall 800 200 200 800\n");
    run(slant, 255, 255, 2000);
    EXPECT_GE(distance(Segment{{800, 200}, {200, 800}}, slant.pose().centre), 60);
    EXPECT_LT(distance(Segment{{800, 200}, {200, 800}}, slant.pose().centre), 62.6);
}

TEST(Motion, WholePosesRoundHalfwayToTheEvenNumber) {
    const WholePose a = whole_pose({{0.5, 1.5}, radians(-0.6)});
    const WholePose b = whole_pose({{2.5, 2.4999}, radians(359.6)});
    EXPECT_EQ((std::vector{a.x, a.y, a.heading}), (std::vector{0, 2, 359}));
    EXPECT_EQ((std::vector{b.x, b.y, b.heading}), (std::vector{2, 2, 0}));
}

}  // namespace
}  // namespace world
