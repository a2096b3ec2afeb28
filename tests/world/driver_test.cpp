// The driver against a panel of the test's own: it moves the robot only while the component
// simulates, at the wheels' speeds, and brings each input to its reading by clicks and arrows.
#include <gtest/gtest.h>

#include <array>

#include "world_driver.h"

namespace world {
namespace {

// A panel that counts the user's inputs it is given. Arrows move a sensor by one within 0 to the
// full scale.
struct CountingPanel : PanelPort {
    bool running = true;
    std::array<std::int32_t, 2> speeds{0, 0};
    std::int32_t full = 255;
    std::array<std::int32_t, 5> sensors{0, 77, 0, 0, 0};
    std::array<std::int32_t, 4> checks{0, 0, 0, 0};
    int clicks = 0, arrows = 0;
    bool deaf = false;  // takes no input, as while the component holds the thread

    std::optional<bool> simulating() override { return running; }
    std::optional<std::int32_t> motor_speed(int m) override { return speeds.at(m); }
    std::optional<std::int32_t> full_scale() override { return full; }
    std::optional<std::int32_t> sensor_value(int s) override { return sensors.at(s); }
    std::optional<std::int32_t> check_value(CheckInput c) override {
        return checks.at(static_cast<int>(c));
    }
    bool click(CheckInput c) override {
        if (deaf) return false;
        ++clicks;
        auto& v = checks.at(static_cast<int>(c));
        v = v == 0 ? 1 : 0;
        return true;
    }
    bool arrow(int s, bool raise) override {
        if (deaf) return false;
        ++arrows;
        auto& v = sensors.at(s);
        v = std::clamp(v + (raise ? 1 : -1), 0, full);
        return true;
    }
};

// Facing a wall 150 beyond the rim, a light of 1 at 200 on the left, the left line sensor on a
// line.
const char* const kScene = R"(size 2000 2000
robot 1000 1000 0
wall 1210 900 1210 1100
light 1000 1200 1
line 10 900 1015 1100 1015
)";

struct Rig {
    World world;
    CountingPanel panel;
    WorldDriver driver{world, panel};
    Rig() {
        std::string error;
        EXPECT_TRUE(world.load_text(kScene, "scene.world", &error)) << error;
    }
};

TEST(WorldDriver, SetsEachInputToItsReadingAtTheFullScaleOfTheMoment) {
    Rig r;
    r.driver.sync();
    // LDR and forward 0.5: 127.5, to the even 128. The side rays meet the wall beyond reach.
    EXPECT_EQ(r.panel.sensors[0], 128);
    EXPECT_EQ(r.panel.sensors[3], 128);
    EXPECT_EQ(r.panel.sensors[2], 0);
    EXPECT_EQ(r.panel.sensors[4], 0);
    EXPECT_EQ(r.panel.sensors[1], 77);  // the microphone stays the user's
    EXPECT_EQ(r.panel.checks, (std::array<std::int32_t, 4>{1, 0, 0, 0}));
    EXPECT_EQ(r.panel.arrows, 256);  // one arrow a step, as a user's clicks
    EXPECT_EQ(r.panel.clicks, 1);
    // Nothing differs: nothing is touched.
    r.driver.sync();
    EXPECT_EQ(r.panel.arrows, 256);
    EXPECT_EQ(r.panel.clicks, 1);
    // A change of full scale is a change of reading.
    r.panel.full = 1023;
    r.driver.sync();
    EXPECT_EQ(r.panel.sensors[0], 512);
    EXPECT_EQ(r.panel.sensors[3], 512);
    // The user's own clicks and arrows are undone at the next step.
    r.panel.running = false;
    r.panel.checks = {0, 1, 2, 1};
    r.panel.sensors[3] = 700;
    r.driver.step();
    EXPECT_EQ(r.panel.checks, (std::array<std::int32_t, 4>{1, 0, 0, 0}));
    EXPECT_EQ(r.panel.sensors[3], 512);
}

TEST(WorldDriver, MovesOnlyWhileSimulatingAtTheWheelsSpeedsHeldToTheirRange) {
    Rig r;
    r.panel.speeds = {300, 300};
    r.panel.running = false;
    for (int i = 0; i < 10; ++i)
        r.driver.step();
    EXPECT_EQ(r.world.pose().centre.x, 1000);
    r.panel.running = true;
    for (int i = 0; i < 10; ++i)
        r.driver.step();
    EXPECT_NEAR(r.world.pose().centre.x, 1025.5, 1e-9);  // 255 mm/s for 100 ms
    r.panel.speeds = {-400, -255};
    r.driver.step();
    EXPECT_NEAR(r.world.pose().centre.x, 1025.5 - 2.55, 1e-9);
    // Its new place reaches the inputs in the same step: the wall came nearer.
    EXPECT_EQ(r.panel.sensors[3], 147);  // 127.05 beyond the rim
}

TEST(WorldDriver, LeavesTheInputsAloneWithoutAWorldOrWhileTheyTakeNoInput) {
    CountingPanel panel;
    World empty;
    WorldDriver idle(empty, panel);
    idle.step();
    idle.sync();
    idle.reset();
    EXPECT_EQ(panel.arrows + panel.clicks, 0);
    Rig r;
    r.panel.deaf = true;
    r.driver.sync();
    EXPECT_EQ(r.panel.sensors[0], 0);
    r.panel.deaf = false;
    r.world.place({{1000, 500}, 0});
    r.driver.placed();
    EXPECT_EQ(r.panel.checks[0], 0);    // off the line
    EXPECT_EQ(r.panel.sensors[0], 19);  // 1 / (1 + 3.5^2) of 255: 19.2
}

TEST(WorldDriver, LoadAndResetPutTheInputsAtTheStart) {
    Rig r;
    r.panel.speeds = {-200, -200};
    for (int i = 0; i < 45; ++i)
        r.driver.step();
    EXPECT_EQ(r.panel.sensors[3], 51);  // 90 mm back: 240 beyond the rim, 0.2 of 255
    r.driver.reset();
    EXPECT_EQ(r.world.pose().centre.x, 1000);
    EXPECT_EQ(r.panel.sensors[3], 128);
    std::string error;
    EXPECT_FALSE(r.driver.load_file("/nonexistent.world", &error));
    EXPECT_EQ(r.panel.sensors[3], 128);
}

}  // namespace
}  // namespace world
