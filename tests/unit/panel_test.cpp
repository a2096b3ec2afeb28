// The headless panel: pointer delivery with capture, check boxes and arrows, the timers on the
// panel's clock, resizing, and the properties by name.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>
#include <string>

#include "panel/properties.h"
#include "simulation_fixture.h"

namespace {

using kestrone::PointerAction;
using kestrone::S_OK;
using kestrone::Variant;
using sim_testing::SimRobot;

TEST(PanelPointer, APressedElementKeepsTheMovesUntilTheRelease) {
    SimRobot robot;
    panel::Panel& p = robot.panel();
    const int focus = p.focus();
    p.pointer(PointerAction::Down, 1, 0, 20, 60);  // frame twips y 900: bar at 825
    EXPECT_EQ(robot.el("imSlideBar", 0).top, 825.0f);
    EXPECT_EQ(p.focus(), focus);                       // a frame takes no focus
    p.pointer(PointerAction::Move, 1, 0, 3000, 1e6f);  // far outside, still captured
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 0);
    EXPECT_EQ(robot.el("imSlideBar", 0).top, 1350.0f);
    p.pointer(PointerAction::Move, 1, 0, 20, -50);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 255);
    p.pointer(PointerAction::Up, 1, 0, 20, -50);
    EXPECT_EQ(p.captured(), -1);
    // A drag that begins on the bar: its own coordinates, summed with its place that moves.
    p.pointer(PointerAction::Down, 1, 0, 30, 20);  // on the bar at Top 225 (px 15 to 25)
    p.pointer(PointerAction::Move, 1, 0, 30, 40);
    EXPECT_EQ(robot.el("imSlideBar", 0).top, 225.0f + 20 * 15);
    p.pointer(PointerAction::Up, 1, 0, 30, 40);
    // Unpressed, a move far away reaches nothing.
    p.pointer(PointerAction::Move, 1, 0, 3000, 3000);
    EXPECT_EQ(robot.el("imSlideBar", 0).top, 525.0f);
}

TEST(PanelPointer, CheckBoxesClickOnReleaseArrowsOnPress) {
    SimRobot robot;
    panel::Panel& p = robot.panel();
    p.pointer(PointerAction::Down, 1, 0, 80, 30);
    EXPECT_FALSE(robot.r().pin_table.Pins(8).SimValue);
    p.pointer(PointerAction::Up, 1, 0, 80, 30);
    EXPECT_TRUE(robot.r().pin_table.Pins(8).SimValue);
    EXPECT_EQ(robot.el("chkSwitchLeft").check_value, 1);
    p.pointer(PointerAction::Down, 1, 0, 80, 30);
    p.pointer(PointerAction::Up, 1, 0, 200, 200);  // released elsewhere: no click
    EXPECT_EQ(robot.el("chkSwitchLeft").check_value, 1);
    // The upper arrow of updownADC(0), then the lower one.
    p.pointer(PointerAction::Down, 1, 0, 11, 95);
    p.pointer(PointerAction::Up, 1, 0, 11, 95);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 1);
    p.pointer(PointerAction::Down, 1, 0, 11, 120);
    EXPECT_EQ(robot.r().sensors.lADCVal[0], 0);
}

class TickLog : public panel::PanelEvents {
  public:
    void panel_event(const panel::Element* e, panel::Event ev, const panel::MouseArgs*) override {
        if (ev == panel::Event::Timer) ticks.push_back(e->index);
    }
    std::vector<int> ticks;
};

TEST(PanelTimers, TicksComeInTimeOrderAndRestartWithTheirInterval) {
    panel::Panel p;
    TickLog log;
    p.set_sink(&log);
    const int t0 = p.ids().Timer1[0], t1 = p.ids().Timer1[1];
    struct Step {
        int interval0, interval1;  // -1: not written
        std::int64_t advance;
        std::vector<int> ticks;
    };
    const Step steps[] = {
        {-1, -1, 99, {}},
        {-1, -1, 151, {0, 1, 0, 1}},  // 100 and 200: ties go to the lower index
        {30, -1, 60, {0, 1, 0}},      // at 250: 280, then timer 1 at 300, then 310
        {30, -1, 0, {}},              // advance 0 delivers nothing
        {0, 7, 20, {1, 1}},           // 0 stops timer 0; timer 1 restarts at 310
        {65535, 0, 65535, {0}},
        {0, 1, 3, {1, 1, 1}},  // the shortest interval
    };
    for (const Step& s : steps) {
        if (s.interval0 >= 0) p.set_interval(t0, s.interval0);
        if (s.interval1 >= 0) p.set_interval(t1, s.interval1);
        log.ticks.clear();
        EXPECT_EQ(p.advance_to(p.now() + s.advance, false),
                  static_cast<std::int64_t>(s.ticks.size()));
        EXPECT_EQ(log.ticks, s.ticks) << "advance " << s.advance;
    }
    // The same interval again restarts the period but is no change of the element.
    const std::uint64_t seen = p.revision();
    p.set_interval(t1, 1);
    EXPECT_EQ(p.revision(), seen);
    p.set_interval(t1, 5);
    EXPECT_GT(p.revision(), seen);
    EXPECT_THROW(p.set_interval(t0, 65536), vb::BasicError);
    EXPECT_THROW(p.set_interval(t0, -1), vb::BasicError);
    EXPECT_THROW(p.tick(2), vb::BasicError);
}

