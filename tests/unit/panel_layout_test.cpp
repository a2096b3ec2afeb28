// The panel's elements as its data give them, before start-up moves the bars and wheel lines:
// every element's container, stacking, place and the figures of its kind, against the layout's
// tables written out anew here.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <set>
#include <string>

#include "panel/panel_model.h"

namespace {

using Box = std::array<float, 4>;  // Left, Top, Width, Height in twips

struct Place {
    std::string name;
    int index;
    std::string frame;  // "" for the panel itself
    int frame_index;
    Box box;
};

// Each container's elements front to back.
std::vector<Place> layout_places() {
    std::vector<Place> out;
    const auto add = [&](const std::string& frame, int frame_index, const std::string& name,
                         int index, Box box) {
        out.push_back({name, index, frame, frame_index, box});
    };
    struct Row {
        const char* name;
        int index;
        float left, top, width, height;
    };
    const Row top[] = {{"Frame1", -1, 1230, 1020, 2790, 855},
                       {"frameMotor", 1, 3990, 2835, 1170, 1395},
                       {"frameMotor", 0, 120, 2835, 1170, 1395},
                       {"frameADC", 4, 3210, 1890, 1950, 900},
                       {"frameADC", 3, 2190, 1890, 900, 1755},
                       {"frameADC", 1, 4320, 0, 840, 1875},
                       {"frameADC", 2, 120, 1890, 1950, 900},
                       {"frameADC", 0, 120, 0, 840, 1875},
                       {"frameSwitches", -1, 975, 0, 1170, 930},
                       {"frameLineFollowers", -1, 3135, 0, 1170, 930},
                       {"Picture1", -1, 1365, 3645, 2505, 705},
                       {"frameDirImages", -1, 2160, -60, 960, 1350},
                       {"Timer1", 0, 0, 0, 0, 0},
                       {"Timer1", 1, 0, 0, 0, 0}};
    for (const Row& r : top)
        add("", -1, r.name, r.index, {r.left, r.top, r.width, r.height});
    const char* const parts[] = {"updownADC", "imSlideBar", "lblADCVal", "Shape1", "imSlideBase"};
    const Box sensors[5][5] = {{{30, 1365, 255, 465},
                                {195, 570, 420, 150},
                                {420, 1575, 270, 195},
                                {315, 1530, 480, 300},
                                {375, 225, 180, 1200}},
                               {{30, 1365, 255, 465},
                                {255, 525, 420, 150},
                                {420, 1575, 270, 195},
                                {315, 1530, 480, 300},
                                {375, 225, 180, 1200}},
                               {{1410, 615, 495, 240},
                                {645, 225, 150, 420},
                                {1530, 300, 270, 195},
                                {1425, 255, 480, 300},
                                {90, 435, 1200, 180}},
                               {{30, 1215, 255, 465},
                                {255, 525, 420, 150},
                                {450, 1470, 270, 195},
                                {360, 1410, 480, 300},
                                {375, 225, 180, 1080}},
                               {{1410, 615, 495, 240},
                                {570, 315, 150, 420},
                                {1530, 300, 270, 195},
                                {1425, 255, 480, 300},
                                {90, 435, 1200, 180}}};
    for (int i = 0; i < 5; ++i)
        for (int k = 0; k < 5; ++k)
            add("frameADC", i, parts[k], i, sensors[i][k]);
    const std::array<float, 2> lines[22] = {
        {75, 240}, {75, 285},  {60, 360}, {60, 810}, {60, 555},  {60, 975}, {75, 630}, {75, 675},
        {60, 750}, {60, 1200}, {60, 945}, {60, 930}, {75, 1185}, {60, 735}, {75, 660}, {75, 615},
        {60, 960}, {60, 540},  {60, 795}, {60, 345}, {75, 270},  {75, 225}};
    const std::pair<const char*, Box> motor[] = {
        {"imageStopped", {585, 840, 390, 390}}, {"lblSpeed", {570, 255, 435, 195}},
        {"lblSpeedVal", {495, 510, 570, 255}},  {"imageUp", {585, 840, 390, 390}},
        {"imageDown", {585, 840, 390, 390}},
    };
    for (int m = 0; m < 2; ++m) {
        const auto add_lines = [&] {
            for (int k = 11 * m; k < 11 * m + 11; ++k)
                add("frameMotor", m, "WheelLine", k, {lines[k][0], lines[k][1], 405, 15});
        };
        if (m == 0) add_lines();
        for (const auto& [name, box] : motor)
            add("frameMotor", m, name, m, box);
        if (m == 1) add_lines();
        add("frameMotor", m, "WheelBase", m, {45, 195, 435, 1140});
    }
    for (int i = 0; i < 8; ++i)
        add("Frame1", -1, "imageLedOn", i, {60.0f + 330 * (7 - i), 165, 345, 405});
    for (int i = 0; i < 8; ++i)
        add("Frame1", -1, "imageLedOff", i, {60.0f + 330 * (7 - i), 180, 345, 390});
    for (int k = 8; k < 16; ++k)
        add("Frame1", -1, "lblLED", k,
            {180.0f + 330 * (k - 8), k == 15 ? 555.0f : 570.0f, 90, 195});
    add("frameSwitches", -1, "chkSwitchRight", -1, {615, 195, 480, 675});
    add("frameSwitches", -1, "chkSwitchLeft", -1, {75, 195, 480, 675});
    add("frameLineFollowers", -1, "chkLineRight", -1, {615, 195, 480, 675});
    add("frameLineFollowers", -1, "chkLineLeft", -1, {75, 195, 480, 675});
    for (const int k : {8, 7, 6, 5, 4, 3, 2, 1, 0, 12, 11, 10, 9})
        add("frameDirImages", -1, "imDirection", k, {0, 0, 960, 1080});
    return out;
}

TEST(PanelLayout, EveryElementStandsWhereTheLayoutPutsIt) {
    const panel::Panel p;
    const std::vector<Place> places = layout_places();
    ASSERT_EQ(static_cast<int>(places.size()), p.count());
    const std::set<std::string> hidden{"imageUp", "imageDown", "imageLedOn"};
    const std::set<std::string> centred{"lblADCVal", "lblSpeed", "lblSpeedVal"};
    const std::set<std::string> bordered{"imageStopped", "imageUp", "imageDown", "lblSpeedVal"};
    // Colours as the runtime writes them: 0x00BBGGRR, or 0x80000000 + a system colour's number.
    constexpr std::uint32_t kFace = 0x8000000F, kButtonText = 0x80000012;
    constexpr std::pair<std::uint32_t, std::uint32_t> kWindow{0x80000008, 0x80000005};
    const std::map<std::string, std::pair<std::uint32_t, std::uint32_t>> colours{
        {"lblADCVal", {0x0000FF00, kFace}}, {"Shape1", {0x00008080, kFace}},
        {"lblSpeedVal", kWindow},           {"chkSwitchLeft", kWindow},
        {"chkSwitchRight", kWindow},        {"chkLineLeft", kWindow},
        {"chkLineRight", kWindow}};
    std::map<int, int> in_front;  // by container: the elements met so far
    for (const Place& at : places) {
        SCOPED_TRACE(at.name + "(" + std::to_string(at.index) + ")");
        const int id = p.find(at.name, at.index);
        ASSERT_GE(id, 0);
        const kestrone::ElementInfo& e = p.at(id);
        const int container = at.frame.empty() ? -1 : p.find(at.frame, at.frame_index);
        EXPECT_EQ(e.container, container);
        EXPECT_EQ(e.z_order, in_front[container]++);
        // The panel's own elements are in its scale, pixels; a frame's children keep twips.
        const float unit = container < 0 ? 15.0f : 1.0f;
        EXPECT_EQ((Box{e.left, e.top, e.width, e.height}),
                  (Box{at.box[0] / unit, at.box[1] / unit, at.box[2] / unit, at.box[3] / unit}));
        const bool reversed = at.name == "updownADC" && at.index == 2;
        const bool arrows = at.name == "updownADC";
        EXPECT_EQ(
            (std::array{e.min, e.max, e.increment}),
            (std::array{reversed ? 1023 : 0, arrows && !reversed ? 1023 : 0, arrows ? 1 : 0}));
        EXPECT_EQ(e.interval, at.name == "Timer1" ? 100 : 0);
        EXPECT_EQ(e.visible, !hidden.count(at.name));
        EXPECT_EQ(e.stretch, at.name == "imSlideBase" && at.index == 3);
        EXPECT_EQ(e.alignment, centred.count(at.name) ? 2 : 0);
        EXPECT_EQ(e.border_style, bordered.count(at.name) ? 1 : 0);
        EXPECT_EQ(e.back_transparent, at.name == "lblADCVal" || at.name == "Shape1");
        const auto colour = colours.find(at.name);
        EXPECT_EQ(std::pair(e.fore_colour, e.back_colour),
                  colour == colours.end() ? std::pair(kButtonText, kFace) : colour->second);
    }
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

}  // namespace
