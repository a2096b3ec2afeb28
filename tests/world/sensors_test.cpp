// Each sensor at a place where the geometry fixes its reading.
#include <gtest/gtest.h>

#include <cmath>

#include "sensors.h"
#include "world.h"

namespace world {
namespace {

Arena arena_of(const std::string& items, const char* robot = "robot 500 500 0") {
    const ArenaReading r = read_arena("size 1000 1000\n" + std::string(robot) + "\n" + items);
    EXPECT_TRUE(r.arena) << r.error.line << ": " << r.error.text;
    return r.arena ? *r.arena : Arena{};
}

Pose at(double x, double y, double heading_degrees) {
    return {{x, y}, radians(heading_degrees)};
}

TEST(LineSensors, LookFiftyAheadAndFifteenToEachSide) {
    // A line at y 515, 10 wide: the left sensor's point (550, 515) lies on it, the right one's
    // (550, 485) does not.
    Arena a = arena_of("line 10 100 515 900 515\n");
    Readings r = sense(a, at(500, 500, 0));
    EXPECT_TRUE(r.line_left);
    EXPECT_FALSE(r.line_right);
    // Turned round, the line lies on the right: the sensors are at (450, 485) and (450, 515).
    r = sense(a, at(500, 500, 180));
    EXPECT_FALSE(r.line_left);
    EXPECT_TRUE(r.line_right);
    // Facing up: the sensors at (485, 550) and (515, 550), a line along x 520, 10 wide.
    Arena up = arena_of("line 10 520 100 520 900\n");
    r = sense(up, at(500, 500, 90));
    EXPECT_FALSE(r.line_left);
    EXPECT_TRUE(r.line_right);
}

TEST(LineSensors, HalfTheWidthFromThePathIsOnTheLine) {
    // The point (550, 515) exactly 10 from a line at y 525 that is 20 wide, just off a 19.98 one.
    EXPECT_TRUE(sense(arena_of("line 20 100 525 900 525\n"), at(500, 500, 0)).line_left);
    EXPECT_FALSE(sense(arena_of("line 19.98 100 525 900 525\n"), at(500, 500, 0)).line_left);
    // Every piece of a path counts, and so do its points: the left sensor stands on the third
    // point, the slanted piece passes 3.6 beside the right one.
    Arena bent = arena_of("line 4 100 100 600 100 550 515 550 900\n");
    EXPECT_TRUE(sense(bent, at(500, 500, 0)).line_left);
    EXPECT_FALSE(sense(bent, at(500, 500, 0)).line_right);
}

TEST(Bumpers, TouchWithinSixtyThreeOnTheSideOfTheWallsNearestPoint) {
    // Straight ahead at 62: both; at 64: neither.
    Readings r = sense(arena_of("wall 562 100 562 900\n"), at(500, 500, 0));
    EXPECT_TRUE(r.switch_left && r.switch_right);
    r = sense(arena_of("wall 564 100 564 900\n"), at(500, 500, 0));
    EXPECT_FALSE(r.switch_left || r.switch_right);
    // A wall 63 above: its nearest point lies 90 degrees to the left at heading 0.
    const Arena above = arena_of("wall 100 563 900 563\n");
    r = sense(above, at(500, 500, 0));
    EXPECT_TRUE(r.switch_left);
    EXPECT_FALSE(r.switch_right);
    // 12 degrees left of the heading: left only; 8 degrees: both; 8 to the right: both.
    r = sense(above, at(500, 500, 78));
    EXPECT_TRUE(r.switch_left);
    EXPECT_FALSE(r.switch_right);
    r = sense(above, at(500, 500, 82));
    EXPECT_TRUE(r.switch_left && r.switch_right);
    r = sense(above, at(500, 500, 98));
    EXPECT_TRUE(r.switch_left && r.switch_right);
    r = sense(above, at(500, 500, 102));
    EXPECT_FALSE(r.switch_left);
    EXPECT_TRUE(r.switch_right);
    // Behind the body: nothing. The floor's border is a wall as well.
    r = sense(above, at(500, 500, -100));
    EXPECT_FALSE(r.switch_left || r.switch_right);
    r = sense(arena_of(""), at(500, 62, 0));
    EXPECT_FALSE(r.switch_left);
    EXPECT_TRUE(r.switch_right);
    r = sense(arena_of(""), at(500, 62, 180));
    EXPECT_TRUE(r.switch_left);
    EXPECT_FALSE(r.switch_right);
}

TEST(Ldr, SumsTheLightsByTheirDistanceAndStopsAtOne) {
    EXPECT_DOUBLE_EQ(light_reading(arena_of("light 700 500 1\n"), {500, 500}), 0.5);
    EXPECT_DOUBLE_EQ(light_reading(arena_of("light 500 900 1\n"), {500, 500}), 0.2);
    EXPECT_NEAR(light_reading(arena_of("light 700 500 0.6\nlight 500 900 0.5\n"), {500, 500}), 0.4,
                1e-12);
    EXPECT_DOUBLE_EQ(light_reading(arena_of("light 500 500 0.75\nlight 500 500 0.5\n"), {500, 500}),
                     1);
    EXPECT_DOUBLE_EQ(light_reading(arena_of(""), {500, 500}), 0);
}

TEST(InfraredRays, ReadTheFirstWallAlongEachRayLessTheBodysRadius) {
    // Forward: a wall 210 ahead is 150 beyond the rim: 0.5.
    Arena a = arena_of("wall 710 100 710 900\nwall 200 700 400 700\n");
    Readings r = sense(a, at(500, 500, 0));
    EXPECT_DOUBLE_EQ(r.forward, 0.5);
    // Left and right, at 45 degrees either way, meet the wall at x 710 after 210 sqrt 2.
    const double slant = 1 - (210 * std::sqrt(2.0) - 60) / 300;
    EXPECT_NEAR(r.left, slant, 1e-12);
    EXPECT_NEAR(r.right, slant, 1e-12);
    // Facing up at x 300 the short wall at y 700 is 200 ahead.
    EXPECT_NEAR(sense(a, at(300, 500, 90)).forward, 1 - 140.0 / 300, 1e-12);
    // At x 150: the left ray meets the border after 150 sqrt 2, the right one the short wall
    // after 200 sqrt 2, and straight ahead runs past the short wall's end to the far border.
    r = sense(a, at(150, 500, 90));
    EXPECT_NEAR(r.left, 1 - (150 * std::sqrt(2.0) - 60) / 300, 1e-12);
    EXPECT_NEAR(r.right, 1 - (200 * std::sqrt(2.0) - 60) / 300, 1e-12);
    EXPECT_DOUBLE_EQ(r.forward, 0);
    // A wall that lies along the ray is met at its nearer end; one behind the body is not.
    EXPECT_NEAR(ray_reading(arena_of("wall 600 500 800 500\n"), at(500, 500, 0), 0), 1 - 40.0 / 300,
                1e-12);
    EXPECT_DOUBLE_EQ(ray_reading(arena_of("wall 100 500 400 500\n"), at(500, 500, 0), 0), 0);
    // The nearest of two walls on one ray counts; at the rim the reading is full.
    EXPECT_DOUBLE_EQ(ray_reading(arena_of("wall 560 100 560 900\n"), at(500, 500, 0), 0), 1);
    EXPECT_DOUBLE_EQ(ray_reading(a, at(500, 500, 180), 0), 0);
}

}  // namespace
}  // namespace world
