// The stage driven as a window drives it, against the real module: its clock across objects, and a
// message box and a tone that last while the event loop runs on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "window_double.h"

namespace {

using kestrone::HRESULT;
using kestrone::Variant;
using stage_testing::example_path;
using stage_testing::WindowDouble;

TEST(WindowClock, ANewObjectCarriesTheSessionsTimeOn) {
    WindowDouble w;
    w.elapse(950);
    ASSERT_EQ(w.session.create_object(), kestrone::S_OK);
    EXPECT_EQ(w.session.now(), 950);
    // The new object's timers count from its creation: two ticks in its first 100 ms, not the
    // twenty of the session's whole time.
    EXPECT_EQ(w.elapse(100), 2);
    EXPECT_EQ(w.session.now(), 1050);
    EXPECT_EQ(w.session.release_object(), kestrone::S_OK);
    EXPECT_EQ(w.session.now(), 1050);
    EXPECT_EQ(w.stage.advance(10), host::kNoObject);
    // A clock brought back does not move.
    ASSERT_EQ(w.session.create_object(), kestrone::S_OK);
    std::int64_t back = -1;
    EXPECT_EQ(w.stage.bring_to(500, &back), kestrone::S_OK);
    EXPECT_EQ(back, 0);
    EXPECT_EQ(w.session.now(), 1050);
}

// The message box of a pin write stays up for 350 ms: the window's timer fires behind it and the
// user clicks at the panel. The component holds the thread: the ticks are kept, one a timer, the
// click is refused, and the session refuses to drop the object or open a page under the call.
TEST(WindowMessageBox, HoldsTheTicksAndRefusesWhatWouldPullTheObject) {
    WindowDouble w;
    ASSERT_EQ(w.session.start_simulation(), kestrone::S_OK);
    w.set_motors(200, 200);
    EXPECT_EQ(w.elapse(120), 2);
    const int phase = w.field("iWheelPhase", 0);
    const std::int32_t left_switch = w.id("chkSwitchLeft");
    std::vector<HRESULT> inside;
    int phase_inside = -1;
    std::int64_t held_ticks = -1;
    w.services.while_box_open = [&] {
        held_ticks = w.elapse(350);
        inside.push_back(w.session.click(left_switch));
        inside.push_back(w.session.create_object());
        inside.push_back(w.session.release_object());
        inside.push_back(w.session.open_page());
        phase_inside = w.field("iWheelPhase", 0);
    };
    EXPECT_EQ(w.call("Port", {Variant::long_(0), Variant::long_(5)}, true), kestrone::S_OK);
    EXPECT_THAT(w.services.messages, testing::ElementsAre("Cannot change pins for this component"));
    EXPECT_EQ(held_ticks, 0);
    EXPECT_THAT(inside, testing::ElementsAre(kestrone::S_FALSE, host::kSessionBusy,
                                             host::kSessionBusy, host::kSessionBusy));
    EXPECT_EQ(phase_inside, phase);
    EXPECT_FALSE(w.session.page_open());
    EXPECT_FALSE(w.session.page_changed());
    EXPECT_EQ(w.property("chkSwitchLeft", -1, "Value"), 0);
    // Free again: the kept ticks come, and the panel takes the click.
    w.services.while_box_open = nullptr;
    EXPECT_EQ(w.elapse(1), 2);
    EXPECT_EQ(w.session.click(left_switch), kestrone::S_OK);
    EXPECT_EQ(w.property("chkSwitchLeft", -1, "Value"), 1);
}

// The user presses Stop while the first corner's tone sounds: the program stops as soon as the
// step that plays it has returned, and the clock brought on from inside the tone runs no step.
TEST(WindowProgram, AStopDuringATonesStepTakesEffectWhenTheStepReturns) {
    WindowDouble w;
    std::string error;
    ASSERT_TRUE(w.stage.load_program(example_path("square.kflow"), &error)) << error;
    w.stage.set_slice_steps(50);
    ASSERT_EQ(w.stage.start_program(), kestrone::S_OK);
    int line_in_tone = 0;
    std::uint64_t steps_in_tone = 1;
    bool loaded_in_tone = true;
    w.services.while_tone = [&](std::int32_t ms) {
        const std::uint64_t before = w.stage.program().steps();
        w.elapse(ms);
        steps_in_tone = w.stage.program().steps() - before;
        line_in_tone = w.stage.program().line();
        w.stage.program().stop("stopped by the user");
        loaded_in_tone = w.stage.load_program(example_path("square.kflow"), &error);
    };
    for (int beats = 0; beats < 100 && w.stage.program().running(); ++beats)
        w.elapse(100);
    EXPECT_EQ(w.stage.program().state(), kflow::RunState::Halted);
    EXPECT_EQ(steps_in_tone, 0u);
    EXPECT_FALSE(loaded_in_tone);
    EXPECT_EQ(line_in_tone, 9);
    EXPECT_EQ(w.stage.program().line(), 9);
    EXPECT_EQ(w.stage.program().message(), "stopped by the user");
    EXPECT_EQ(w.services.tones.size(), 1u);
    EXPECT_EQ(w.stage.program().variable("side"), 0);
    EXPECT_EQ(w.field("bSimulating"), 0);
}

}  // namespace
