// The driver against a panel of the test's own: it moves the robot only while the component
// simulates, at the wheels' speeds, and brings each input to its reading by clicks and arrows.
#include <gtest/gtest.h>

#include <array>

#include "world_driver.h"

namespace world {
namespace {

// A panel that counts the user's inputs it is given. A click takes 0 to 1 and anything else to
// 0; arrows move a sensor by one within 0 to the full scale.
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
    std::optional<std::int32_t> check_value(CheckInput c) override { return checks.at(int(c)); }
    bool click(CheckInput c) override {
        if (deaf) return false;
        ++clicks;
        checks.at(int(c)) = checks.at(int(c)) == 0 ? 1 : 0;
        return true;
    }
    bool arrow(int s, bool raise) override {
        if (deaf) return false;
        ++arrows;
        sensors.at(s) = std::clamp(sensors.at(s) + (raise ? 1 : -1), 0, full);
        return true;
    }
};

// Facing a wall 150 beyond the rim, a light of 1 at 200 on the left, the left sensor on a line.
struct Rig {
    World world;
    CountingPanel panel;
    WorldDriver driver{world, panel};
    Rig() {
        std::string error;
        EXPECT_TRUE(
            world.load_text("size 2000 2000\nrobot 1000 1000 0\nwall 1210 900 1210 1100\n"
                            "light 1000 1200 1\nline 10 900 1015 1100 1015\n",
                            "scene.world", &error))
            << error;
    }
};

using Sensors = std::array<std::int32_t, 5>;
using Checks = std::array<std::int32_t, 4>;

TEST(WorldDriver, SetsEachInputToItsReadingAtTheFullScaleOfTheMoment) {
    Rig r;
    r.driver.sync();
    // LDR and forward 0.5: 127.5, to the even 128. The side rays meet the wall beyond reach; the
    // microphone stays the user's.
    EXPECT_EQ(r.panel.sensors, (Sensors{128, 77, 0, 128, 0}));
    EXPECT_EQ(r.panel.checks, (Checks{1, 0, 0, 0}));
    EXPECT_EQ(r.panel.arrows, 256);  // one arrow a step, as a user's clicks
    EXPECT_EQ(r.panel.clicks, 1);
    // Nothing differs: nothing is touched.
    r.driver.sync();
    EXPECT_EQ(r.panel.arrows + r.panel.clicks, 257);
    // Between changes of its readings the user's clicks and arrows hold; a change of full scale
    // is a change of every sensor's reading, so those are set again, and a reset sets all.
    r.panel.running = false;
    r.panel.checks = {2, 1, 0, 1};
    r.panel.sensors[3] = 700;
    r.driver.step();
    EXPECT_EQ(r.panel.checks, (Checks{2, 1, 0, 1}));
    EXPECT_EQ(r.panel.sensors[3], 700);
    r.panel.full = 1023;
    r.driver.step();
    EXPECT_EQ(r.panel.sensors, (Sensors{512, 77, 0, 512, 0}));
    EXPECT_EQ(r.panel.checks, (Checks{2, 1, 0, 1}));
    r.driver.reset();
    EXPECT_EQ(r.panel.checks, (Checks{1, 0, 0, 0}));
}

// It moves only while the component simulates, at the wheels' speeds held to their range, and
// gives up on a panel that takes no input, as while the component holds the thread.
TEST(WorldDriver, MovesAtTheWheelsSpeedsAndSetsTheInputsOfItsNewPlace) {
    Rig r;
    r.panel.speeds = {300, 300};
    r.panel.running = false;
    r.panel.deaf = true;
    r.driver.step();
    EXPECT_EQ(r.world.pose().centre.x, 1000);
    EXPECT_EQ(r.panel.sensors[0], 0);
    r.panel.running = true;
    r.panel.deaf = false;
    for (int i = 0; i < 10; ++i)
        r.driver.step();
    EXPECT_NEAR(r.world.pose().centre.x, 1025.5, 1e-9);  // 255 mm/s for 100 ms
    EXPECT_EQ(r.panel.checks[0], 1);  // refused while deaf, so set once it listens
    r.panel.speeds = {-400, -255};
    r.driver.step();
    EXPECT_NEAR(r.world.pose().centre.x, 1025.5 - 2.55, 1e-9);
    EXPECT_EQ(r.panel.sensors[3], 147);  // the wall came nearer: 127.05 beyond the rim
    r.world.place({{1000, 500}, 0});
    r.driver.placed();
    EXPECT_EQ(r.panel.checks[0], 0);    // off the line
    EXPECT_EQ(r.panel.sensors[0], 19);  // 1 / (1 + 3.5^2) of 255: 19.2
}

}  // namespace
}  // namespace world
