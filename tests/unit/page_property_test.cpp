// The property page against a real control, reached by name as the frame's page reaches it, and
// as a view builds and refreshes it: widgets with their places in pixels and their values, and
// the widgets that changed since a revision.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "host/property_page_object.h"
#include "host_fixture.h"

namespace {

using host_testing::Robot;
using kestrone::ComPtr;
using kestrone::HRESULT;
using kestrone::Variant;
using kestrone::WidgetInfo;
using kestrone::WidgetKind;
using testing::UnorderedElementsAre;

class Page {
  public:
    Page() {
        kestrone::IKestronePropertyPage* raw = nullptr;
        EXPECT_EQ(rovanta::PropertyPageObject::create(platform::ModuleFacts{}, &raw),
                  kestrone::S_OK);
        page_ = ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
        std::int32_t count = 0;
        EXPECT_EQ(page_->GetWidgetCount(&count), kestrone::S_OK);
        for (std::int32_t i = 0; i < count; ++i)
            widgets.push_back(widget(i));
    }
    HRESULT select(std::vector<kestrone::IUnknown*> controls) {
        return page_->SetSelectedControls(controls.data(),
                                          static_cast<std::int32_t>(controls.size()));
    }
    Variant get(const std::string& widget, const std::string& property) {
        Variant v;
        EXPECT_EQ(page_->GetProperty(widget, property, &v), kestrone::S_OK)
            << widget << "." << property;
        return v;
    }
    std::string text(const std::string& widget, const std::string& property = "Text") {
        return get(widget, property).as_string();
    }
    HRESULT put(const std::string& widget, const std::string& property, Variant v) {
        return page_->UserPut(widget, property, v);
    }
    bool changed() {
        bool c = false;
        page_->GetChanged(&c);
        return c;
    }
    kestrone::IKestronePropertyPage* operator->() { return page_.get(); }
    WidgetInfo widget(std::int32_t index) {
        WidgetInfo info;
        EXPECT_EQ(page_->GetWidget(index, &info), kestrone::S_OK);
        return info;
    }
    std::int32_t index_of(const std::string& name) const {
        for (std::size_t i = 0; i < widgets.size(); ++i)
            if (widgets[i].name == name) return static_cast<std::int32_t>(i);
        return -1;
    }
    WidgetInfo named(const std::string& name) { return widget(index_of(name)); }
    std::uint64_t revision() {
        std::uint64_t r = 0;
        EXPECT_EQ(page_->GetRevision(&r), kestrone::S_OK);
        return r;
    }
    // The names of the widgets changed after `since`.
    std::vector<std::string> changed(std::uint64_t since) {
        std::vector<std::int32_t> indices{99};
        std::uint64_t now = 0;
        EXPECT_EQ(page_->GetChangedWidgets(since, &indices, &now), kestrone::S_OK);
        EXPECT_EQ(now, revision());
        std::vector<std::string> names;
        for (std::int32_t i : indices)
            names.push_back(widgets[static_cast<std::size_t>(i)].name);
        return names;
    }

    std::vector<WidgetInfo> widgets;

  private:
    ComPtr<kestrone::IKestronePropertyPage> page_;
};

std::int16_t setting(Robot& robot, const char* name) {
    return robot.core().GetSetting(*rovanta::find_setting(name)).as_integer();
}
void let(Robot& robot, const char* name, Variant v) {
    robot.core().LetSetting(*rovanta::find_setting(name), v);
}

TEST(PropertyPage, AnyNonZeroReturnTypeShowsIntAndAppliesAsOne) {
    for (std::int16_t v : {-1, 7, 1}) {
        Robot robot(host_testing::kNoPins);
        let(robot, "bReturnInt", Variant::integer(v));
        Page page;
        ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
        EXPECT_EQ(page.get("optInt", "Value"), Variant::boolean(true)) << v;
        ASSERT_EQ(page->Apply(), kestrone::S_OK);
        EXPECT_EQ(setting(robot, "bReturnInt"), 1);
        EXPECT_EQ(robot.core().sensors.iADCMax, 1023);
    }
}

// Threshold texts go through the runtime's text-to-Integer conversion; the first that fails
// ends the Apply there.
TEST(PropertyPage, ThresholdTextsConvertOrStopTheApply) {
    struct Case {
        const char* r_text;
        const char* f_text;
        HRESULT status;
        std::int16_t r, f;  // iThreshR and iThreshF afterwards
    };
    const HRESULT ok = kestrone::S_OK, mismatch = kestrone::basic_error_status(13),
                  overflow = kestrone::basic_error_status(6);
    // The conversion's own rules are the runtime's, checked with it; here that the page uses it,
    // and where a failure stops.
    const Case cases[] = {
        {"300", " 2.5 ", ok, 300, 2},         {"1e2", "3.5", ok, 100, 4},
        {"5", "abc", mismatch, 5, 200},       {"5", "32768", overflow, 5, 200},
        {"32767.5", "1", overflow, 200, 200},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.r_text) + " / " + c.f_text);
        Robot robot(host_testing::kNoPins);
        let(robot, "iThreshMic", Variant::integer(50));
        Page page;
        ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshR", "Text", Variant::string(c.r_text)), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshF", "Text", Variant::string(c.f_text)), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshL", "Text", Variant::string("11")), kestrone::S_OK);
        EXPECT_EQ(page->Apply(), c.status);
        EXPECT_EQ(setting(robot, "iThreshR"), c.r);
        EXPECT_EQ(setting(robot, "iThreshF"), c.f);
        EXPECT_EQ(setting(robot, "iThreshL"), c.status == ok ? 11 : 200);
        EXPECT_EQ(setting(robot, "iThreshMic"), c.status == ok ? 128 : 50);
    }
}

