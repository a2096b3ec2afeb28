// What the user does in the window, recorded as a console script, brings a fresh object to the
// same state when the console replays it headless: every field and every element property.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "console.h"
#include "value_syntax.h"
#include "view_input.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

using kestrone::PointerAction;
using kestrone::Variant;

// The fields that carry the object's state, and the settings it keeps.
const char* const kFields[] = {"bSimulating",  "lADCVal",      "lSliderPos",   "vSliderMin",
                               "vSliderMax",   "iADCMax",      "iWheelPhase",  "iMotorSpeed",
                               "bSwitchLatch", "bPinsChanged", "bInitialised", "lMacroCount"};
const char* const kSettings[] = {"iThreshR",   "iThreshF",       "iThreshL",   "iMotorBias",
                                 "bReturnInt", "bWaitForButton", "iThreshMic", "bUseI2C"};

// Everything a user or a host could tell apart, one line each.
std::vector<std::string> state_of(host::ComponentSession& s) {
    std::vector<std::string> out;
    Variant v;
    for (const char* f : kFields) {
        v = {};
        s.field(f, std::nullopt, "", &v);
        out.push_back(std::string(f) + " " + console::format_value(v));
    }
    for (std::int32_t pin = 0; pin < 12; ++pin) {
        v = {};
        s.field("Pins", pin, "SimValue", &v);
        out.push_back("pin " + std::to_string(pin) + " " + console::format_value(v));
    }
    for (const char* name : kSettings) {
        std::vector<Variant> none;
        v = {};
        s.call(*host::ComponentSession::find_operation(name, false), none, &v);
        out.push_back(std::string(name) + " " + console::format_value(v));
    }
    kestrone::IKestronePanel* panel = s.panel();
    std::int32_t count = 0;
    panel->GetElementCount(&count);
    for (std::int32_t id = 0; id < count; ++id) {
        kestrone::ElementInfo e;
        panel->GetElement(id, &e);
        std::ostringstream line;
        line << window::element_ref(*panel, id).value_or(commands::ElementRef{}).text() << " "
             << e.left << "," << e.top << "," << e.width << "," << e.height << " '" << e.caption
             << "' " << e.visible << e.enabled << " " << e.fore_colour << "/" << e.back_colour
             << " " << e.z_order << " " << e.picture << " " << e.check_value << " " << e.value
             << "[" << e.min << "," << e.max << "] " << e.interval;
        out.push_back(line.str());
    }
    out.push_back("clock " + std::to_string(s.now()));
    return out;
}

class RecordReplayTest : public WindowTest {
  protected:
    // A press, a drag and a release on the middle of a sensor's bar frame.
    void drag_bar(std::int32_t sensor, float down_by) {
        auto& in = window_->input();
        const float x = static_cast<float>(property("frameADC", sensor, "Left")) + 10.5f;
        const float y = static_cast<float>(property("frameADC", sensor, "Top")) + 20;
        in.pointer(PointerAction::Down, 1, 0, x, y);
        elapse(40);
        in.pointer(PointerAction::Move, 1, 0, x, y + down_by / 2);
        elapse(35, 7);
        in.pointer(PointerAction::Move, 1, 0, x, y + down_by);
        in.pointer(PointerAction::Up, 1, 0, x, y + down_by);
    }
};

TEST_F(RecordReplayTest, ARecordedSessionReplaysHeadlessToTheSameState) {
    // A script played in the window starts the wheels; what it does is recorded too.
    window_->start_simulation();
    window_->player().set_lines({"SimMacroCall 9 [0, 200, 255, 56] 0& Empty 0&", "advance 250",
                                 "SimMacroCall 10 [165] 0& Empty 0&", "Refresh"});
    window_->player().play();
    elapse(400, 9);
    ASSERT_FALSE(window_->player().playing());
    EXPECT_TRUE(window_->player().failures().empty());

    drag_bar(0, 30.5f);
    elapse(123, 11);
    drag_bar(3, -12);
    elapse(61);
    window_->input().click(element("chkSwitchLeft"));
    window_->input().click(element("chkLineRight"));
    for (int i = 0; i < 3; ++i) {
        window_->input().arrow(element("updownADC", 2), true);
        elapse(17);
    }
    window_->input().arrow(element("updownADC", 4), false);
    auto dialog = window_->make_properties();
    ASSERT_NE(dialog, nullptr);
    type_into(*dialog, "txtiThreshF", "77");
    elapse(200, 13);
    dialog->ok();
    elapse(777, 19);

    const std::string script = dir_.path() + "/session.console";
    ASSERT_TRUE(window_->save_recording(script));
    const auto expected = state_of(window_->session());

    std::ostringstream answers;
    console::Console replay(answers);
    ASSERT_TRUE(replay.session().load_module(KESTRONE_MODULE));
    replay.start();
    std::ifstream in(script);
    replay.run(in);
    EXPECT_EQ(answers.str().find("fail"), std::string::npos) << answers.str();
    const auto got = state_of(replay.session());
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_EQ(got[i], expected[i]);
    // The session did change: the recording is not of nothing.
    EXPECT_NE(field("iWheelPhase", 0), 0);
    const auto& lines = window_->recorder().lines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "page put txtiThreshF.Text = \"77\""),
              lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "arrow updownADC(2) up"), lines.end());
}

TEST_F(RecordReplayTest, InputThePanelRefusesIsNotRecorded) {
    const auto before = window_->recorder().lines().size();
    window_->services().set_box_handler([&](QWidget* box) {
        // Behind the box the panel takes no input.
        EXPECT_EQ(window_->input().click(element("chkSwitchLeft")), kestrone::S_FALSE);
        box->close();
    });
    std::vector<Variant> args{Variant::long_(0), Variant::long_(5)};
    Variant result;
    window_->session().call(*host::ComponentSession::find_operation("Port", true), args, &result);
    EXPECT_EQ(window_->recorder().lines().size(), before);
    EXPECT_EQ(property("chkSwitchLeft", -1, "Value"), 0);
}

}  // namespace
}  // namespace window_testing
