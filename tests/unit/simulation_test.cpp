// Macro dispatch, the drive macros and wheels, the heading, LEDs and inputs, against the figures
// the robot's description gives.
#include <gtest/gtest.h>

#include <cmath>

#include "simulation_fixture.h"

namespace {

using kestrone::S_OK;
using kestrone::Variant;
using sim_testing::error;
using sim_testing::params;
using sim_testing::SimRobot;

TEST(SimulationDispatch, NumbersOutsideEitherRangeDoNothing) {
    struct Case {
        std::int32_t id;
        int macros;
    };
    // 3 and 21 lie outside 4 to 20; 20 lies beyond a table of 20 (upper bound 19).
    for (const Case c : {Case{3, 21}, Case{21, 21}, Case{20, 20}, Case{-2147483647 - 1, 21},
                         Case{2147483647, 21}, Case{-1, 21}}) {
        SimRobot robot(c.macros);
        robot.r().sensors.lADCVal[1] = 77;
        std::int32_t ret = 1234;
        EXPECT_EQ(robot.call(c.id, params({1, 2, 3, 4}), &ret), S_OK) << c.id;
        EXPECT_EQ(ret, 1234) << c.id;
        EXPECT_TRUE(robot.last_affected.is_empty()) << c.id;
        EXPECT_EQ(robot.r().motors.iMotorSpeed[0], 0) << c.id;
    }
}

TEST(SimulationDispatch, FailuresLeaveWhatRanAndNeverWriteTheResult) {
    const Variant strings = Variant::array(kestrone::VarType::String, 0, {Variant::string("abc")});
    const Variant huge = Variant::array(kestrone::VarType::Variant, 0, {Variant::double_(1e300)});
    struct Case {
        std::int32_t id;
        Variant p;
        kestrone::HRESULT status;
    };
    const Case cases[] = {
        {4, Variant::long_(5), error(vb::kTypeMismatch)},             // not an array
        {4, params({}), error(vb::kSubscriptOutOfRange)},             // too short
        {13, strings, error(vb::kTypeMismatch)},                      // a word where a number goes
        {19, huge, S_OK},                                             // a number: the right side
        {4, huge, error(vb::kOverflow)},                              // a speed that overflows
        {4, params({-32768}), S_OK},                                  // fits
        {5, params({-32768}), error(vb::kOverflow)},                  // 0 - p does not fit
        {15, params({1, 128, 0}), error(vb::kOverflow)},              // high byte 128 or more
        {9, params({127, 255, 1}), error(vb::kSubscriptOutOfRange)},  // right pair missing
    };
    for (const Case& c : cases) {
        SimRobot robot;
        std::int32_t ret = 55;
        const kestrone::HRESULT hr = robot.call(c.id, c.p, &ret);
        EXPECT_EQ(hr, c.status) << c.id;
        if (hr != S_OK) {
            EXPECT_EQ(ret, 55) << c.id;
        }
        EXPECT_TRUE(robot.services.tones.empty());
    }
    // The left pair of a SetMotors whose right pair is missing stands; no wheel was drawn.
    SimRobot robot;
    EXPECT_EQ(robot.call(9, params({0, 100, 0})), error(vb::kSubscriptOutOfRange));
    EXPECT_EQ(robot.r().motors.iMotorSpeed[0], 100);
    EXPECT_EQ(robot.el("Timer1", 0).interval, 312);
    EXPECT_EQ(robot.el("lblSpeedVal", 0).caption, "0");
}

TEST(SimulationDispatch, SecondCallShowsItsMessageAndRunsNothing) {
    SimRobot robot;
    Variant ret = Variant::long_(3), affected;
    std::int32_t cycles = 9;
    EXPECT_EQ(robot.object().SimMacroCall2(4, params({100}), &ret, &affected, &cycles), S_OK);
    EXPECT_EQ(robot.services.messages.back(), "Error in <SimMacroCall2>");
    EXPECT_EQ(robot.r().motors.iMotorSpeed[0], 0);
    EXPECT_EQ(ret, Variant::long_(3));
    EXPECT_EQ(cycles, 9);
}

TEST(SetMotors, DecodesLimitsAndSetsTheIntervals) {
    struct Case {
        int high, low, speed, interval;
    };
    const Case cases[] = {{0, 0, 0, 512},      {0, 1, 1, 510},        {0, 100, 100, 312},
                          {0, 255, 255, 2},    {1, 0, 255, 2},        {127, 255, 255, 2},
                          {255, 255, -1, 510}, {255, 156, -100, 312}, {255, 1, -255, 2},
                          {255, 0, -255, 2},   {128, 0, -255, 2}};
    for (const Case& c : cases) {
        SimRobot robot;
        ASSERT_EQ(robot.call(9, params({c.high, c.low, c.high, c.low})), S_OK);
        for (int m = 0; m < 2; ++m) {
            EXPECT_EQ(robot.r().motors.iMotorSpeed[static_cast<std::size_t>(m)], c.speed)
                << c.high << "," << c.low;
            EXPECT_EQ(robot.el("Timer1", m).interval, c.interval) << c.high << "," << c.low;
        }
        EXPECT_EQ(robot.el("lblSpeedVal", 1).caption, std::to_string(c.speed));
    }
}

TEST(DriveMacros, SetSpeedsWithoutLimitAndLeaveTheTimers) {
    struct Case {
        std::int32_t id;
        int p, left, right;
    };
    const Case cases[] = {{4, 300, 300, 300}, {5, 100, -100, -100}, {6, 9, 0, 0},
                          {7, 40, -40, 40},   {8, 40, 40, -40},     {5, -300, 300, 300}};
    for (const Case& c : cases) {
        SimRobot robot;
        ASSERT_EQ(robot.call(9, params({0, 0, 0, 0})), S_OK);
        ASSERT_EQ(robot.call(c.id, params({c.p})), S_OK);
        EXPECT_EQ(robot.r().motors.iMotorSpeed[0], c.left) << c.id;
        EXPECT_EQ(robot.r().motors.iMotorSpeed[1], c.right) << c.id;
        EXPECT_EQ(robot.el("lblSpeedVal", 0).caption, std::to_string(c.left));
        EXPECT_EQ(robot.el("Timer1", 0).interval, 512);
    }
}

TEST(Wheels, LinesFollowTheCosineProjection) {
    SimRobot robot;
    rovanta::Rovanta& r = robot.r();
    EXPECT_EQ(r.motors.iWheelCentre[0], 765);
    EXPECT_EQ(r.motors.iWheelTravel[1], 1040);
    EXPECT_EQ(robot.el("WheelLine", 4).left, 53.0f);
    EXPECT_EQ(robot.el("WheelLine", 15).width, 387.0f);
    struct Case {
        int index, phase, line;
        double top;
    };
    const Case cases[] = {{0, 0, 0, 1285},       {0, 0, 1, 1263.9364}, {0, 0, 5, 839.0037},
                          {0, 0, 10, 266.06366}, {0, 10, 7, 259.09},   {0, 10, 8, 1284.29},
                          {1, 0, 11, 1285},      {1, 0, 16, 839.0037}};
    for (const Case& c : cases) {
        r.simulation.DrawWheel(static_cast<std::int16_t>(c.index),
                               static_cast<std::int16_t>(c.phase));
        EXPECT_NEAR(robot.el("WheelLine", c.line).top, c.top, 0.01) << c.line;
    }
    // Placed in single precision only at the end, and never made whole.
    r.simulation.DrawWheel(0, 0);
    const double exact = 765 + 1040 * std::cos(3.14159265 / 11) / 2;
    EXPECT_EQ(robot.el("WheelLine", 1).top, static_cast<float>(exact));
}

TEST(Wheels, TicksAnimateOnlyWhileRunning) {
    struct Case {
        int speed, phase_before, phase_after;
        bool stopped, up, down;
    };
    const Case cases[] = {{100, 10, 0, false, true, false},
                          {1, 3, 4, false, true, false},
                          {-5, 0, 10, false, false, true},
                          {0, 6, 6, true, false, false}};
    for (const Case& c : cases) {
        SimRobot robot;
        robot.r().motors.iMotorSpeed[0] = static_cast<std::int16_t>(c.speed);
        robot.r().motors.iWheelPhase[0] = static_cast<std::int16_t>(c.phase_before);
        robot.r().simulation.Timer1_Timer(0);  // idle: nothing at all, not even the caption
        EXPECT_EQ(robot.r().motors.iWheelPhase[0], c.phase_before);
        EXPECT_EQ(robot.el("lblSpeedVal", 0).caption, "0");
        ASSERT_EQ(robot.object().StartSimulation(), S_OK);
        robot.r().simulation.Timer1_Timer(0);
        EXPECT_EQ(robot.r().motors.iWheelPhase[0], c.phase_after) << c.speed;
        EXPECT_EQ(robot.el("imageStopped", 0).visible, c.stopped);
        EXPECT_EQ(robot.el("imageUp", 0).visible, c.up);
        EXPECT_EQ(robot.el("imageDown", 0).visible, c.down);
        // The tick draws the phase the tick before left.
        std::int16_t shown = static_cast<std::int16_t>(c.phase_before);
        robot.r().simulation.DrawWheel(1, shown);
        EXPECT_EQ(robot.el("WheelLine", 0).top, robot.el("WheelLine", 11).top);
    }
}

TEST(Heading, ChoosesByTheRulesInOrder) {
    const int cases[][3] = {{20, 20, 0},     {21, 20, 8},    {20, 21, 5},     {-21, 0, 5},
                            {0, -100, 8},    {100, -100, 8}, {-100, 100, 5},  {21, 21, 1},
                            {41, 21, 1},     {42, 21, 6},    {120, 21, 6},    {121, 21, 7},
                            {21, 120, 3},    {21, 121, 4},   {-21, -21, 2},   {-42, -21, 11},
                            {-121, -21, 12}, {-21, -42, 9},  {-21, -121, 10}, {32767, -32768, 8}};
    SimRobot robot;
    EXPECT_EQ(robot.shown_heading(), 0);
    for (const auto& c : cases) {
        robot.r().motors.iMotorSpeed = {static_cast<std::int16_t>(c[0]),
                                        static_cast<std::int16_t>(c[1])};
        robot.r().simulation.UpdateDirection();
        EXPECT_EQ(robot.shown_heading(), c[2]) << c[0] << "," << c[1];
    }
}

TEST(Leds, MacrosSetPinsAndReportThemTheLampsFollowARefresh) {
    SimRobot robot;
    auto pin = [&](int i) { return robot.r().pin_table.Pins(i).SimValue; };
    ASSERT_EQ(robot.call(10, params({165})), S_OK);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(pin(i), i == 0 || i == 2 || i == 5 || i == 7) << i;
    EXPECT_EQ(robot.last_affected.as_array().items.size(), 8u);
    EXPECT_TRUE(robot.r().link.bPinsChanged);
    EXPECT_FALSE(robot.el("imageLedOn", 0).visible);  // not until a repaint
    ASSERT_EQ(robot.object().Refresh(), S_OK);
    EXPECT_TRUE(robot.el("imageLedOn", 0).visible);
    EXPECT_FALSE(robot.el("imageLedOff", 0).visible);
    EXPECT_FALSE(robot.el("imageLedOn", 1).visible);

    ASSERT_EQ(robot.call(10, params({256})), S_OK);
    for (int i = 0; i < 8; ++i)
        EXPECT_FALSE(pin(i));
    for (int n : {8, -1}) {
        robot.r().link.bPinsChanged = false;
        ASSERT_EQ(robot.call(11, params({n})), S_OK);
        EXPECT_EQ(robot.last_affected,
                  Variant::array(kestrone::VarType::Long, 0, {Variant::long_(n)}));
        EXPECT_TRUE(robot.r().link.bPinsChanged);
    }
    ASSERT_EQ(robot.call(11, params({3})), S_OK);
    EXPECT_TRUE(pin(3));
    ASSERT_EQ(robot.call(12, params({3})), S_OK);
    EXPECT_FALSE(pin(3));
}

TEST(Inputs, SwitchesLinesAndSensorsAnswerBySide) {
    SimRobot robot;
    panel::Panel& p = robot.panel();
    p.click(p.ids().chkSwitchLeft);
    EXPECT_TRUE(robot.r().pin_table.Pins(8).SimValue);
    EXPECT_EQ(p.focus(), p.ids().Picture1);
    p.click(p.ids().chkLineRight);
    EXPECT_TRUE(robot.r().pin_table.Pins(11).SimValue);
    robot.r().sensors.lADCVal = {10, 11, 199, 200, 14};
    struct Case {
        std::int32_t id;
        int side, result;
    };
    const Case cases[] = {{13, 76, 1}, {13, 0, 1},  {13, 70, 0}, {13, 1, 0},   {20, 108, 0},
                          {20, 5, 1},  {16, 0, 11}, {17, 0, 10}, {19, 0, 199}, {19, 102, 200},
                          {19, 9, 14}, {18, 0, 1},  {18, 70, 0}, {18, 1, 0},   {18, 82, 1}};
    for (const Case& c : cases) {
        std::int32_t ret = -7;
        ASSERT_EQ(robot.call(c.id, params({c.side}), &ret), S_OK);
        EXPECT_EQ(ret, c.result) << c.id << " side " << c.side;
    }
}

TEST(Inputs, WaitSwitchSeesAPressAndItsReleaseOnce) {
    SimRobot robot;
    panel::Panel& p = robot.panel();
    const int box = p.ids().chkSwitchLeft;
    // up, down, down, up, up
    const std::int16_t states[] = {0, 1, 1, 0, 0};
    const int expected[] = {1, 1, 1, 0, 1};
    for (int k = 0; k < 5; ++k) {
        p.set_check_value(box, states[k]);
        std::int32_t ret = 0;
        ASSERT_EQ(robot.call(14, params({0}), &ret), S_OK);
        EXPECT_EQ(ret, expected[k]) << k;
    }
    // One latch for both sides; a start clears it.
    p.set_check_value(box, 1);
    std::int32_t ret = 0;
    robot.call(14, params({0}), &ret);
    robot.call(14, params({1}), &ret);
    EXPECT_EQ(ret, 0);
    p.set_check_value(box, 1);
    robot.call(14, params({0}), &ret);
    robot.object().StartSimulation();
    p.set_check_value(box, 0);
    robot.call(14, params({0}), &ret);
    EXPECT_EQ(ret, 1);
}

TEST(Inputs, ToneGoesToTheServiceAsPassed) {
    SimRobot robot;
    ASSERT_EQ(robot.call(15, params({44, 1, 244})), S_OK);
    ASSERT_EQ(robot.call(15, params({1, 0, 5})), S_OK);
    ASSERT_EQ(robot.call(15, params({-3, 127, 255})), S_OK);
    using T = platform::RecordingServices::Tone;
    EXPECT_EQ(robot.services.tones, (std::vector<T>{{440, 500}, {10, 5}, {-30, 32767}}));
}

// Raised by name, a handler takes its event's arguments and no more.
TEST(PanelEvents, EachHandlerTakesItsEventsArgumentsAndNoMore) {
    const std::pair<const char*, std::size_t> handlers[] = {
        {"frameADC_MouseDown", 5},   {"frameADC_MouseMove", 5},    {"imSlideBar_MouseDown", 5},
        {"imSlideBar_MouseMove", 5}, {"imSlideBase_MouseDown", 5}, {"imSlideBase_MouseMove", 5},
        {"updownADC_Change", 1},     {"Timer1_Timer", 1},          {"chkSwitchLeft_Click", 0},
        {"chkSwitchRight_Click", 0}, {"chkLineLeft_Click", 0},     {"chkLineRight_Click", 0},
        {"UserControl_Resize", 0},   {"UserControl_Paint", 0}};
    SimRobot robot;
    for (const auto& [name, count] : handlers) {
        std::vector<Variant> args(count + 1, Variant::integer(0));
        EXPECT_EQ(robot.r().simulation.RaiseEvent(name, args),
                  rovanta::Simulation::EventLookup::BadCount)
            << name;
    }
}

}  // namespace
