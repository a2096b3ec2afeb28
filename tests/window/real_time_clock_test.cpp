// The window's real-time clock: ticks at the asked interval in phase, wakes for the next ticks, and
// drives a program against the same clock.
#include <set>

#include "window_fixture.h"

namespace window_testing {
namespace {

using kestrone::Variant;

Variant speeds(std::int16_t lh, std::int16_t ll, std::int16_t rh, std::int16_t rl) {
    return Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(lh), Variant::integer(ll), Variant::integer(rh), Variant::integer(rl)});
}

class RealTimeClockTest : public WindowTest {
  protected:
    // Both motors through SetMotors: the timers' interval follows the speed.
    void set_motors(Variant bytes) {
        call("SimMacroCall", {Variant::long_(9), std::move(bytes), Variant::long_(0), Variant(),
                              Variant::long_(0)});
    }
};

TEST_F(RealTimeClockTest, TicksAtTheAskedIntervalWhateverTheTimersGranularity) {
    window_->start_simulation();
    // Left at full speed (2 ms), right at -100 (312 ms).
    set_motors(speeds(0, 255, 255, 156));
    elapse(1000, 7);
    EXPECT_EQ(window_->clock().ticks(0), 500);
    EXPECT_EQ(window_->clock().ticks(1), 3);
    elapse(1000, 3);
    EXPECT_EQ(window_->clock().ticks(0), 1000);
    EXPECT_EQ(window_->clock().ticks(1), 6);
    // The rate over the last whole second, per wheel.
    EXPECT_NEAR(window_->clock().rate(0), 500, 5);
    EXPECT_NEAR(window_->clock().rate(1), 3, 1);
    EXPECT_TRUE(window_->status_text().startsWith("Simulating"))
        << window_->status_text().toStdString();
    EXPECT_TRUE(window_->status_text().contains("left wheel 500 ticks/s"));
    EXPECT_TRUE(window_->status_text().contains("right wheel 3 ticks/s"));
    EXPECT_EQ(field("iWheelPhase", 0), 1000 % 11);
}

TEST_F(RealTimeClockTest, TheTimerWakesForTheNextTickOfEitherWheel) {
    window_->start_simulation();
    set_motors(speeds(0, 255, 255, 156));
    // Ticks due every 2 ms are taken four milliseconds' worth at a time.
    elapse(1);
    EXPECT_EQ(window_->clock().next_wake_ms(), 4);
    set_motors(speeds(255, 156, 0, 255));
    elapse(1);
    EXPECT_EQ(window_->clock().next_wake_ms(), 4);
    // Both slow: the next tick is far, but the clock looks in now and then all the same.
    set_motors(speeds(0, 0, 0, 0));
    elapse(1);
    EXPECT_GT(window_->clock().next_wake_ms(), 4);
    EXPECT_LE(window_->clock().next_wake_ms(), 50);
}

TEST_F(RealTimeClockTest, AProgramRunsAgainstTheClockAndItsPaneFollowsTheRunningLine) {
    ASSERT_TRUE(window_->open_program(example("square.kflow")));
    EXPECT_TRUE(window_->program_pane()->code().contains("void main"));
    const std::int64_t started = window_->session().now();
    window_->run_program();
    std::set<int> lines;
    for (int i = 0; i < 400 && window_->stage().program().running(); ++i) {
        EXPECT_EQ(window_->program_pane()->shown_line(), window_->stage().program().line());
        lines.insert(window_->program_pane()->shown_line());
        elapse(50, 10);
    }
    EXPECT_EQ(window_->stage().program().state(), kflow::RunState::Finished);
    // The console's run of the same program takes 5800 ms on its clock.
    EXPECT_GE(window_->session().now() - started, 5800);
    EXPECT_LT(window_->session().now() - started, 5800 + 50);
    EXPECT_EQ(window_->stage().program().variable("side"), 4);
    EXPECT_EQ(property("imageLedOn", 3, "Visible"), -1);
    // The program waits on its two delays, and that is where the pane shows it each time.
    EXPECT_TRUE(lines.count(7) && lines.count(11));
    EXPECT_EQ(window_->program_pane()->shown_line(), window_->stage().program().line());
    EXPECT_EQ(window_->services().tones_played(), 4);
}

}  // namespace
}  // namespace window_testing
