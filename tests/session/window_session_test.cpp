// The host session driven as a window drives it, against the real module: a clock fed in uneven
// steps, a message box and a tone that last while the event loop runs on, the property frame,
// the project file with its unsaved changes, and a program run in slices.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "window_double.h"

namespace {

using host::ComponentSession;
using kestrone::HRESULT;
using kestrone::Variant;
using kflow::Pause;
using kflow::RunState;
using session_testing::example_path;
using session_testing::WindowDouble;

TEST(WindowClock, UnevenStepsRaiseTheSameTicksAsOneStep) {
    WindowDouble steady, uneven;
    for (WindowDouble* w : {&steady, &uneven}) {
        ASSERT_EQ(w->session.start_simulation(), kestrone::S_OK);
        w->set_motors(200, 150);  // the wheels' timers at 112 and 212 ms
    }
    std::int64_t ticks = 0;
    for (std::int64_t gap : {37, 5, 160, 1, 0, 298, 222})
        ticks += uneven.elapse(gap);
    EXPECT_EQ(steady.elapse(723), ticks);
    EXPECT_EQ(ticks, 723 / 112 + 723 / 212);
    EXPECT_EQ(uneven.session.now(), 723);
    for (int wheel : {0, 1})
        EXPECT_EQ(uneven.field("iWheelPhase", wheel), steady.field("iWheelPhase", wheel));
    // A clock brought back does not move.
    std::int64_t back = -1;
    EXPECT_EQ(uneven.session.advance_to(500, &back), kestrone::S_OK);
    EXPECT_EQ(back, 0);
    EXPECT_EQ(uneven.session.now(), 723);
}

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
    EXPECT_EQ(w.session.advance(10), host::kNoObject);
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
    const std::int32_t left_switch = w.element_id("chkSwitchLeft");
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
    EXPECT_EQ(w.property("chkSwitchLeft", -1, "Value"), 0);
    // Free again: one kept tick of each timer, then the beat as before.
    w.services.while_box_open = nullptr;
    EXPECT_EQ(w.elapse(1), 2);
    EXPECT_NE(w.field("iWheelPhase", 0), phase);
    EXPECT_EQ(w.elapse(560 - 1 - w.real_now()), 0);  // the next due time is 5 x 112
    EXPECT_EQ(w.elapse(1), 2);
    EXPECT_EQ(w.session.click(left_switch), kestrone::S_OK);
    EXPECT_EQ(w.property("chkSwitchLeft", -1, "Value"), 1);
}

TEST(WindowPropertyFrame, AppliesEditsClearsChangedAndCancelsLeaveTheObject) {
    WindowDouble w;
    ASSERT_EQ(w.session.open_page(), kestrone::S_OK);
    EXPECT_EQ(w.session.edit_page("txtiThreshL", "Text", Variant::string("321")), kestrone::S_OK);
    EXPECT_EQ(w.session.click_page("optInt"), kestrone::S_OK);
    EXPECT_EQ(w.session.edit_page("sldMotorBias", "Value", Variant::long_(-40)), kestrone::S_OK);
    Variant caption;
    EXPECT_EQ(w.session.page_property("lblBiasVal", "Caption", &caption), kestrone::S_OK);
    EXPECT_EQ(caption, Variant::string("-40"));
    EXPECT_TRUE(w.session.page_changed());
    EXPECT_FALSE(w.session.dirty());
    EXPECT_EQ(w.session.apply_page(), kestrone::S_OK);
    EXPECT_FALSE(w.session.page_changed());
    EXPECT_TRUE(w.session.dirty());
    EXPECT_EQ(w.field("iThreshL"), 321);
    EXPECT_EQ(w.field("bReturnInt"), 1);
    EXPECT_EQ(w.field("iMotorBias"), -40);
    EXPECT_EQ(w.field("iADCMax"), 1023);
    EXPECT_EQ(w.field("bUseI2C"), 0);

    // Cancel: the frame closes the page, nothing is applied.
    EXPECT_EQ(w.session.edit_page("txtiThreshL", "Text", Variant::string("5")), kestrone::S_OK);
    EXPECT_EQ(w.session.close_page(), kestrone::S_OK);
    EXPECT_FALSE(w.session.page_open());
    EXPECT_EQ(w.field("iThreshL"), 321);
    EXPECT_EQ(w.session.apply_page(), host::kNoObject);

    // A write that fails: what ran before it stands, and Changed stays up.
    ASSERT_EQ(w.session.open_page(), kestrone::S_OK);
    EXPECT_EQ(w.session.edit_page("txtiThreshR", "Text", Variant::string("77")), kestrone::S_OK);
    EXPECT_EQ(w.session.edit_page("txtiThreshF", "Text", Variant::string("abc")), kestrone::S_OK);
    EXPECT_EQ(w.session.apply_page(), kestrone::basic_error_status(13));
    EXPECT_TRUE(w.session.page_changed());
    EXPECT_EQ(w.field("iThreshR"), 77);
    EXPECT_EQ(w.field("iThreshF"), 200);
}

