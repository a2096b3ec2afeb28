// The flows through the window that used to double back: a played script that waits while a tone
// holds the thread, a program's every way of ending stopping the simulation, and the C that
// follows the object's settings as soon as they are applied.
#include "window_fixture.h"

namespace window_testing {
namespace {

using WindowFlowsTest = WindowTest;

// The tone plays for real in its nested event loop, where the window's timer keeps firing: the
// click after it must wait for the tone's end, or the held panel would drop it.
TEST_F(WindowFlowsTest, AScriptWaitsWhileItsToneHoldsThePanel) {
    window_->player().set_lines({"SimMacroCall 15 [44, 0, 120] 0& Empty 0&", "click chkSwitchLeft",
                                 "expect get chkSwitchLeft.Value == 1"});
    window_->player().play();
    EXPECT_FALSE(window_->player().playing());
    EXPECT_EQ(window_->services().tones_played(), 1);
    EXPECT_TRUE(window_->player().failures().empty()) << window_->player().failures().front();
    EXPECT_EQ(property("chkSwitchLeft", -1, "Value"), 1);
}

// The end of the program, its `stop`, and Program > Stop in the middle of a delay: each leaves the
// simulation stopped, the wheels still, and Start then runs the program again from its top.
TEST_F(WindowFlowsTest, EveryEndOfAProgramStopsTheSimulation) {
    const std::string body = "DriveForwards(200)\ndelay 300\n";
    const struct {
        const char* name;
        std::string text;
        bool stop_by_hand;
    } cases[] = {{"its end", body, false},
                 {"its stop", body + "stop\nDriveStop()\n", false},
                 {"Program > Stop", body + "delay 5000\n", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(window_->open_program(dir_.write("p.kflow", c.text)));
        window_->run_program();
        elapse(400, 10);
        if (c.stop_by_hand) window_->stop_program();
        EXPECT_FALSE(window_->stage().program().running());
        EXPECT_EQ(field("bSimulating"), 0);
        const std::int32_t phase = field("iWheelPhase", 0);
        elapse(500, 10);
        EXPECT_EQ(field("iWheelPhase", 0), phase);
        // Start runs the open program, not the wheels alone.
        EXPECT_TRUE(window_->status_text().contains("Stopped"));
        window_->start_simulation();
        EXPECT_TRUE(window_->stage().program().running());
        window_->stop_simulation();
        EXPECT_EQ(window_->stage().program().state(), kflow::RunState::Halted);
        EXPECT_EQ(field("bSimulating"), 0);
    }
}

TEST_F(WindowFlowsTest, TheCFollowsASettingAsSoonAsItIsApplied) {
    ASSERT_TRUE(window_->open_program(example("light_seeker.kflow")));
    const QString before = window_->program_pane()->code();
    auto dialog = window_->make_properties();
    ASSERT_NE(dialog, nullptr);
    type_into(*dialog, "txtiThreshF", "173");
    ASSERT_TRUE(dialog->apply());
    const QString after = window_->program_pane()->code();
    EXPECT_NE(after, before);
    EXPECT_TRUE(after.contains("173")) << after.toStdString();
    EXPECT_FALSE(window_->session().project_path().size());  // nothing was saved
}

}  // namespace
}  // namespace window_testing
