// What a view reads to paint the panel: each element's box and clip in panel pixels, the paint
// order, styles and resolved colours, and the pictures as pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "panel/element_view.h"
#include "panel/picture_data.h"
#include "simulation_fixture.h"

namespace {

using kestrone::ElementStyle;
using kestrone::ElementView;
using kestrone::PanelRect;
using kestrone::Rgba;
using kestrone::S_OK;
using kestrone::Variant;
using sim_testing::SimRobot;

class ViewedRobot : public SimRobot {
  public:
    ElementView look(const char* name, int index = -1) {
        ElementView v;
        EXPECT_EQ(view().GetElementView(panel().find(name, index), &v), S_OK) << name;
        return v;
    }
    void put(const char* name, int index, const char* property, const Variant& value) {
        const std::int32_t i = index;
        ASSERT_EQ(inspect().PutProperty(name, index < 0 ? nullptr : &i, property, value), S_OK);
    }
    std::vector<std::int32_t> order() {
        std::vector<std::int32_t> ids;
        EXPECT_EQ(view().GetPaintOrder(&ids), S_OK);
        return ids;
    }
};

bool covers(const PanelRect& r, float x, float y) {
    return x >= r.left && x < r.left + r.width && y >= r.top && y < r.top + r.height;
}

TEST(PanelView, BoxesAndClipsAreInPanelPixelsAndFollowTheirFrames) {
    ViewedRobot robot;
    const PanelRect whole{0, 0, 344, 282};
    struct Case {
        const char* name;
        int index;
        PanelRect box, clip;
        bool shown = true;
    };
    const Case cases[] = {
        {"frameMotor", 1, {266, 189, 78, 93}, whole},
        {"imSlideBase", 0, {33, 15, 12, 80}, {8, 0, 56, 125}},
        {"imageLedOff", 7, {86, 80, 23, 26}, {82, 68, 186, 57}},
        {"imageLedOff", 0, {240, 80, 23, 26}, {82, 68, 186, 57}},
        {"frameMotor", 0, {8, 189, 78, 93}, whole},
        {"chkSwitchLeft", -1, {70, 13, 32, 45}, {65, 0, 78, 62}},
        {"chkSwitchRight", -1, {106, 13, 32, 45}, {65, 0, 78, 62}},
        {"chkLineLeft", -1, {214, 13, 32, 45}, {209, 0, 78, 62}},
        {"imageUp", 0, {47, 245, 26, 26}, {8, 189, 78, 93}},
        {"imageStopped", 1, {305, 245, 26, 26}, {266, 189, 78, 93}, false},
        {"imageDown", 0, {47, 245, 26, 26}, {8, 189, 78, 93}, false},
        {"lblLED", 8, {94, 106, 6, 13}, {82, 68, 186, 57}},
        {"Shape1", 4, {309, 143, 32, 20}, {214, 126, 130, 60}},
        {"lblLED", 15, {248, 105, 6, 13}, {82, 68, 186, 57}},
        // Cut at the panel's bottom edge, and at its top for the frame that starts above it.
        {"Picture1", -1, {91, 243, 167, 47}, whole},
        {"imDirection", 0, {144, -4, 64, 72}, {144, 0, 64, 86}},
    };
    for (const Case& c : cases) {
        const ElementView v = robot.look(c.name, c.index);
        EXPECT_EQ(v.box, c.box) << c.name << "(" << c.index << ")";
        EXPECT_EQ(v.clip, c.clip) << c.name << "(" << c.index << ")";
        EXPECT_EQ(v.shown, c.shown) << c.name;
    }
    // Captions sized to their text keep their left and top.
    EXPECT_EQ(robot.look("lblADCVal", 3).box.top, 224.0f);
    EXPECT_EQ(robot.look("lblADCVal", 2).box.left, 110.0f);
    EXPECT_EQ(robot.look("lblADCVal", 4).box.left, 316.0f);
    EXPECT_EQ(robot.look("lblADCVal", 4).box.height, 13.0f);
    // The lit LED, hidden, has its place all the same: a pixel higher and taller than the dark.
    EXPECT_EQ(robot.look("imageLedOn", 0).box, (PanelRect{240, 79, 23, 27}));
    // A bar moves in twips; a frame that moves takes its elements along.
    robot.put("imSlideBar", 0, "Top", Variant::single(725));
    EXPECT_EQ(robot.look("imSlideBar", 0).box.top, 725.0f / 15.0f);
    robot.put("frameADC", 0, "Left", Variant::single(20));
    EXPECT_EQ(robot.look("imSlideBase", 0).box.left, 45.0f);
    EXPECT_EQ(robot.look("imSlideBase", 0).clip.left, 20.0f);
    // A hidden frame hides what it holds, though each keeps its own Visible.
    robot.put("frameMotor", 0, "Visible", Variant::boolean(false));
    EXPECT_FALSE(robot.look("imageUp", 0).shown);
    EXPECT_TRUE(robot.el("imageUp", 0).visible);
    EXPECT_TRUE(robot.look("imageUp", 1).shown);
    EXPECT_FALSE(robot.look("imageDown", 1).shown);
    robot.put("Frame1", -1, "Visible", Variant::boolean(false));
    EXPECT_FALSE(robot.look("imageLedOff", 3).shown);
}

TEST(PanelView, PaintOrderPutsEachFrameBeforeItsElementsInTheirStacking) {
    ViewedRobot robot;
    const std::vector<std::int32_t> order = robot.order();
    std::map<int, int> rank;
    for (std::size_t i = 0; i < order.size(); ++i)
        rank[order[i]] = static_cast<int>(i);
    // Everything but the two timers, once each, with its place in the order in its view; and no
    // element twice under one name and index.
    ASSERT_EQ(rank.size(), order.size());
    std::set<std::pair<std::string, int>> names;
    for (int id = 0; id < robot.panel().count(); ++id)
        EXPECT_TRUE(names.emplace(robot.panel().at(id).name, robot.panel().at(id).index).second)
            << robot.panel().at(id).name << "(" << robot.panel().at(id).index << ")";
    EXPECT_EQ(order.size(), static_cast<std::size_t>(robot.panel().count() - 2));
    for (int id = 0; id < robot.panel().count(); ++id) {
        ElementView v;
        ASSERT_EQ(robot.view().GetElementView(id, &v), S_OK);
        EXPECT_EQ(v.paint_order, rank.count(id) ? rank[id] : -1) << robot.panel().at(id).name;
    }
    // A frame is followed at once by all of its elements, back to front.
    for (int id : order) {
        const panel::Element& e = robot.panel().at(id);
        for (std::size_t k = 0; k < e.children.size(); ++k)
            EXPECT_EQ(order[static_cast<std::size_t>(rank[id]) + 1 + k],
                      e.children[e.children.size() - 1 - k])
                << e.name;
    }
    auto before = [&](const char* back, int bi, const char* front, int fi) {
        return rank.at(robot.panel().find(back, bi)) < rank.at(robot.panel().find(front, fi));
    };
    EXPECT_EQ(order.front(), robot.panel().find("frameDirImages", -1));
    EXPECT_TRUE(before("imDirection", 9, "Frame1", -1));
    EXPECT_TRUE(before("imDirection", 12, "imDirection", 8));
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(before("Shape1", i, "lblADCVal", i));
        EXPECT_TRUE(before("imSlideBase", i, "imSlideBar", i));
    }
    for (int k = 0; k < 22; ++k)
        EXPECT_TRUE(before("WheelBase", k / 11, "WheelLine", k)) << k;
    EXPECT_TRUE(before("imageLedOff", 0, "imageLedOn", 0));
}