TEST(PropertyPage, TheSliderShowsItsSignedValueAndStaysInRange) {
    Robot robot(host_testing::kNoPins);
    Page page;
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    ASSERT_EQ(page->PutChanged(false), kestrone::S_OK);
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::long_(-100)), kestrone::S_OK);
    EXPECT_EQ(page.text("lblBiasVal", "Caption"), "-100");
    EXPECT_EQ(page.text("lblBiasLeft", "Caption"), "Bias left");
    EXPECT_TRUE(page.changed());
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::integer(250)), kestrone::S_OK);
    EXPECT_EQ(page.get("sldMotorBias", "Value"), Variant::long_(100));
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::string("-40")), kestrone::S_OK);
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(robot, "iMotorBias"), -40);
    // A bias past the slider's ends is shown at the nearer end, and so applied.
    let(robot, "iMotorBias", Variant::integer(500));
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    EXPECT_EQ(page.text("lblBiasVal", "Caption"), "100");
}

// What the clicks apply is the console's page test's; here the other button of the pair, and a
// grey check box, which is not ticked: it applies as 0.
TEST(PropertyPage, ClicksSetTheReturnTypeAndTheButtonWait) {
    Robot robot(host_testing::kNoPins);
    Page page;
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    ASSERT_EQ(page->UserClick("optInt"), kestrone::S_OK);
    EXPECT_EQ(page.get("optByte", "Value"), Variant::boolean(false));
    ASSERT_EQ(page.put("chkWaitForButton", "Value", Variant::integer(2)), kestrone::S_OK);
    ASSERT_EQ(page.put("optByte", "Value", Variant::boolean(true)), kestrone::S_OK);
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(robot, "bWaitForButton"), 0);
    EXPECT_EQ(setting(robot, "bReturnInt"), 0);
    EXPECT_EQ(robot.core().sensors.iADCMax, 255);
}

TEST(PropertyPage, OnlyTheFirstSelectedControlIsReadAndWritten) {
    Robot first(host_testing::kNoPins), second(host_testing::kNoPins);
    let(second, "iThreshR", Variant::integer(42));
    let(second, "iThreshMic", Variant::integer(5));
    Page page;
    ASSERT_EQ(page.select({first.unknown(), second.unknown()}), kestrone::S_OK);
    EXPECT_EQ(page.text("txtiThreshR"), "200");
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(second, "iThreshR"), 42);
    EXPECT_EQ(setting(second, "iThreshMic"), 5);
    EXPECT_EQ(setting(first, "bUseI2C"), 0);
}

