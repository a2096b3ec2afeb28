// The sensor bars: start-up, value to place and back at both full scales, the arrows, and presses
// on frame, bar and track.
#include <gtest/gtest.h>

#include "simulation_fixture.h"

namespace {

using sim_testing::SimRobot;

const panel::Element& bar(SimRobot& robot, int i) {
    return robot.el("imSlideBar", i);
}
// The bar's place along its travel: Left across, Top up and down.
float travel_place(SimRobot& robot, int i) {
    return i == 2 || i == 4 ? bar(robot, i).left : bar(robot, i).top;
}

TEST(Sensors, StartAtZeroWithTheBarsAtTheirEnds) {
    SimRobot robot;
    const struct {
        float across, place;
        int pos;
        float min, max;
    } expected[5] = {{255, 1350, 1125, 225, 1350},
                     {255, 1350, 1125, 225, 1350},
                     {315, 1215, 1125, 90, 1215},
                     {255, 1230, 1005, 225, 1230},
                     {315, 90, 0, 90, 1215}};
    for (int i = 0; i < 5; ++i) {
        const auto& e = expected[i];
        const bool horizontal = i == 2 || i == 4;
        EXPECT_EQ(horizontal ? bar(robot, i).top : bar(robot, i).left, e.across) << i;
        EXPECT_EQ(travel_place(robot, i), e.place) << i;
        EXPECT_EQ(robot.r().sensors.lSliderPos[static_cast<std::size_t>(i)], e.pos) << i;
        EXPECT_EQ(robot.r().sensors.vSliderMin[static_cast<std::size_t>(i)],
                  kestrone::Variant::single(e.min));
        EXPECT_EQ(robot.r().sensors.vSliderMax[static_cast<std::size_t>(i)],
                  kestrone::Variant::single(e.max));
        EXPECT_EQ(robot.el("lblADCVal", i).caption, "0");
        EXPECT_EQ(robot.el("lblADCVal", i).width, 90.0f);  // sized to its text
    }
}

TEST(Sensors, ArrowsSetTheValueAndTheBarFollows) {
    struct Case {
        int scale, panel, value, pos;
        float place;
    };
    const Case cases[] = {{0, 0, 255, 0, 225},     {0, 4, 255, 1125, 1215}, {0, 0, 100, 684, 909},
                          {0, 2, 100, 684, 774},   {0, 3, 100, 611, 836},   {0, 4, 100, 441, 531},
                          {1, 0, 100, 1015, 1240}, {1, 3, 100, 907, 1132},  {1, 4, 100, 110, 200},
                          {1, 3, 28, 977, 1202}};
    for (const Case& c : cases) {
        SimRobot robot;
        if (c.scale) robot.object().put_bReturnInt(1);  // bReturnInt
        robot.panel().set_updown_value(
            robot.panel().ids().updownADC[static_cast<std::size_t>(c.panel)], c.value);
        const auto i = static_cast<std::size_t>(c.panel);
        EXPECT_EQ(robot.r().sensors.lADCVal[i], c.value);
        EXPECT_EQ(robot.r().sensors.lSliderPos[i], c.pos) << c.panel << " " << c.value;
        EXPECT_EQ(travel_place(robot, c.panel), c.place) << c.panel << " " << c.value;
        EXPECT_EQ(robot.el("lblADCVal", c.panel).caption, std::to_string(c.value));
    }
}

TEST(Sensors, ScaleChangeKeepsThePlaceNotTheNumber) {
    SimRobot robot;
    auto& p = robot.panel();
    p.set_updown_value(p.ids().updownADC[0], 100);
    p.set_updown_value(p.ids().updownADC[4], 100);
    robot.object().put_bReturnInt(1);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 401);
    EXPECT_EQ(robot.r().sensors.lADCVal[4], 401);
    EXPECT_EQ(robot.el("lblADCVal", 0).caption, "401");
    EXPECT_EQ(robot.el("updownADC", 0).max, 1023);
    EXPECT_EQ(robot.el("updownADC", 2).min, 1023);
    EXPECT_EQ(robot.el("updownADC", 2).max, 0);
    EXPECT_EQ(bar(robot, 0).top, 909.0f);
    robot.object().put_bReturnInt(0);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 100);
    // The span of panel 3 is shorter than 1023 steps: 28 by the arrows reads back as 29.
    robot.object().put_bReturnInt(1);
    p.set_updown_value(p.ids().updownADC[3], 28);
    robot.object().put_bReturnInt(1);
    EXPECT_EQ(robot.r().sensors.lADCVal[3], 29);
}

