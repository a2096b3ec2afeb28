// What moves on the panel, as the view paints it after the robot's macros and the user's input:
// LEDs, wheel lines, direction signs, the heading, the sensors' bars and the pressed switches.
#include <gtest/gtest.h>

#include <set>

#include "pixel_geometry.h"
#include "view_robot.h"

namespace {

using kestrone::PictureRole;
using kestrone::Variant;
using view_testing::count_colour;
using view_testing::count_ink;
using view_testing::mismatches;
using view_testing::rgb;
using view_testing::rgb_at;
using view_testing::ViewRobot;

constexpr std::int16_t kWriteLeds = 10, kDriveForwards = 4, kSpinLeft = 7;

// How many pixels of the LED's box are pure red: only a lit LED has any.
int red_pixels(const QImage& image, int led) {
    return count_colour(image, QRect(86 + 22 * (7 - led), 79, 22, 27), 0xFF0000u);
}

// Dark at start-up, in a row from 7 to 0, each LED's last column under its left neighbour; lit as
// their bits say once the panel is painted.
TEST(PanelMotion, LedsLightAsTheirBitsSay) {
    ViewRobot robot;
    const QImage lit = robot.picture(PictureRole::LedLit),
                 dark = robot.picture(PictureRole::LedDark);
    QImage image = robot.render();
    for (int led = 0; led < 8; ++led) {
        const QPoint at(86 + 22 * (7 - led), 80);
        EXPECT_EQ(mismatches(image, dark, at, QRect(at, QSize(22, 26))), 0) << led;
    }
    robot.macro(kWriteLeds, {0b1011'0010});
    EXPECT_EQ(red_pixels(robot.render(), 1), 0);
    robot.call("Refresh");
    image = robot.render();
    for (int led = 0; led < 8; ++led) {
        const QPoint at(86 + 22 * (7 - led), 79);
        if (((0b1011'0010 >> led) & 1) != 0) {
            EXPECT_EQ(mismatches(image, lit, at, QRect(at, QSize(22, 27))), 0) << led;
        } else {
            EXPECT_EQ(red_pixels(image, led), 0) << led;
        }
    }
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
    for (int i = first; i < first + 11; ++i) {
        const kestrone::ElementView look = robot.look("WheelLine", i);
        if (look.shown) rows.insert(panelqt::pixel_rect(look.box).top());
    }
    return rows;
}

// The picture in a motor's direction sign, inside its one-pixel border.
void expect_sign(ViewRobot& robot, const QImage& image, int frame_left, PictureRole role) {
    const QPoint at(frame_left + 40, 246);
    EXPECT_EQ(mismatches(image, robot.picture(role), at, QRect(at, QSize(24, 24))), 0)
        << static_cast<int>(role);
}

// The wheel lines move down the drums while driving, and the direction signs follow the motors
// at the wheels' next ticks.
TEST(PanelMotion, WheelLinesAndDirectionSignsFollowTheMotors) {
    ViewRobot robot;
    robot.macro(kDriveForwards, {200});
    const std::set<int> before = white_rows(robot.render(), 11);
    EXPECT_EQ(before, line_rows(robot, 0));
    robot.advance(350);
    QImage image = robot.render();
    for (const int wheel : {0, 1}) {
        SCOPED_TRACE(wheel);
        const std::set<int> after = white_rows(image, wheel == 0 ? 11 : 269);
        EXPECT_EQ(after, line_rows(robot, 11 * wheel));
        EXPECT_GE(after.size(), 8u);
        if (wheel == 0) {
            EXPECT_NE(after, before);
        }
        expect_sign(robot, image, wheel == 0 ? 8 : 266, PictureRole::MotorForward);
    }
    robot.macro(kSpinLeft, {150});
    robot.advance(250);
    image = robot.render();
    expect_sign(robot, image, 8, PictureRole::MotorBackward);
    expect_sign(robot, image, 266, PictureRole::MotorForward);
    robot.macro(kDriveForwards, {0});
    robot.advance(250);
    expect_sign(robot, robot.render(), 8, PictureRole::MotorStopped);
}

TEST(PanelMotion, EveryHeadingPictureAboveTheLeds) {
    ViewRobot robot;
    for (int k = 0; k <= 12; ++k) {
        for (int other = 0; other <= 12; ++other)
            robot.put("imDirection", other, "Visible", Variant::boolean(other == k));
        const QImage image = robot.render();
        // Its top 4 rows lie above the panel, its lowest rows behind the LEDs' frame.
        const QImage heading =
            robot.picture(static_cast<PictureRole>(static_cast<int>(PictureRole::Heading0) + k));
        EXPECT_EQ(mismatches(image, heading, {144, -4}, QRect(144, 0, 64, 68)), 0) << k;
        // The LEDs' frame, in front, hides the rest.
        const kestrone::Rgba back = robot.look("Frame1").back;
        EXPECT_EQ(rgb_at(image, 175, 77), rgb(back)) << k;
    }
}

struct Sensor {
    int index;
    bool vertical;
};

TEST(PanelMotion, BarsFollowTheValueAcrossTheTrack) {
    ViewRobot robot;
    for (const Sensor s :
         {Sensor{0, true}, Sensor{1, true}, Sensor{2, false}, Sensor{3, true}, Sensor{4, false}}) {
        SCOPED_TRACE(s.index);
        const QImage bar =
            robot.picture(s.vertical ? PictureRole::BarVertical : PictureRole::BarHorizontal);
        int along[3] = {}, ink[3] = {};
        // The sensors read 8 bits here: 0 to 255 covers their tracks.
        const int values[3] = {0, 100, 255};
        // The arrows, in front, hide the bar's end at one end of a vertical track.
        const QRect arrows = robot.box("updownADC", s.index);
        for (int v = 0; v < 3; ++v) {
            robot.put("updownADC", s.index, "Value", Variant::long_(values[v]));
            const QImage image = robot.render();
            const kestrone::ElementView look = robot.look("imSlideBar", s.index);
            const QRect box = panelqt::pixel_rect(look.box);
            EXPECT_EQ(
                mismatches(image, bar, box.topLeft(), box & panelqt::pixel_rect(look.clip), arrows),
                0)
                << values[v];
            along[v] = s.vertical ? box.top() : box.left();
            ink[v] = count_ink(image, robot.box("lblADCVal", s.index), 0x00FF00u, 0x808000u);
        }
        // The bar moves one way along its track, and the caption from one digit to more.
        EXPECT_TRUE((along[0] < along[1] && along[1] < along[2]) ||
                    (along[0] > along[1] && along[1] > along[2]));
        EXPECT_NE(ink[0], ink[2]);
        EXPECT_GT(std::min(ink[0], ink[2]), 3);
    }
}

TEST(PanelMotion, ACheckedSwitchStaysPressedIn) {
    ViewRobot robot;
    const kestrone::ElementView look = robot.look("chkSwitchLeft");
    const QImage sw = robot.picture(PictureRole::PushSwitch);
    const QRect box(70, 13, 32, 45);
    ASSERT_EQ(robot.box("chkSwitchLeft"), box);
    QImage image = robot.render();
    EXPECT_EQ(rgb_at(image, box.left(), box.top()), rgb(look.light));
    EXPECT_EQ(rgb_at(image, box.right(), box.bottom()), rgb(look.shadow));
    EXPECT_EQ(mismatches(image, sw, {74, 17}, box), 0);
    // Its caption below the picture.
    EXPECT_GT(count_ink(image, QRect(71, 41, 30, 16), look.fore, look.back), 3);
    robot.click("chkSwitchLeft");
    image = robot.render();
    EXPECT_EQ(rgb_at(image, box.left(), box.top()), rgb(look.shadow));
    EXPECT_EQ(rgb_at(image, box.right(), box.bottom()), rgb(look.light));
    EXPECT_EQ(mismatches(image, sw, {75, 18}, box), 0);
    // Its neighbour stays raised.
    EXPECT_EQ(rgb_at(image, 106, 13), rgb(look.light));
}

}  // namespace
