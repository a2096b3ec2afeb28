// What moves on the panel, as the view paints it after the robot's macros and the user's input:
// every picture where the panel's view puts it, under whatever is painted after it, the wheel
// lines and the pressed switches.
#include <gtest/gtest.h>

#include <set>

#include "pixel_geometry.h"
#include "view_robot.h"

namespace {

using kestrone::ElementStyle;
using kestrone::PictureRole;
using kestrone::Variant;
using view_testing::count_ink;
using view_testing::mismatches;
using view_testing::rgb;
using view_testing::rgb_at;
using view_testing::ViewRobot;

constexpr std::int16_t kWriteLeds = 10, kDriveForwards = 4, kSpinLeft = 7;

// A small model of the painter: each shown picture at its box's top left (inside the line of a
// bordered one), cut at its box and clip and hidden by every element painted after it. How many
// pictures showed at least a pixel, each one as the model says.
int pictures_in_place(ViewRobot& robot) {
    const QImage image = robot.render();
    std::vector<std::int32_t> order;
    EXPECT_EQ(robot.panel().GetPaintOrder(&order), kestrone::S_OK);
    QRegion above;
    int seen = 0;
    for (auto id = order.rbegin(); id != order.rend(); ++id) {
        kestrone::ElementView v;
        kestrone::ElementInfo info;
        EXPECT_EQ(robot.panel().GetElementView(*id, &v), kestrone::S_OK);
        EXPECT_EQ(robot.panel().GetElement(*id, &info), kestrone::S_OK);
        if (!v.shown) continue;
        const QRect box = panelqt::pixel_rect(v.box), shows = box & panelqt::pixel_rect(v.clip);
        const int border = v.style == ElementStyle::BorderedPicture ? 1 : 0;
        if (info.picture != 0 && !info.stretch && v.style != ElementStyle::GraphicalCheckBox) {
            const QImage picture = robot.picture(static_cast<PictureRole>(info.picture));
            const int bad = mismatches(image, picture, box.topLeft() + QPoint(border, border),
                                       shows - QMargins(border, border, border, border), above);
            EXPECT_LE(bad, 0) << info.name << "(" << info.index << ")";
            seen += bad == 0;
        }
        above += shows;
    }
    return seen;
}

// The rows of the drum's middle column that are white: the wheel lines painted over it.
std::set<int> white_rows(const QImage& image, int drum_left) {
    std::set<int> rows;
    for (int y = 203; y < 277; ++y)
        if (rgb_at(image, drum_left + 14, y) == 0xFFFFFFu) rows.insert(y);
    return rows;
}

// The rows where the panel puts the shown lines of one wheel.
std::set<int> line_rows(ViewRobot& robot, int first) {
    std::set<int> rows;
    for (int i = first; i < first + 11; ++i)
        if (robot.look("WheelLine", i).shown) rows.insert(robot.box("WheelLine", i).top());
    return rows;
}

TEST(PanelMotion, EveryPictureStandsWhereThePanelPutsIt) {
    ViewRobot robot;
    // The LEDs, signs, drums, lines, tracks, bars, a heading and the logo.
    EXPECT_GT(pictures_in_place(robot), 40);
    // The LEDs lit as their bits say once the panel is refreshed, the dark ones beside them.
    robot.macro(kWriteLeds, {0b1011'0010});
    EXPECT_EQ(robot.call("Refresh"), kestrone::S_OK);
    pictures_in_place(robot);
    // Driving, spinning and stopping: the direction signs follow at the wheels' next ticks.
    for (const auto& [macro, speed, sign] : {std::tuple{kDriveForwards, 200, "imageUp"},
                                             {kSpinLeft, 150, "imageDown"},
                                             {kDriveForwards, 0, "imageStopped"}}) {
        SCOPED_TRACE(sign);
        robot.macro(macro, {static_cast<std::int16_t>(speed)});
        const std::set<int> before = white_rows(robot.render(), 11);
        robot.advance(350);
        EXPECT_TRUE(robot.look(sign, 0).shown);
        pictures_in_place(robot);
        for (const int wheel : {0, 1})
            EXPECT_EQ(white_rows(robot.render(), wheel == 0 ? 11 : 269),
                      line_rows(robot, 11 * wheel));
        EXPECT_EQ(white_rows(robot.render(), 11) != before, speed != 0);
    }
    // Every heading, the LEDs' frame in front of its lowest rows.
    for (int k = 0; k <= 12; ++k) {
        SCOPED_TRACE(k);
        for (int other = 0; other <= 12; ++other)
            robot.put("imDirection", other, "Visible", Variant::boolean(other == k));
        pictures_in_place(robot);
    }
    // The bars across their tracks, the arrows in front of a vertical track's end.
    for (int sensor = 0; sensor < 5; ++sensor)
        for (const int value : {0, 100, 255}) {
            SCOPED_TRACE(testing::Message() << sensor << " at " << value);
            robot.put("updownADC", sensor, "Value", Variant::long_(value));
            pictures_in_place(robot);
        }
}

TEST(PanelMotion, ACheckedSwitchStaysPressedIn) {
    ViewRobot robot;
    const kestrone::ElementView look = robot.look("chkSwitchLeft");
    const QImage sw = robot.picture(PictureRole::PushSwitch);
    const QRect box = robot.box("chkSwitchLeft");
    QImage image = robot.render();
    EXPECT_EQ(rgb_at(image, box.left(), box.top()), rgb(look.light));
    EXPECT_EQ(rgb_at(image, box.right(), box.bottom()), rgb(look.shadow));
    EXPECT_EQ(mismatches(image, sw, box.topLeft() + QPoint(4, 4), box), 0);
    // Its caption below the picture.
    EXPECT_GT(count_ink(image, QRect(box.left() + 1, 41, 30, 16), look.fore, look.back), 3);
    robot.click("chkSwitchLeft");
    image = robot.render();
    EXPECT_EQ(rgb_at(image, box.left(), box.top()), rgb(look.shadow));
    EXPECT_EQ(rgb_at(image, box.right(), box.bottom()), rgb(look.light));
    EXPECT_EQ(mismatches(image, sw, box.topLeft() + QPoint(5, 5), box), 0);
    // Its neighbour stays raised.
    const QRect neighbour = robot.box("chkSwitchRight");
    EXPECT_EQ(rgb_at(image, neighbour.left(), neighbour.top()), rgb(look.light));
}

}  // namespace
