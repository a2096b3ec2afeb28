// Zoom and device pixel ratio: pictures are scaled by whole pixels, never smoothed.
#include <gtest/gtest.h>

#include "pixel_geometry.h"
#include "view_robot.h"

namespace {

using view_testing::ViewRobot;

// The pixels of `small` in `r` whose `factor` x `factor` square in `large` is not all theirs.
int undoubled(const QImage& small, const QImage& large, const QRect& r, int factor) {
    int bad = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            for (int d = 0; d < factor * factor; ++d)
                if (large.pixel(x * factor + d % factor, y * factor + d / factor) !=
                    small.pixel(x, y)) {
                    ++bad;
                    break;
                }
    return bad;
}

// Every shown element that paints a picture, by its place on the panel.
std::vector<QRect> picture_places(ViewRobot& robot) {
    std::vector<QRect> places;
    std::int32_t count = 0;
    EXPECT_EQ(robot.panel().GetElementCount(&count), kestrone::S_OK);
    for (std::int32_t id = 0; id < count; ++id) {
        kestrone::ElementView view;
        EXPECT_EQ(robot.panel().GetElementView(id, &view), kestrone::S_OK);
        const bool picture = view.style == kestrone::ElementStyle::Picture ||
                             view.style == kestrone::ElementStyle::BorderedPicture;
        if (view.shown && picture)
            places.push_back(panelqt::pixel_rect(view.box) & panelqt::pixel_rect(view.clip) &
                             QRect(0, 0, 344, 282));
    }
    return places;
}

TEST(ViewZoom, PicturesDoubleAndTriplePixelForPixel) {
    ViewRobot robot;
    robot.macro(4, {120});
    robot.advance(230);  // lines and bars off their design places
    const QImage one = robot.render(1), two = robot.render(2), three = robot.render(3);
    ASSERT_EQ(two.size(), QSize(688, 564));
    ASSERT_EQ(three.size(), QSize(1032, 846));
    const std::vector<QRect> places = picture_places(robot);
    ASSERT_GT(places.size(), 40u);
    for (const QRect& r : places) {
        EXPECT_EQ(undoubled(one, two, r, 2), 0) << r.x() << "," << r.y();
        EXPECT_EQ(undoubled(one, three, r, 3), 0) << r.x() << "," << r.y();
    }
    // The stretched track too: scaled once at the panel's size, then by whole pixels.
    const QRect track = robot.box("imSlideBase", 3);
    EXPECT_EQ(track.height(), 72);
    EXPECT_EQ(undoubled(one, two, track, 2), 0);
}

TEST(ViewZoom, ARatioOfTwoPaintsAsAZoomOfTwo) {
    ViewRobot robot;
    const QImage sharp = robot.render(1, 2), zoomed = robot.render(2, 1);
    EXPECT_EQ(sharp.size(), QSize(688, 564));
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
    for (const QRect& r : picture_places(robot))
        EXPECT_EQ(undoubled(robot.render(1), sharp, r, 2), 0);
    int differing = 0;
    for (int y = 0; y < sharp.height(); ++y)
        for (int x = 0; x < sharp.width(); ++x)
            differing += sharp.pixel(x, y) != zoomed.pixel(x, y);
    EXPECT_EQ(differing, 0);
}

}  // namespace