// What the pointer is on, and where on it: a frame and whatever a frame holds count in twips
// from their corner, an element on the panel itself in pixels.
TEST(PanelView, ThePointerFindsTheFrontmostPaintedBoxUnderIt) {
    ViewedRobot robot;
    robot.put("imSlideBar", 2, "Left", Variant::single(1000));   // between whole pixels
    robot.put("imageLedOff", 0, "Left", Variant::single(2600));  // partly beyond Frame1
    const std::vector<std::int32_t> order = robot.order();
    std::vector<ElementView> views(static_cast<std::size_t>(robot.panel().count()));
    for (int id : order)
        robot.view().GetElementView(id, &views[static_cast<std::size_t>(id)]);
    float twips = 0;
    ASSERT_EQ(robot.view().GetTwipsPerPixel(&twips), S_OK);
    int hits = 0;
    for (float y = -3.5f; y < 290; y += 2)
        for (float x = -3.5f; x < 350; x += 2) {
            int expected = -1;
            for (auto it = order.rbegin(); it != order.rend() && expected < 0; ++it) {
                const ElementView& v = views[static_cast<std::size_t>(*it)];
                // The plate is decoration: the pointer passes through it.
                if (v.shown && v.style != ElementStyle::Plate && covers(v.box, x, y) &&
                    covers(v.clip, x, y))
                    expected = *it;
            }
            float lx = 0, ly = 0;
            ASSERT_EQ(robot.panel().hit_test(x, y, &lx, &ly), expected) << x << "," << y;
            if (expected < 0) continue;
            ++hits;
            const panel::Element& e = robot.panel().at(expected);
            const float unit =
                e.kind == kestrone::ElementKind::Frame || e.container >= 0 ? twips : 1;
            const PanelRect& box = views[static_cast<std::size_t>(expected)].box;
            ASSERT_NEAR(lx, (x - box.left) * unit, 0.01f) << e.name << " at " << x << "," << y;
            ASSERT_NEAR(ly, (y - box.top) * unit, 0.01f) << e.name << " at " << x << "," << y;
        }
    EXPECT_GT(hits, 20000);
    float lx = 0, ly = 0;  // far beyond any edge
    EXPECT_EQ(robot.panel().hit_test(1e30f, -1e30f, &lx, &ly), -1);
}