TEST(PanelTimers, AHoldMovesTheBeatOnAndKeepsOneTickATimer) {
    panel::Panel p;
    TickLog log;
    p.set_sink(&log);
    const int t0 = p.ids().Timer1[0], t1 = p.ids().Timer1[1];
    p.set_interval(t0, 30);  // due at 30, 60, ... ; timer 1 at 100, 200, ...
    EXPECT_EQ(p.advance_to(250, true), 0);
    EXPECT_EQ(p.now(), 250);
    EXPECT_TRUE(log.ticks.empty());
    EXPECT_EQ(p.kept_tick(), 0);
    // Free again, and the clock asked to go back: it stays, and what was kept comes (then the
    // old beat goes on, as the hold's own test shows).
    EXPECT_EQ(p.advance_to(100, false), 2);
    EXPECT_EQ(p.now(), 250);
    EXPECT_EQ(log.ticks, (std::vector<int>{0, 1}));

    // A timer restarted or stopped while it waits owes nothing; a stopped one keeps nothing.
    p.set_timer_enabled(t1, false);
    EXPECT_EQ(p.advance_to(400, true), 0);
    EXPECT_EQ(p.kept_tick(), 0);
    p.set_interval(t0, 30);
    EXPECT_EQ(p.kept_tick(), -1);
    p.keep_tick(1);
    EXPECT_EQ(p.kept_tick(), 1);
    p.set_timer_enabled(t1, true);
    EXPECT_EQ(p.kept_tick(), -1);
    EXPECT_THROW(p.keep_tick(2), vb::BasicError);
}

TEST(PanelTimers, TheClockEndsRatherThanWraps) {
    panel::Panel p;
    TickLog log;
    p.set_sink(&log);
    constexpr std::int64_t kEnd = INT64_MAX;
    // Held to 150 short of the end: both timers' next ticks come at ...700, 107 before it.
    EXPECT_EQ(p.advance_to(kEnd - 150, true), 0);
    std::int64_t due = 0;
    int timer = -1;
    ASSERT_TRUE(p.next_tick(&due, &timer));
    EXPECT_EQ(due, kEnd - 107);
    // The two kept ticks, both timers at 107 and at 7 before the end, and no more: the next
    // would pass the end.
    EXPECT_EQ(p.advance_to(kEnd, false), 6);
    EXPECT_EQ(p.now(), kEnd);
    EXPECT_FALSE(p.next_tick(&due, &timer));
    EXPECT_EQ(p.advance_to(kEnd, false), 0);
    // Restarted at the end, a timer never comes due.
    p.set_interval(p.ids().Timer1[0], 1);
    EXPECT_FALSE(p.next_tick(&due, &timer));
}

// The elements changed after a moment of the counter, and only those: the first element too.
TEST(PanelChanges, AreListedSinceAMomentOfTheCounter) {
    panel::Panel p;
    const std::uint64_t start = p.revision();
    std::vector<std::int32_t> ids{7};
    p.changed_since(start, ids);
    EXPECT_TRUE(ids.empty());
    p.set_visible(0, false);
    p.set_caption(p.ids().lblADCVal[3], "7");
    const std::uint64_t middle = p.revision();
    p.set_left(p.ids().WheelLine[21], 3);
    p.changed_since(start, ids);
    EXPECT_EQ(ids, (std::vector<std::int32_t>{0, p.ids().lblADCVal[3], p.ids().WheelLine[21]}));
    p.changed_since(middle, ids);
    EXPECT_EQ(ids, std::vector<std::int32_t>{p.ids().WheelLine[21]});
}

TEST(PanelSize, AnySizeComesBackToTheRightMotorsCorner) {
    SimRobot robot;
    kestrone::IKestronePanel* view = &robot.view();
    for (auto [w, h] : {std::pair{5160.f, 4230.f},
                        {9000.f, 9000.f},
                        {15.f, 0.f},
                        {5160.f, 100.f},
                        {1e30f, 4230.f}}) {
        ASSERT_EQ(view->SetSize(w, h), S_OK);
        float tw = 0, th = 0;
        view->GetSize(&tw, &th);
        EXPECT_EQ(tw, 5160.0f);
        EXPECT_EQ(th, 4230.0f);
    }
    EXPECT_EQ(view->SetSize(-5, 10), kestrone::basic_error_status(vb::kInvalidPropertyValue));
}

