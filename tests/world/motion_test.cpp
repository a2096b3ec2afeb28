// The robot's motion: runs, spins and arcs composed of 10 ms steps land where the closed formulas
// of a whole run put them, and a wall stops the body at the last step that keeps it clear.
#include <gtest/gtest.h>

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

void expect_whole(const World& w, std::int32_t x, std::int32_t y, std::int32_t heading) {
    const WholePose p = whole_pose(w.pose());
    EXPECT_EQ(p.x, x);
    EXPECT_EQ(p.y, y);
    EXPECT_EQ(p.heading, heading);
}

TEST(Motion, StraightRunsGoSpeedTimesTimeAlongTheHeading) {
    World w = open_floor("robot 1000 1000 90");
    run(w, 200, 200, 1000);
    expect_whole(w, 1000, 1200, 90);
    run(w, -150, -150, 2000);  // backwards
    expect_whole(w, 1000, 900, 90);
    World slant = open_floor("robot 500 500 30");
    run(slant, 100, 100, 4000);
    // 400 mm at 30 degrees: 346.41 across, 200 up.
    expect_whole(slant, 846, 700, 30);
}

TEST(Motion, SpinsTurnOnTheSpotAtTheWheelsDifferenceOverTheirSpacing) {
    World w = open_floor();
    run(w, -100, 100, 1000);  // 2 rad anticlockwise: 114.59 degrees
    EXPECT_NEAR(w.pose().centre.x, 1000, 1e-9);
    EXPECT_NEAR(w.pose().centre.y, 1000, 1e-9);
    expect_whole(w, 1000, 1000, 115);
    run(w, 100, -100, 3000);  // 6 rad back: 114.59 - 343.77 is -229.18 degrees, 131 after wrapping
    expect_whole(w, 1000, 1000, 131);
}

TEST(Motion, ArcsFollowTheCircleAboutTheTurningPoint) {
    // v 150 mm/s, 1 rad/s: after 1.5 s, 150 sin 1.5 across and 150 (1 - cos 1.5) up.
    World w = open_floor();
    run(w, 100, 200, 1500);
    expect_whole(w, 1150, 1139, 86);
    // The same arc clockwise from heading 180 mirrors it.
    World back = open_floor("robot 1000 1000 180");
    run(back, 200, 100, 1500);
    expect_whole(back, 850, 1139, 94);
    // One wheel stopped: the body turns about that wheel, 50 mm from its centre.
    World pivot = open_floor();
    run(pivot, 0, 100, 3150);  // pi rad: half a circle of radius 50
    expect_whole(pivot, 1000, 1100, 180);
    // A whole run agrees with its steps to well below a millimetre.
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
    EXPECT_TRUE(w.step(-100, 100));
    run(w, -200, -200, 100);
    EXPECT_LT(w.pose().centre.x, 639);
    // A wall met at a slant holds it too, with the centre at least 60 from it.
    World slant = open_floor("robot 300 300 45", "wall 800 200 200 800\n");
    run(slant, 255, 255, 2000);
    EXPECT_GE(distance(Segment{{800, 200}, {200, 800}}, slant.pose().centre), 60);
    EXPECT_LT(distance(Segment{{800, 200}, {200, 800}}, slant.pose().centre), 62.6);
}

TEST(Motion, TheTrailFollowsThePathAndStartsAgainOnReset) {
    World w = open_floor();
    run(w, 200, 200, 1000);
    ASSERT_GE(w.trail().size(), 50u);
    EXPECT_EQ(w.trail().front(), (Vec{1000, 1000}));
    EXPECT_NEAR(w.trail().back().x, 1200, 2.01);
    const std::uint64_t moved = w.revision();
    w.reset();
    EXPECT_GT(w.revision(), moved);
    EXPECT_EQ(w.trail().size(), 1u);
    expect_whole(w, 1000, 1000, 0);
    // Put down by hand where the walls allow, and not elsewhere.
    EXPECT_TRUE(w.place({{300, 400}, radians(-90)}));
    expect_whole(w, 300, 400, 270);
    EXPECT_FALSE(w.place({{30, 400}, 0}));
    EXPECT_FALSE(w.place({{3000, 400}, 0}));
    expect_whole(w, 300, 400, 270);
}

TEST(Motion, WholePosesRoundHalfwayToTheEvenNumber) {
    EXPECT_EQ(whole_pose({{0.5, 1.5}, 0}).x, 0);
    EXPECT_EQ(whole_pose({{0.5, 1.5}, 0}).y, 2);
    EXPECT_EQ(whole_pose({{2.5, 2.4999}, radians(359.6)}).x, 2);
    EXPECT_EQ(whole_pose({{2.5, 2.4999}, radians(359.6)}).y, 2);
    EXPECT_EQ(whole_pose({{2.5, 2.4999}, radians(359.6)}).heading, 0);
    EXPECT_EQ(whole_pose({{0, 0}, radians(-0.6)}).heading, 359);
}

}  // namespace
}  // namespace world
