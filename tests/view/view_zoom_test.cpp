// Zoom and device pixel ratio: pictures are scaled by whole pixels, never smoothed.
#include <gtest/gtest.h>

#include "pixel_geometry.h"
#include "view_robot.h"

namespace {

using view_testing::ViewRobot;

// Whether `r` of `small` grown `factor` times by whole pixels is what `large` shows there.
bool doubled(const QImage& small, const QImage& large, const QRect& r, int factor) {
    const QRect big(r.topLeft() * factor, r.size() * factor);
    return small.scaled(small.size() * factor, Qt::IgnoreAspectRatio, Qt::FastTransformation)
               .copy(big) == large.copy(big);
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
        EXPECT_TRUE(doubled(one, two, r, 2)) << r.x() << "," << r.y();
        EXPECT_TRUE(doubled(one, three, r, 3)) << r.x() << "," << r.y();
    }
    // The stretched track too: scaled once at the panel's size, then by whole pixels.
    const QRect track = robot.box("imSlideBase", 3);
    EXPECT_EQ(track.height(), 72);
    EXPECT_TRUE(doubled(one, two, track, 2));
}

TEST(ViewZoom, ARatioOfTwoPaintsAsAZoomOfTwo) {
    ViewRobot robot;
    const QImage sharp = robot.render(1, 2);
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
    QImage zoomed = robot.render(2, 1);
    zoomed.setDevicePixelRatio(2.0);
    EXPECT_TRUE(sharp == zoomed);
}

}  // namespace
