// The demonstrations of examples/, each run on the real module with a virtual clock and the
// user's actions at fixed moments, to a known final state of the robot and of the program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interpreter.h"
#include "program.h"
#include "robot_session.h"

namespace {

using program_testing::example;
using program_testing::RobotSession;
using program_testing::ScriptedClock;
using program_testing::Tone;
using testing::ElementsAre;

struct Demo {
    RobotSession robot;
    kflow::CheckedProgram checked;
    std::unique_ptr<kflow::Interpreter> interpreter;
    ScriptedClock clock{robot.panel()};

    explicit Demo(const std::string& file) {
        checked = kflow::check_program(example(file), file, robot.macros());
        EXPECT_TRUE(checked.faults.empty()) << kflow::format_diagnostic(file, checked.faults[0]);
        if (checked.program)
            interpreter = std::make_unique<kflow::Interpreter>(*checked.program, robot.component());
    }
    kflow::RunOutcome run() { return run_on(clock); }
    kflow::RunOutcome run_on(kflow::Clock& on) {
        if (!interpreter) return {kflow::RunOutcome::End::Failed, 0, "no program"};
        const auto outcome = kflow::run_to_end(*interpreter, on);
        EXPECT_EQ(outcome.end, kflow::RunOutcome::End::Finished) << outcome.message;
        return outcome;
    }
    int var(const std::string& name) { return interpreter->variable(name).value_or(-12345); }
    std::vector<int> lit() {
        std::vector<int> on;
        for (int i = 0; i < 8; ++i)
            if (robot.led_lit(i)) on.push_back(i);
        return on;
    }
};

TEST(Demonstration, SquareDrivesFourSidesWithAToneAtEachCorner) {
    Demo d("square.kflow");
    kflow::PanelClock console_clock(d.robot.panel());  // the console's driver, as it stands
    const auto outcome = d.run_on(console_clock);
    EXPECT_EQ(outcome.elapsed_ms, 4 * (1000 + 450));
    std::int64_t now = 0;
    d.robot.panel().GetClock(&now);
    EXPECT_EQ(now, 4 * (1000 + 450));
    EXPECT_EQ(d.var("side"), 4);
    EXPECT_EQ(d.var("leds"), 16);
    EXPECT_THAT(d.lit(), ElementsAre(3));  // the last corner's pattern; LED 7 off: no switch
    EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 0);
    EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 0);
    EXPECT_EQ(d.robot.services.tones, std::vector<Tone>(4, Tone{440, 200}));
    // The wheels' timers ran while the program waited: every 100 ms each, since only
    // SetMotors changes their interval.
    EXPECT_EQ(console_clock.ticks(), 2 * 58);
    EXPECT_EQ(d.robot.field("bSimulating", -1), 0);
}

TEST(Demonstration, SquareLightsLed7WhenTheLeftSwitchIsHeld) {
    Demo d("square.kflow");
    d.clock.at(0, [&] { d.robot.click("chkSwitchLeft"); });
    d.run();
    EXPECT_THAT(d.lit(), ElementsAre(3, 7));
}

TEST(Demonstration, LineFollowerSteersByItsSensorsAndStopsAtTheBar) {
    Demo d("line_follower.kflow");
    d.clock.at(300, [&] { d.robot.click("chkLineLeft"); });
    d.clock.at(450, [&] {
        // Halfway through the left turn: the left motor is slowed.
        EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 60);
        EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 180);
    });
    d.clock.at(600, [&] {
        d.robot.click("chkLineLeft");
        d.robot.click("chkLineRight");
    });
    d.clock.at(700, [&] { EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 180); });
    d.clock.at(1000, [&] { d.robot.click("chkLineLeft"); });
    const auto outcome = d.run();
    EXPECT_EQ(outcome.elapsed_ms, 1000);
    EXPECT_EQ(d.var("steps"), 6 + 6 + 8);  // straight, left, right, 50 ms a look
    EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 0);
    EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 0);
    EXPECT_THAT(d.lit(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST(Demonstration, LineFollowerGivesUpWhenItNeverFindsTheBar) {
    Demo d("line_follower.kflow");
    const auto outcome = d.run();
    EXPECT_EQ(outcome.elapsed_ms, 200 * 50);
    EXPECT_EQ(d.var("steps"), 200);
    EXPECT_THAT(d.lit(), ElementsAre(3, 4));
    EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 0);
}

TEST(Demonstration, LightSeekerVeersFromTheNearerWallAndStopsInTheLight) {
    Demo d("light_seeker.kflow");
    d.robot.set_sensor(0, 50);   // the LDR
    d.robot.set_sensor(2, 120);  // a wall nearer on the left
    d.robot.set_sensor(4, 40);
    d.clock.at(150, [&] {
        EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 200);  // veering right
        EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 100);
        EXPECT_THAT(d.lit(), ElementsAre(0));  // 50 >> 5 is 1: one LED
    });
    d.clock.at(300, [&] {
        d.robot.set_sensor(2, 60);
        d.robot.set_sensor(4, 60);
    });
    d.clock.at(450, [&] { EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 180); });  // straight on
    d.clock.at(500, [&] { d.robot.set_sensor(4, 150); });
    d.clock.at(650, [&] {
        EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 100);  // veering left
        EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 200);
        d.robot.set_sensor(3, 200);  // a wall close ahead, the right side the nearer
    });
    d.clock.at(750, [&] { EXPECT_EQ(d.robot.field("iMotorSpeed", 0), -100); });  // spinning left
    d.clock.at(800, [&] { d.robot.set_sensor(0, 230); });
    const auto outcome = d.run();
    EXPECT_EQ(outcome.elapsed_ms, 800);
    EXPECT_EQ(d.var("turns"), 1);
    EXPECT_EQ(d.var("light"), 230);
    EXPECT_EQ(d.robot.field("iMotorSpeed", 1), 0);
    EXPECT_THAT(d.lit(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(d.robot.services.tones, ElementsAre(Tone{880, 500}));
}

TEST(Demonstration, BumpersBackOffTurnAwayAndCountThreeBumps) {
    Demo d("bumpers.kflow");
    const auto press = [&](std::int64_t at, const char* box) {
        d.clock.at(at, [&d, box] { d.robot.click(box); });
        d.clock.at(at + 50, [&d, box] { d.robot.click(box); });
    };
    press(100, "chkSwitchLeft");
    d.clock.at(200, [&] { EXPECT_EQ(d.robot.field("iMotorSpeed", 0), -150); });  // backing off
    d.clock.at(600, [&] {  // turning right, away from the left bump
        EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 150);
        EXPECT_EQ(d.robot.field("iMotorSpeed", 1), -150);
    });
    press(1000, "chkSwitchRight");
    d.clock.at(1600, [&] { EXPECT_EQ(d.robot.field("iMotorSpeed", 0), -150); });  // left turn
    press(2000, "chkSwitchLeft");
    const auto outcome = d.run();
    EXPECT_EQ(outcome.elapsed_ms, 2720);
    EXPECT_EQ(d.var("bumps"), 3);
    EXPECT_THAT(d.lit(), ElementsAre(0, 1, 2));
    EXPECT_EQ(d.robot.field("iMotorSpeed", 0), 0);
    EXPECT_THAT(d.robot.services.tones, ElementsAre(Tone{440, 100}));
}

}  // namespace