TEST(WindowProject, SavedAndReopenedWithItsUnsavedChanges) {
    WindowDouble w;
    std::string error;
    EXPECT_FALSE(w.session.dirty());
    EXPECT_FALSE(w.session.save_project(&error));  // no file yet
    EXPECT_EQ(w.call("iThreshL", {Variant::integer(77)}, true), kestrone::S_OK);
    EXPECT_EQ(w.session.write_settings(), kestrone::S_OK);
    EXPECT_TRUE(w.session.dirty());
    ASSERT_TRUE(w.session.save_project_as("robot.ktx", &error)) << error;
    EXPECT_FALSE(w.session.dirty());
    EXPECT_EQ(w.session.project_path(), "robot.ktx");

    w.session.set_store_entry("iThreshL", Variant::integer(5));
    EXPECT_TRUE(w.session.dirty());
    w.files.unwritable.push_back("robot.ktx");
    EXPECT_FALSE(w.session.save_project(&error));
    EXPECT_EQ(error, "cannot write the project robot.ktx");
    EXPECT_TRUE(w.session.dirty());

    // A project that can't be read changes nothing; the saved one comes back whole.
    EXPECT_FALSE(w.session.open_project("other.ktx", &error));
    EXPECT_TRUE(w.session.dirty());
    EXPECT_EQ(*w.session.store().get("iThreshL"), Variant::integer(5));
    ASSERT_TRUE(w.session.open_project("robot.ktx", &error)) << error;
    EXPECT_FALSE(w.session.dirty());
    EXPECT_EQ(*w.session.store().get("iThreshL"), Variant::integer(77));

    // Into a new object, as a window opens a project.
    ASSERT_EQ(w.session.create_object(), kestrone::S_OK);
    EXPECT_EQ(w.field("iThreshL"), 200);
    std::vector<std::string> read;
    EXPECT_EQ(w.session.read_settings(
                  [&](const std::string& key, const Variant&) { read.push_back(key); }),
              kestrone::S_OK);
    EXPECT_EQ(w.field("iThreshL"), 77);
    EXPECT_THAT(read, testing::Contains("iThreshL"));
    EXPECT_FALSE(w.session.dirty());  // a load changes the object, not the project
    w.session.clear_store();
    EXPECT_TRUE(w.session.dirty());
}

// The square, driven as a window drives it: a slice of a few steps at each uneven beat of real
// time, never ahead of the program's delays.
TEST(WindowProgram, RunsInSlicesAgainstRealTime) {
    WindowDouble w;
    std::string error;
    ASSERT_TRUE(w.session.load_program(example_path("square.kflow"), &error)) << error;
    ASSERT_EQ(w.session.start_program(), kestrone::S_OK);
    EXPECT_EQ(w.field("bSimulating"), -1);
    const std::int64_t gaps[] = {17, 3, 41, 250, 9, 120};
    Pause p;
    int waits = 0;
    for (int beat = 0; beat < 1000 && p.why != Pause::Why::Finished; ++beat) {
        w.elapse(gaps[beat % 6]);
        const std::int64_t due = w.session.program_wakes_at();
        const int line = w.session.program_line();
        p = w.session.drive_program(5);
        if (w.session.now() < due) {
            // Not yet: the program waits, and says for how long.
            ++waits;
            EXPECT_EQ(p.why, Pause::Why::Delay);
            EXPECT_EQ(p.delay_ms, due - w.session.now());
            EXPECT_EQ(w.session.program_line(), line);
        }
    }
    EXPECT_EQ(p.why, Pause::Why::Finished);
    EXPECT_GT(waits, 8);
    // Each of the eight delays ends at the first beat after it, a slice later at most.
    EXPECT_GE(w.real_now(), 5800);
    EXPECT_LE(w.real_now(), 5800 + 8 * 2 * 250);
    EXPECT_EQ(w.session.program_state(), RunState::Finished);
    EXPECT_EQ(w.session.variable("side"), 4);
    EXPECT_EQ(w.session.variable("leds"), 16);
    EXPECT_EQ(w.services.tones.size(), 4u);
    EXPECT_EQ(w.field("bSimulating"), 0);
    EXPECT_EQ(w.property("imageLedOn", 3, "Visible"), -1);
    // The variables outlive the object; the program does not.
    EXPECT_EQ(w.session.release_object(), kestrone::S_OK);
    EXPECT_FALSE(w.session.has_program());
    EXPECT_EQ(w.session.variable("side"), 4);
}

// The user presses Stop while the first corner's tone sounds: the program stops as soon as the
// step that plays it has returned, and a drive from inside the tone runs nothing.
TEST(WindowProgram, AStopDuringATonesStepTakesEffectWhenTheStepReturns) {
    WindowDouble w;
    std::string error;
    ASSERT_TRUE(w.session.load_program(example_path("square.kflow"), &error)) << error;
    ASSERT_EQ(w.session.start_program(), kestrone::S_OK);
    Pause inner{Pause::Why::Finished};
    int line_in_tone = 0;
    w.services.while_tone = [&](std::int32_t ms) {
        w.elapse(ms);
        line_in_tone = w.session.program_line();
        inner = w.session.drive_program(100);
        w.session.stop_program("stopped by the user");
        EXPECT_EQ(w.session.load_program(example_path("square.kflow"), &error), false);
    };
    Pause p;
    for (int beats = 0; beats < 100 && p.why != Pause::Why::Halted; ++beats) {
        w.elapse(100);
        p = w.session.drive_program(50);
    }
    EXPECT_EQ(p.why, Pause::Why::Halted);
    EXPECT_EQ(inner.why, Pause::Why::Slice);
    EXPECT_EQ(line_in_tone, 9);
    EXPECT_EQ(w.session.program_line(), 9);
    EXPECT_EQ(w.session.program_message(), "stopped by the user");
    EXPECT_EQ(w.services.tones.size(), 1u);
    EXPECT_EQ(w.session.variable("side"), 0);
    EXPECT_EQ(w.field("bSimulating"), 0);
    EXPECT_EQ(w.session.drive_program(50).why, Pause::Why::Halted);
}

}  // namespace