TEST(PanelProperties, ReadAndWriteAsAProgramWould) {
    SimRobot robot;
    kestrone::IKestronePanelInspection* inspect = &robot.inspect();
    const std::int32_t one = 1, thirty = 30, eight = 8;
    Variant v;
    EXPECT_EQ(inspect->GetProperty("frameMotor", &one, "Left", &v), S_OK);
    EXPECT_EQ(v, Variant::single(266));
    EXPECT_EQ(inspect->GetProperty("lblLED", &eight, "Caption", &v), S_OK);
    EXPECT_EQ(v, Variant::string("7"));
    EXPECT_EQ(inspect->GetProperty("chkSwitchLeft", nullptr, "Value", &v), S_OK);
    EXPECT_EQ(v, Variant::integer(0));
    EXPECT_EQ(inspect->GetProperty("WheelLine", &thirty, "Top", &v),
              kestrone::basic_error_status(vb::kControlArrayElementMissing));
    EXPECT_EQ(inspect->GetProperty("WheelLine", &one, "Caption", &v), kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(inspect->GetProperty("Nothing", nullptr, "Top", &v), kestrone::DISP_E_UNKNOWNNAME);
    // The panel's own: its size in twips, and in its own scale, pixels.
    for (const auto& [property, value] : {std::pair{"Width", Variant::single(5160)},
                                          {"Height", Variant::single(4230)},
                                          {"ScaleWidth", Variant::single(344)},
                                          {"ScaleHeight", Variant::single(282)},
                                          {"ScaleMode", Variant::integer(3)}}) {
        EXPECT_EQ(inspect->GetProperty("UserControl", nullptr, property, &v), S_OK) << property;
        EXPECT_EQ(v, value) << property;
    }
    EXPECT_EQ(inspect->GetProperty("UserControl", nullptr, "Scale", &v),
              kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(inspect->GetProperty("Nothing", &one, "Top", &v), kestrone::DISP_E_UNKNOWNNAME);
    struct Put {
        const char* element;
        const std::int32_t* index;
        const char* property;
        Variant value;
        kestrone::HRESULT status;
    };
    const Put puts[] = {
        {"Timer1", &one, "Interval", Variant::long_(70000),
         kestrone::basic_error_status(vb::kInvalidPropertyValue)},
        {"WheelLine", &one, "Left", Variant::string("abc"),
         kestrone::basic_error_status(vb::kTypeMismatch)},
        {"WheelLine", &one, "Name", Variant::string("x"),
         kestrone::basic_error_status(vb::kPropertyReadOnly)},
        {"chkLineLeft", nullptr, "Value", Variant::integer(3),
         kestrone::basic_error_status(vb::kInvalidPropertyValue)},
        {"chkLineLeft", nullptr, "Value", Variant::integer(1), S_OK},  // raises Click
        {"updownADC", &one, "Value", Variant::long_(5000), S_OK},      // to the range, then Change
        {"UserControl", nullptr, "ScaleMode", Variant::integer(1),
         kestrone::basic_error_status(vb::kPropertyReadOnly)},
        {"UserControl", nullptr, "Scale", Variant::integer(1), kestrone::DISP_E_UNKNOWNNAME},
    };
    for (const Put& p : puts)
        EXPECT_EQ(inspect->PutProperty(p.element, p.index, p.property, p.value), p.status)
            << p.element << "." << p.property;
    EXPECT_TRUE(robot.r().pin_table.Pins(10).SimValue);
    EXPECT_EQ(robot.r().sensors.lADCVal[1], 255);
    // A range's ends as written.
    EXPECT_EQ(inspect->PutProperty("updownADC", &one, "Min", Variant::long_(7)), S_OK);
    EXPECT_EQ(inspect->PutProperty("updownADC", &one, "Max", Variant::long_(300)), S_OK);
    EXPECT_EQ(robot.el("updownADC", 1).min, 7);
    EXPECT_EQ(robot.el("updownADC", 1).max, 300);
    EXPECT_EQ(robot.el("updownADC", 1).value, 255);
}

// Every tab index from the logo's 0 to the heading's 37 once; the order of those that take the
// focus is walked in the view's tests.
TEST(PanelLayout, EveryTabIndexComesOnce) {
    panel::Panel p;
    std::vector<int> stops;
    for (int id = 0; id < p.count(); ++id)
        if (p.at(id).tab_index >= 0) stops.push_back(p.at(id).tab_index);
    std::sort(stops.begin(), stops.end());
    std::vector<int> expected(38);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(stops, expected);
}

// The panel was drawn on a grid of whole pixels: at its design every element's edges lie on them,
// in the panel's pixels or, inside a frame, in whole multiples of 15 twips; and all is shown but
// the lit LEDs and the motors' moving signs.
TEST(PanelLayout, AtItsDesignEveryElementStandsOnWholePixels) {
    const panel::Panel p;
    const std::set<std::string> hidden{"imageLedOn", "imageUp", "imageDown"};
    for (int id = 0; id < p.count(); ++id) {
        const panel::Element& e = p.at(id);
        const float unit = e.container < 0 ? 1.0f : 15.0f;
        for (const float length : {e.left, e.top, e.width, e.height})
            EXPECT_EQ(std::fmod(length, unit), 0.0f) << e.name << "(" << e.index << ") " << length;
        EXPECT_EQ(e.visible, hidden.count(e.name) == 0) << e.name << "(" << e.index << ")";
    }
}

}  // namespace
