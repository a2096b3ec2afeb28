// Each sensor at a place where the geometry fixes its reading.
#include <gtest/gtest.h>

#include <cmath>

#include "sensors.h"
#include "world.h"

namespace world {
namespace {

Arena arena_of(const std::string& items) {
    const ArenaReading r = read_arena("size 1000 1000\nrobot 500 500 0\n" + items);
    EXPECT_TRUE(r.arena) << r.error.line << ": " << r.error.text;
    return r.arena ? *r.arena : Arena{};
}

Pose at(double x, double y, double heading_degrees) {
    return {{x, y}, radians(heading_degrees)};
}

// The line sensors look 50 ahead and 15 to each side; the bumpers touch a wall whose nearest point
// is within 63, from 10 degrees past straight ahead round to their own side.
TEST(Sensors, LineSensorsAndBumpersWhereTheGeometryDecides) {
    struct Case {
        const char* items;
        double x, y, heading;
        bool line_left, line_right, switch_left, switch_right;
    };
    const char* const above = "wall 100 563 900 563\n";  // 63 to the left at heading 0
    const Case cases[] = {
        // The left sensor at (550, 515) on a line 10 wide at y 515; turned round, the right one.
        {"line 10 100 515 900 515\n", 500, 500, 0, true, false, false, false},
        {"line 10 100 515 900 515\n", 500, 500, 180, false, true, false, false},
        {"line 10 520 100 520 900\n", 500, 500, 90, false, true, false, false},
        // Half the width from the path is on it; every piece of a path and its points count.
        {"line 20 100 525 900 525\n", 500, 500, 0, true, false, false, false},
        {"line 19.98 100 525 900 525\n", 500, 500, 0, false, false, false, false},
        {"line 4 100 100 600 100 550 515 550 900\n", 500, 500, 0, true, false, false, false},
        // Straight ahead at 62 both bumpers, at 64 neither.
        {"wall 562 100 562 900\n", 500, 500, 0, false, false, true, true},
        {"wall 564 100 564 900\n", 500, 500, 0, false, false, false, false},
        {above, 500, 500, 0, false, false, true, false},
        {above, 500, 500, 78, false, false, true, false},
        {above, 500, 500, 82, false, false, true, true},
        {above, 500, 500, 98, false, false, true, true},
        {above, 500, 500, 102, false, false, false, true},
        {above, 500, 500, -100, false, false, false, false},
        // The floor's border is a wall as well.
        {"", 500, 62, 0, false, false, false, true},
        {"", 500, 62, 180, false, false, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.items << " at " << c.x << "," << c.y << " " << c.heading);
        const Readings r = sense(arena_of(c.items), at(c.x, c.y, c.heading));
        EXPECT_EQ(r.line_left, c.line_left);
        EXPECT_EQ(r.line_right, c.line_right);
        EXPECT_EQ(r.switch_left, c.switch_left);
        EXPECT_EQ(r.switch_right, c.switch_right);
    }
}

TEST(Sensors, TheLdrSumsTheLightsByTheirDistanceAndStopsAtOne) {
    const std::pair<const char*, double> cases[] = {
        {"light 700 500 1\n", 0.5},
        {"light 500 900 1\n", 0.2},
        {"light 700 500 0.6\nlight 500 900 0.5\n", 0.4},
        {"light 500 500 0.75\nlight 500 500 0.5\n", 1},
        {"", 0},
    };
    for (const auto& [items, reading] : cases)
        EXPECT_NEAR(light_reading(arena_of(items), {500, 500}), reading, 1e-12) << items;
}

TEST(Sensors, EachRayReadsTheFirstWallAlongItLessTheBodysRadius) {
    // Forward: a wall 210 ahead is 150 beyond the rim: 0.5. Left and right, at 45 degrees either
    // way, meet it after 210 sqrt 2.
    const Arena a = arena_of("wall 710 100 710 900\nwall 200 700 400 700\n");
    Readings r = sense(a, at(500, 500, 0));
    EXPECT_DOUBLE_EQ(r.forward, 0.5);
    EXPECT_NEAR(r.left, 1 - (210 * std::sqrt(2.0) - 60) / 300, 1e-12);
    EXPECT_NEAR(r.right, 1 - (210 * std::sqrt(2.0) - 60) / 300, 1e-12);
    // At x 150 facing up: the left ray meets the border after 150 sqrt 2, the right one the short
    // wall after 200 sqrt 2, and straight ahead runs past the short wall's end out of range.
    r = sense(a, at(150, 500, 90));
    EXPECT_NEAR(r.left, 1 - (150 * std::sqrt(2.0) - 60) / 300, 1e-12);
    EXPECT_NEAR(r.right, 1 - (200 * std::sqrt(2.0) - 60) / 300, 1e-12);
    EXPECT_DOUBLE_EQ(r.forward, 0);
    // A wall along the ray is met at its nearer end, one behind the body not at all; the nearest
    // wall counts, and at the rim the reading is full.
    EXPECT_NEAR(ray_reading(arena_of("wall 600 500 800 500\n"), at(500, 500, 0), 0), 1 - 40.0 / 300,
                1e-12);
    EXPECT_DOUBLE_EQ(ray_reading(arena_of("wall 100 500 400 500\n"), at(500, 500, 0), 0), 0);
    EXPECT_DOUBLE_EQ(ray_reading(arena_of("wall 560 100 560 900\n"), at(500, 500, 0), 0), 1);
    EXPECT_NEAR(sense(a, at(300, 500, 90)).forward, 1 - 140.0 / 300, 1e-12);
}

}  // namespace
}  // namespace world
