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
    const std::pair<const char*, int> frames[] = {
        {"frameADC", 0}, {"frameADC", 3}, {"frameMotor", 1}, {"Frame1", -1}, {"frameSwitches", -1}};
    for (const auto& [name, index] : frames) {
        SCOPED_TRACE(name);
        const kestrone::ElementView look = robot.look(name, index);
        const QRect box = robot.box(name, index);
        const int left = box.left(), top = box.top();
        // The etched line runs half a text line down; the caption's back cuts it from a pixel
        // before the text on.
        EXPECT_EQ(rgb_at(image, left + 3, top + 6), rgb(look.shadow));
        EXPECT_EQ(rgb_at(image, left + 3, top + 7), rgb(look.light));
        EXPECT_EQ(rgb_at(image, left + 4, top + 6), rgb(look.shadow));
        EXPECT_EQ(rgb_at(image, left + 5, top + 6), rgb(look.back));
        // The etching round the bottom: shadow, then light on the frame's last row.
        EXPECT_EQ(rgb_at(image, left + 3, box.bottom() - 1), rgb(look.shadow));
        EXPECT_EQ(rgb_at(image, left + 3, box.bottom()), rgb(look.light));
        EXPECT_EQ(rgb_at(image, left + 3, box.bottom() - 2), rgb(look.back));
        EXPECT_GT(count_ink(image, QRect(left + 6, top, 18, 6), look.fore, look.back), 4);
        // No ink left of the caption, above the frame's line.
        EXPECT_EQ(count_ink(image, QRect(left, top, 5, 6), look.fore, look.back), 0);
    }
    // The frame of the heading pictures has no caption: its pictures cover its edge.
    EXPECT_EQ(rgb_at(image, 150, 2), 0xFFFFFFu);
}

TEST(PanelPlaces, ValueCaptionsArePureGreenOnTheOlivePlate) {
    ViewRobot robot;
    // The caption's "0" in whole pixels of pure green at every zoom: no edge blended with olive.
    for (const int zoom : {1, 2, 3}) {
        const QImage image = robot.render(zoom);
        for (int sensor = 0; sensor < 5; ++sensor) {
            SCOPED_TRACE(testing::Message() << "zoom " << zoom << ", sensor " << sensor);
            const QRect plate = robot.box("Shape1", sensor),
                        caption = robot.box("lblADCVal", sensor);
            const QRect big_plate(plate.topLeft() * zoom, plate.size() * zoom);
            const QRect big_caption(caption.topLeft() * zoom, caption.size() * zoom);
            const int green = count_colour(image, big_caption, 0x00FF00u);
            EXPECT_GT(green, 3 * zoom * zoom);
            EXPECT_EQ(green + count_colour(image, big_caption, 0x808000u),
                      big_caption.width() * big_caption.height());
            EXPECT_EQ(count_colour(image, big_plate, 0x00FF00u), green);
        }
    }
    const QImage image = robot.render();
    for (int sensor = 0; sensor < 5; ++sensor) {
        SCOPED_TRACE(sensor);
        const QRect plate = robot.box("Shape1", sensor);
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

// Each arrow points away from the other (towards Max above), in the middle of its half of the box.
TEST(PanelPlaces, ArrowsPointApartInTheMiddleOfTheirHalves) {
    ViewRobot robot;
    const QImage image = robot.render();
    for (int sensor = 0; sensor < 5; ++sensor) {
        SCOPED_TRACE(sensor);
        const QRect box = robot.box("updownADC", sensor);
        const std::uint32_t fore = rgb(robot.look("updownADC", sensor).fore);
        const int mid = box.top() + box.height() / 2;
        for (const bool upper : {true, false}) {
            const QRect half = upper ? QRect(box.left(), box.top(), box.width(), mid - box.top())
                                     : QRect(QPoint(box.left(), mid), box.bottomRight());
            std::vector<int> rows;  // the ink of each row that has some, top to bottom
            int first = -1, last = -1;
            for (int y = half.top(); y <= half.bottom(); ++y)
                if (const int ink =
                        count_colour(image, QRect(half.left(), y, half.width(), 1), fore)) {
                    rows.push_back(ink);
                    first = first < 0 ? y : first;
                    last = y;
                }
            ASSERT_GE(rows.size(), 2u);
            EXPECT_EQ(rows.front() < rows.back(), upper);
            EXPECT_LE(std::abs((first - half.top()) - (half.bottom() - last)), 1);
        }
    }
}

}  // namespace
