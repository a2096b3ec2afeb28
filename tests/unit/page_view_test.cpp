// The property page as a view builds and refreshes it: widgets with their places in pixels and
// their values, and the widgets that changed since a revision.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "host/property_page_object.h"
#include "host_fixture.h"

namespace {

using kestrone::ComPtr;
using kestrone::Variant;
using kestrone::WidgetInfo;
using kestrone::WidgetKind;
using testing::UnorderedElementsAre;

class View {
  public:
    View() {
        kestrone::IKestronePropertyPage* raw = nullptr;
        EXPECT_EQ(rovanta::PropertyPageObject::create(platform::ModuleFacts{}, &raw),
                  kestrone::S_OK);
        page = ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
        std::int32_t count = 0;
        EXPECT_EQ(page->GetWidgetCount(&count), kestrone::S_OK);
        for (std::int32_t i = 0; i < count; ++i)
            widgets.push_back(widget(i));
    }
    WidgetInfo widget(std::int32_t index) {
        WidgetInfo info;
        EXPECT_EQ(page->GetWidget(index, &info), kestrone::S_OK);
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
        EXPECT_EQ(page->GetRevision(&r), kestrone::S_OK);
        return r;
    }
    // The names of the widgets changed after `since`.
    std::vector<std::string> changed(std::uint64_t since) {
        std::vector<std::int32_t> indices{99};
        std::uint64_t now = 0;
        EXPECT_EQ(page->GetChangedWidgets(since, &indices, &now), kestrone::S_OK);
        EXPECT_EQ(now, revision());
        std::vector<std::string> names;
        for (std::int32_t i : indices)
            names.push_back(widgets[static_cast<std::size_t>(i)].name);
        return names;
    }

    ComPtr<kestrone::IKestronePropertyPage> page;
    std::vector<WidgetInfo> widgets;
};

// Every widget lies inside its container, and the page holds them all; a container is a frame
// that comes before what it holds.
TEST(PageView, WidgetsSitInsideTheirFramesInPixels) {
    View view;
    float width = 0, height = 0;
    ASSERT_EQ(view.page->GetSize(&width, &height), kestrone::S_OK);
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
        ASSERT_EQ(view.page->GetProperty(w.name, "Left", &left), kestrone::S_OK);
        EXPECT_EQ(left, Variant::single(w.left * 15));
        ASSERT_EQ(view.page->GetProperty(w.name, "Container", &container), kestrone::S_OK);
        EXPECT_EQ(container.as_string(),
                  w.container < 0 ? "" : view.widgets[static_cast<std::size_t>(w.container)].name);
    }
    WidgetInfo none;
    for (std::int32_t outside : {-1, 17})
        EXPECT_EQ(view.page->GetWidget(outside, &none), kestrone::basic_error_status(9)) << outside;
    EXPECT_EQ(tab_indices.size(), 17u);
    EXPECT_EQ(*tab_indices.rbegin(), 16);
    const WidgetInfo r = view.named("txtiThreshR");
    EXPECT_FLOAT_EQ(r.left, 100);  // 1500 twips
    EXPECT_FLOAT_EQ(r.top, 84);    // 1260 twips
    EXPECT_EQ(view.widgets[static_cast<std::size_t>(r.container)].name, "Frame1");
    EXPECT_EQ(view.named("lblThreshF").alignment, kestrone::WidgetAlignment::Right);
    EXPECT_EQ(view.named("lblBiasVal").alignment, kestrone::WidgetAlignment::Center);
}

TEST(PageView, WidgetsCarryTheirValues) {
    host_testing::Robot robot(host_testing::kNoPins);
    robot.core().LetSetting(*rovanta::find_setting("iThreshF"), Variant::integer(-7));
    robot.core().LetSetting(*rovanta::find_setting("iMotorBias"), Variant::integer(-35));
    robot.core().LetSetting(*rovanta::find_setting("bReturnInt"), Variant::integer(1));
    View view;
    kestrone::IUnknown* selected[] = {robot.unknown()};
    ASSERT_EQ(view.page->SetSelectedControls(selected, 1), kestrone::S_OK);
    EXPECT_EQ(view.named("txtiThreshF").text, "-7");
    EXPECT_EQ(view.named("txtiThreshL").text, "200");
    const WidgetInfo slider = view.named("sldMotorBias");
    EXPECT_EQ(slider.value, -35);
    EXPECT_EQ(slider.min, -100);
    EXPECT_EQ(slider.max, 100);
    EXPECT_EQ(slider.small_change, 1);
    EXPECT_EQ(slider.large_change, 5);
    EXPECT_EQ(slider.tick_frequency, 10);
    EXPECT_EQ(view.named("lblBiasVal").caption, "-35");
    EXPECT_EQ(view.named("optInt").value, -1);
    EXPECT_EQ(view.named("optByte").value, 0);
    EXPECT_EQ(view.named("chkWaitForButton").value, 1);
    EXPECT_EQ(view.named("Frame2").caption, "Return type:");
    for (const WidgetInfo& w : view.widgets)
        EXPECT_TRUE(view.widget(view.index_of(w.name)).enabled);
    Variant enabled;
    ASSERT_EQ(view.page->GetProperty("optInt", "Enabled", &enabled), kestrone::S_OK);
    EXPECT_EQ(enabled, Variant::boolean(true));
}

// One counter for the whole page: each edit marks just the widgets it changed.
TEST(PageView, TellsWhichWidgetsChangedSinceARevision) {
    host_testing::Robot robot(host_testing::kNoPins);
    View view;
    EXPECT_THAT(view.changed(0), UnorderedElementsAre("lblVersion"));
    kestrone::IUnknown* selected[] = {robot.unknown()};
    ASSERT_EQ(view.page->SetSelectedControls(selected, 1), kestrone::S_OK);
    // The slider stays at 0, so its caption keeps its "0".
    EXPECT_THAT(view.changed(1), UnorderedElementsAre("txtiThreshR", "txtiThreshF", "txtiThreshL",
                                                      "optByte", "chkWaitForButton"));

    std::uint64_t since = view.revision();
    ASSERT_EQ(view.page->UserPut("txtiThreshL", "Text", Variant::string("200")), kestrone::S_OK);
    EXPECT_EQ(view.revision(), since);  // the same text is no change
    ASSERT_EQ(view.page->UserPut("txtiThreshL", "Text", Variant::string("17")), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("txtiThreshL"));
    EXPECT_EQ(view.named("txtiThreshL").revision, view.revision());

    since = view.revision();
    ASSERT_EQ(view.page->UserClick("optInt"), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("optByte", "optInt"));
    since = view.revision();
    ASSERT_EQ(view.page->UserPut("sldMotorBias", "Value", Variant::long_(-60)), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("sldMotorBias", "lblBiasVal"));
    since = view.revision();
    ASSERT_EQ(view.page->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_THAT(view.changed(since), UnorderedElementsAre("chkWaitForButton"));
    EXPECT_EQ(view.named("chkWaitForButton").value, 0);
    EXPECT_TRUE(view.changed(view.revision()).empty());
    // A click ticks a clear box, and a grey one too.
    ASSERT_EQ(view.page->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_EQ(view.named("chkWaitForButton").value, 1);
    ASSERT_EQ(view.page->UserPut("chkWaitForButton", "Value", Variant::integer(2)), kestrone::S_OK);
    ASSERT_EQ(view.page->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_EQ(view.named("chkWaitForButton").value, 1);
}

}  // namespace