// Before any selection the page shows its design; an empty selection has no element 0.
TEST(PropertyPage, RefusesWhatAUserCannotDo) {
    Page page;
    EXPECT_EQ(page.text("txtiThreshR"), "Text1");
    EXPECT_FALSE(page.changed());
    EXPECT_EQ(page.select({}), kestrone::basic_error_status(9));
    Variant v;
    EXPECT_EQ(page->GetProperty("txtNothing", "Text", &v), kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(page->GetProperty("optInt", "Text", &v), kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(page.put("lblVersion", "Caption", Variant::string("v9")),
              kestrone::basic_error_status(438));
    EXPECT_EQ(page.put("chkWaitForButton", "Value", Variant::integer(3)),
              kestrone::basic_error_status(380));
    EXPECT_EQ(page.put("sldMotorBias", "Value", Variant::string("left")),
              kestrone::basic_error_status(13));
    // The page's first widget, a frame, is there for the user too, but is not theirs to change.
    for (const char* widget : {"txtiThreshR", "Frame3"})
        EXPECT_EQ(page->UserClick(widget), kestrone::basic_error_status(438)) << widget;
    EXPECT_EQ(page.put("Frame3", "Caption", Variant::string("x")),
              kestrone::basic_error_status(438));
    EXPECT_EQ(page.text("lblVersion", "Caption"), "v5.0.3");
}

// Every widget lies inside its container, and the page holds them all; a container is a frame
// that comes before what it holds.
TEST(PageView, WidgetsSitInsideTheirFramesInPixels) {
    Page view;
    float width = 0, height = 0;
    ASSERT_EQ(view->GetSize(&width, &height), kestrone::S_OK);
    EXPECT_FLOAT_EQ(width, 402);  // 6030 by 4620 twips
    EXPECT_FLOAT_EQ(height, 308);
    ASSERT_EQ(view.widgets.size(), 17u);
    std::set<std::int16_t> tab_indices;
    for (std::size_t i = 0; i < view.widgets.size(); ++i) {
        const WidgetInfo& w = view.widgets[i];
        SCOPED_TRACE(w.name);
        float outer_w = width, outer_h = height;
        if (w.container >= 0) {
            ASSERT_LT(static_cast<std::size_t>(w.container), i);
            const WidgetInfo& frame = view.widgets[static_cast<std::size_t>(w.container)];
            EXPECT_EQ(frame.kind, WidgetKind::Frame);
            outer_w = frame.width;
            outer_h = frame.height;
        }
        EXPECT_GT(w.left, 0);
        EXPECT_GT(w.top, 0);
        EXPECT_LE(w.left + w.width, outer_w);
        EXPECT_LE(w.top + w.height, outer_h);
        // The form is laid out on whole pixels, so a view places every edge exactly.
        for (float length : {w.left, w.top, w.width, w.height})
            EXPECT_EQ(length, static_cast<float>(static_cast<int>(length))) << length;
        tab_indices.insert(w.tab_index);
        // The program's view of the same place, in twips.
        Variant left, container;
        ASSERT_EQ(view->GetProperty(w.name, "Left", &left), kestrone::S_OK);
        EXPECT_EQ(left, Variant::single(w.left * 15));
        ASSERT_EQ(view->GetProperty(w.name, "Container", &container), kestrone::S_OK);
        EXPECT_EQ(container.as_string(),
                  w.container < 0 ? "" : view.widgets[static_cast<std::size_t>(w.container)].name);
    }
    WidgetInfo none;
    for (std::int32_t outside : {-1, 17})
        EXPECT_EQ(view->GetWidget(outside, &none), kestrone::basic_error_status(9)) << outside;
    EXPECT_EQ(tab_indices.size(), 17u);
    EXPECT_EQ(*tab_indices.rbegin(), 16);
    EXPECT_EQ(view.named("lblThreshF").alignment, kestrone::WidgetAlignment::Right);
    EXPECT_EQ(view.named("lblBiasVal").alignment, kestrone::WidgetAlignment::Center);
}

// What the console's page commands show is the same page; a view reads its slider's range.
TEST(PageView, WidgetsCarryTheirValues) {
    host_testing::Robot robot(host_testing::kNoPins);
    let(robot, "iThreshF", Variant::integer(-7));
    let(robot, "iMotorBias", Variant::integer(-35));
    Page view;
    ASSERT_EQ(view.select({robot.unknown()}), kestrone::S_OK);
    EXPECT_EQ(view.named("txtiThreshF").text, "-7");
    const WidgetInfo slider = view.named("sldMotorBias");
    EXPECT_EQ(slider.value, -35);
    EXPECT_EQ(slider.min, -100);
    EXPECT_EQ(slider.max, 100);
    EXPECT_EQ(slider.small_change, 1);
    EXPECT_EQ(slider.large_change, 5);
    EXPECT_EQ(slider.tick_frequency, 10);
    EXPECT_EQ(view.named("Frame2").caption, "Return type:");
    for (const WidgetInfo& w : view.widgets)
        EXPECT_TRUE(view.widget(view.index_of(w.name)).enabled) << w.name;
}

// One counter for the whole page: each edit marks just the widgets it changed.
TEST(PageView, TellsWhichWidgetsChangedSinceARevision) {
    host_testing::Robot robot(host_testing::kNoPins);
    Page view;
    EXPECT_THAT(view.changed(0), UnorderedElementsAre("lblVersion"));
    ASSERT_EQ(view.select({robot.unknown()}), kestrone::S_OK);
    // The slider stays at 0, so its caption keeps its "0".
    EXPECT_THAT(view.changed(1), UnorderedElementsAre("txtiThreshR", "txtiThreshF", "txtiThreshL",
                                                      "optByte", "chkWaitForButton"));

    std::uint64_t since = view.revision();
    ASSERT_EQ(view->UserPut("txtiThreshL", "Text", Variant::string("200")), kestrone::S_OK);
    EXPECT_EQ(view.revision(), since);  // the same text is no change
    ASSERT_EQ(view->UserPut("txtiThreshL", "Text", Variant::string("17")), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("txtiThreshL"));
    EXPECT_EQ(view.named("txtiThreshL").revision, view.revision());

    since = view.revision();
    ASSERT_EQ(view->UserClick("optInt"), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("optByte", "optInt"));
    since = view.revision();
    ASSERT_EQ(view->UserPut("sldMotorBias", "Value", Variant::long_(-60)), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("sldMotorBias", "lblBiasVal"));
    since = view.revision();
    ASSERT_EQ(view->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("chkWaitForButton"));
    EXPECT_EQ(view.named("chkWaitForButton").value, 0);
    EXPECT_TRUE(view.changed(view.revision()).empty());
    // A click ticks a clear box, and a grey one too.
    ASSERT_EQ(view->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_EQ(view.named("chkWaitForButton").value, 1);
    ASSERT_EQ(view->UserPut("chkWaitForButton", "Value", Variant::integer(2)), kestrone::S_OK);
    ASSERT_EQ(view->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_EQ(view.named("chkWaitForButton").value, 1);
}

}  // namespace