Rgba rgb(std::uint32_t c) {
    return {static_cast<std::uint8_t>(c >> 16), static_cast<std::uint8_t>(c >> 8),
            static_cast<std::uint8_t>(c), 255};
}

TEST(PanelView, StylesAndColoursComeResolved) {
    ViewedRobot robot;
    const Rgba none{}, white = rgb(0xFFFFFF), black = rgb(0), face = rgb(0xECE9D8);
    struct Case {
        const char* name;
        int index;
        ElementStyle style;
        Rgba fore, back;
    };
    const Case cases[] = {
        {"frameDirImages", -1, ElementStyle::GroupFrame, black, face},
        {"lblSpeed", 0, ElementStyle::Label, black, face},
        {"chkLineRight", -1, ElementStyle::GraphicalCheckBox, black, white},
        {"updownADC", 4, ElementStyle::Arrows, black, face},
        {"imageDown", 0, ElementStyle::BorderedPicture, black, none},
        {"WheelBase", 1, ElementStyle::Picture, black, none},
        {"Picture1", -1, ElementStyle::PictureBox, black, face},
        {"Timer1", 0, ElementStyle::None, black, none},
    };
    for (const Case& c : cases) {
        const ElementView v = robot.look(c.name, c.index);
        EXPECT_EQ(v.style, c.style) << c.name;
        EXPECT_EQ(v.fore, c.fore) << c.name;
        EXPECT_EQ(v.back, c.back) << c.name;
        EXPECT_EQ(v.light, white) << c.name;
        EXPECT_EQ(v.shadow, rgb(0xACA899)) << c.name;
    }
    // A flat single line round the signs, none round the speed's label.
    EXPECT_EQ(robot.el("imageDown", 0).border_style, 1);
    EXPECT_EQ(robot.el("lblSpeed", 1).border_style, 0);
    Rgba back;
    ASSERT_EQ(robot.view().GetBackColour(&back), S_OK);
    EXPECT_EQ(back, face);
}