TEST(Sensors, ArrowsStopAtTheLimitsBothWays) {
    SimRobot robot;
    auto& p = robot.panel();
    const int a0 = p.ids().updownADC[0], a2 = p.ids().updownADC[2];
    p.set_updown_value(a0, 100);
    p.arrow(a0, true);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 101);
    EXPECT_EQ(bar(robot, 0).top, 904.0f);
    // The arrows reach 1023 but the full scale is 255: value, arrows and bar stop at 255.
    for (int k = 0; k < 3000; ++k)
        p.arrow(a0, true);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 255);
    EXPECT_EQ(robot.el("updownADC", 0).value, 255);
    EXPECT_EQ(bar(robot, 0).top, 225.0f);
    for (int k = 0; k < 3000; ++k)
        p.arrow(a0, false);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 0);
    // Panel 2: the arrow towards Max lowers the value, moving the bar to the right.
    p.arrow(a2, false);
    p.arrow(a2, false);
    EXPECT_EQ(robot.r().sensors.lADCVal[2], 2);
    const float left = bar(robot, 2).left;
    p.arrow(a2, true);
    EXPECT_EQ(robot.r().sensors.lADCVal[2], 1);
    EXPECT_GT(bar(robot, 2).left, left);
}

TEST(Sensors, PressesOnFrameBarAndTrack) {
    struct Case {
        const char* handler;
        int panel, button;
        float x, y;
        int scale, pos, value;
        float place;
    };
    const Case cases[] = {
        {"frameADC_MouseDown", 0, 1, 0, 800, 0, 500, 142, 725},
        {"frameADC_MouseDown", 0, 1, 0, 800, 1, 500, 568, 725},
        {"frameADC_MouseMove", 2, 1, 800, 0, 0, 635, 111, 725},
        {"frameADC_MouseDown", 2, 1, 800, 0, 1, 635, 446, 725},
        {"frameADC_MouseDown", 4, 1, 800, 0, 0, 635, 144, 725},
        {"frameADC_MouseDown", 4, 1, 800, 0, 1, 635, 577, 725},
        {"frameADC_MouseDown", 3, 1, 0, 800, 0, 500, 128, 725},
        {"frameADC_MouseDown", 3, 1, 0, 800, 1, 500, 514, 725},
        {"frameADC_MouseDown", 0, 1, 0, 0, 0, 0, 255, 225},
        {"frameADC_MouseDown", 1, 1, 0, 1700, 0, 1125, 0, 1350},
        {"frameADC_MouseDown", 4, 1, 0, 0, 0, 0, 0, 90},
        {"frameADC_MouseDown", 4, 1, 1950, 0, 0, 1125, 255, 1215},
        {"frameADC_MouseDown", 2, 1, 0, 0, 0, 0, 255, 90},
        {"frameADC_MouseDown", 0, 1, 0, 1e9f, 0, 1125, 0, 1350},    // far beyond 16 bits
        {"frameADC_MouseDown", 0, 2, 0, 800, 0, 1125, 0, 1350},     // right button: nothing
        {"frameADC_MouseMove", 0, 3, 0, 800, 0, 1125, 0, 1350},     // left with right: nothing
        {"imSlideBase_MouseDown", 0, 1, 0, 575, 0, 500, 142, 725},  // track Top 225
    };
    for (const Case& c : cases) {
        SimRobot robot;
        if (c.scale) robot.object().put_bReturnInt(1);
        std::vector<kestrone::Variant> args{
            kestrone::Variant::integer(static_cast<std::int16_t>(c.panel)),
            kestrone::Variant::integer(static_cast<std::int16_t>(c.button)),
            kestrone::Variant::integer(0), kestrone::Variant::single(c.x),
            kestrone::Variant::single(c.y)};
        ASSERT_EQ(robot.r().simulation.RaiseEvent(c.handler, args),
                  rovanta::Simulation::EventLookup::Found);
        const auto i = static_cast<std::size_t>(c.panel);
        EXPECT_EQ(robot.r().sensors.lSliderPos[i], c.pos) << c.handler << " " << c.panel;
        EXPECT_EQ(robot.r().sensors.lADCVal[i], c.value) << c.handler << " " << c.panel;
        EXPECT_EQ(robot.el("updownADC", c.panel).value, c.value);
        EXPECT_EQ(robot.el("lblADCVal", c.panel).caption, std::to_string(c.value));
        EXPECT_EQ(travel_place(robot, c.panel), c.place) << c.handler << " " << c.panel;
    }
}

TEST(Sensors, APressOnTheBarCountsFromTheBar) {
    SimRobot robot;
    robot.panel().set_top(robot.panel().ids().imSlideBar[0], 500);
    std::vector<kestrone::Variant> args{
        kestrone::Variant::integer(0), kestrone::Variant::integer(1), kestrone::Variant::integer(0),
        kestrone::Variant::single(10), kestrone::Variant::single(70)};
    robot.r().simulation.RaiseEvent("imSlideBar_MouseDown", args);
    EXPECT_EQ(bar(robot, 0).top, 495.0f);  // as a press in the frame at 570
}

}  // namespace
