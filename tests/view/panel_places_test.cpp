// The panel as the view paints it at start-up: frames, captions and borders where the layout puts
// them, in the panel's pixels (15 twips to the pixel).
#include <gtest/gtest.h>

#include "panel_view.h"
#include "view_robot.h"

namespace {

using view_testing::count_colour;
using view_testing::count_ink;
using view_testing::rgb;
using view_testing::rgb_at;
using view_testing::ViewRobot;

TEST(PanelPlaces, FrameCaptionsSitInTheTopEdgeInTheirColour) {
    ViewRobot robot;
    const QImage image = robot.render();
    struct Frame {
        const char* name;
        int index;
        int left, top;
    };
    for (const Frame f : {Frame{"frameADC", 0, 8, 0}, Frame{"frameADC", 3, 146, 126},
                          Frame{"frameMotor", 1, 266, 189}, Frame{"Frame1", -1, 82, 68},
                          Frame{"frameSwitches", -1, 65, 0}}) {
        SCOPED_TRACE(f.name);
        const kestrone::ElementView look = robot.look(f.name, f.index);
        // The etched line runs half a text line down; the caption's back cuts it from a pixel
        // before the text on.
        EXPECT_EQ(rgb_at(image, f.left + 3, f.top + 6), rgb(look.shadow));
        EXPECT_EQ(rgb_at(image, f.left + 3, f.top + 7), rgb(look.light));
        EXPECT_EQ(rgb_at(image, f.left + 5, f.top + 6), rgb(look.back));
        // The etching round the bottom: shadow, then light on the frame's last row.
        const QRect box = robot.box(f.name, f.index);
        EXPECT_EQ(rgb_at(image, f.left + 3, box.bottom() - 1), rgb(look.shadow));
        EXPECT_EQ(rgb_at(image, f.left + 3, box.bottom()), rgb(look.light));
        EXPECT_EQ(rgb_at(image, f.left + 3, box.bottom() - 2), rgb(look.back));
        EXPECT_GT(count_ink(image, QRect(f.left + 6, f.top, 18, 6), look.fore, look.back), 4);
        // No ink left of the caption, above the frame's line.
        EXPECT_EQ(count_ink(image, QRect(f.left, f.top, 5, 6), look.fore, look.back), 0);
    }
    // The frame of the heading pictures has no caption: its pictures cover its edge.
    EXPECT_EQ(rgb_at(image, 150, 2), 0xFFFFFFu);
}

TEST(PanelPlaces, ValueCaptionsAreGreenOnTheOlivePlate) {
    ViewRobot robot;
    const QImage image = robot.render();
    for (int sensor = 0; sensor < 5; ++sensor) {
        SCOPED_TRACE(sensor);
        const QRect plate = robot.box("Shape1", sensor);
        const QRect caption = robot.box("lblADCVal", sensor);
        EXPECT_GT(count_ink(image, caption, 0x00FF00u, 0x808000u), 3);
        EXPECT_EQ(count_ink(image, plate, 0x00FF00u, 0x808000u),
                  count_ink(image, caption, 0x00FF00u, 0x808000u));
        // Olive fills the plate between its rounded corners, and not the corners' tips.
        EXPECT_EQ(rgb_at(image, plate.left(), plate.center().y()), 0x808000u);
        EXPECT_EQ(rgb_at(image, plate.right(), plate.center().y()), 0x808000u);
        EXPECT_NE(rgb_at(image, plate.left(), plate.top()), 0x808000u);
        EXPECT_NE(rgb_at(image, plate.right(), plate.bottom()), 0x808000u);
        // The corners are rounded alike: each row of the plate's end, clear of the caption,
        // matches its mirror row from the bottom.
        for (int y = 0; y < plate.height() / 2; ++y)
            EXPECT_EQ(count_colour(image, QRect(plate.left(), plate.top() + y, 6, 1), 0x808000u),
                      count_colour(image, QRect(plate.left(), plate.bottom() - y, 6, 1), 0x808000u))
                << "row " << y;
    }
}

TEST(PanelPlaces, SpeedCaptionsAndSignsInBorderedBoxes) {
    ViewRobot robot;
    const QImage image = robot.render();
    for (const int index : {0, 1}) {
        const kestrone::ElementView look = robot.look("lblSpeedVal", index);
        const QRect box = robot.box("lblSpeedVal", index);
        EXPECT_EQ(box.size(), QSize(38, 17));
        EXPECT_EQ(count_colour(image, QRect(box.left(), box.top(), box.width(), 1), rgb(look.fore)),
                  box.width());
        EXPECT_EQ(rgb_at(image, box.left() + 1, box.top() + 1), rgb(look.back));
        // "0", centred: its ink in the middle third, none left of it.
        const QRect inner = box - QMargins(1, 1, 1, 1);
        const int third = inner.width() / 3;
        EXPECT_GT(count_ink(image, inner, look.fore, look.back), 3);
        EXPECT_EQ(count_ink(image, QRect(inner.topLeft(), QSize(third, inner.height())), look.fore,
                            look.back),
                  0);
    }
    // The direction signs sit inside a one-pixel border of the fore colour.
    const auto fore = rgb(robot.look("imageStopped", 0).fore);
    for (const int frame_left : {8, 266}) {
        EXPECT_EQ(count_colour(image, QRect(frame_left + 39, 245, 26, 1), fore), 26);
        EXPECT_EQ(count_colour(image, QRect(frame_left + 64, 245, 1, 26), fore), 26);
    }
}

}  // namespace