// At the panel's design: an image's box is its picture's size, bar one that stretches; a
// bordered sign is its picture and a pixel each side; a graphical check box has room for its
// picture above a line of text inside its edge; the logo's box holds the logo.
TEST(PanelView, EveryPictureFitsTheBoxThatShowsIt) {
    panel::Panel p;
    int stretched = 0;
    for (int id = 0; id < p.count(); ++id) {
        const panel::Element& e = p.at(id);
        const ElementView v = panel::element_view(p, id);
        const panel::PictureData* pic =
            panel::picture_data(static_cast<panel::PictureRole>(e.picture));
        if (e.picture == 0) {
            EXPECT_TRUE(v.style != ElementStyle::Picture &&
                        v.style != ElementStyle::BorderedPicture &&
                        v.style != ElementStyle::GraphicalCheckBox)
                << e.name;
            continue;
        }
        ASSERT_NE(pic, nullptr) << e.name;
        const auto w = static_cast<float>(pic->width), h = static_cast<float>(pic->height);
        const std::string what = e.name + "(" + std::to_string(e.index) + ")";
        switch (v.style) {
            case ElementStyle::Picture:
                EXPECT_EQ(v.box.width, w) << what;
                EXPECT_EQ(v.box.height == h, !e.stretch) << what;
                stretched += e.stretch;
                break;
            case ElementStyle::BorderedPicture:
                EXPECT_EQ(v.box.width, w + 2) << what;
                EXPECT_EQ(v.box.height, h + 2) << what;
                break;
            case ElementStyle::GraphicalCheckBox:
                EXPECT_LE(w, v.box.width - 2) << what;
                EXPECT_LE(h + kestrone::kTextCellHeight, v.box.height - 2) << what;
                break;
            case ElementStyle::PictureBox:
                EXPECT_LE(w, v.box.width) << what;
                EXPECT_LE(h, v.box.height) << what;
                break;
            default:
                ADD_FAILURE() << what << " has a picture it cannot show";
        }
    }
    EXPECT_EQ(stretched, 1);
    EXPECT_TRUE(p.at(p.find("imSlideBase", 3)).stretch);
}

// Each picture its own, opaque to its edges.
TEST(PanelView, PicturesComeAsPixelsEachItsOwn) {
    ViewedRobot robot;
    std::vector<std::vector<std::uint8_t>> seen;
    for (std::uint32_t role = 1; role <= 28; ++role) {
        std::int32_t w = 0, h = 0;
        std::vector<std::uint8_t> rgba;
        ASSERT_EQ(robot.view().GetPicture(role, &w, &h, &rgba), S_OK) << role;
        const panel::PictureData* data = panel::picture_data(static_cast<panel::PictureRole>(role));
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(w, data->width);
        EXPECT_EQ(h, data->height);
        ASSERT_EQ(rgba.size(), static_cast<std::size_t>(w * h * 4)) << role;
        EXPECT_TRUE(std::equal(rgba.begin(), rgba.end(), data->rgba)) << role;
        for (std::size_t alpha = 3; alpha < rgba.size(); alpha += 4)
            ASSERT_EQ(rgba[alpha], 255) << role << " is see-through at byte " << alpha;
        EXPECT_EQ(std::count(seen.begin(), seen.end(), rgba), 0) << role;
        seen.push_back(rgba);
    }
}

TEST(PanelView, BadArgumentsAreRefused) {
    ViewedRobot robot;
    kestrone::IKestronePanel& v = robot.view();
    ElementView view;
    std::vector<std::uint8_t> rgba;
    std::int32_t w = -1, h = -1;
    const std::int32_t count = robot.panel().count();
    EXPECT_EQ(v.GetElementView(-1, &view), kestrone::E_INVALIDARG);
    EXPECT_EQ(v.GetElementView(count, &view), kestrone::E_INVALIDARG);
    EXPECT_EQ(v.GetElementView(count - 1, &view), S_OK);
    EXPECT_EQ(robot.inspect().RaiseEvent("Timer1_Timer", nullptr, 1), kestrone::E_INVALIDARG);
    // An element that is there but takes no click or arrow: the runtime's invalid call.
    EXPECT_EQ(v.Click(0), kestrone::basic_error_status(vb::kInvalidCall));
    EXPECT_EQ(v.Arrow(0, true), kestrone::basic_error_status(vb::kInvalidCall));
    EXPECT_EQ(v.Arrow(count, true), kestrone::E_INVALIDARG);
    // None, one past the last heading, and a number whose low byte names the lit LED.
    for (std::uint32_t bad : {0u, 29u, 257u}) {
        EXPECT_EQ(v.GetPicture(bad, &w, &h, &rgba), kestrone::E_INVALIDARG) << bad;
        EXPECT_EQ(w, -1);
    }
}

}  // namespace
