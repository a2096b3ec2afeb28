// The world view drawn offscreen: walls and the robot at their pixels, to scale at each zoom, the
// trail gone after a reset, and the robot left where it is by a hand that can't move it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include "world_view.h"

namespace world {
namespace {

struct NoPanel : PanelPort {
    std::optional<bool> simulating() override { return false; }
    std::optional<std::int32_t> motor_speed(int) override { return 0; }
    std::optional<std::int32_t> full_scale() override { return 255; }
    std::optional<std::int32_t> sensor_value(int) override { return 0; }
    std::optional<std::int32_t> check_value(CheckInput) override { return 0; }
    bool click(CheckInput) override { return true; }
    bool arrow(int, bool) override { return false; }
};

// 2000 by 1500: a wall down the middle, a line track, a light and a goal.
const char* const kArena = R"(size 2000 1500
robot 400 300 0
line 20 200 200 1800 200 1800 1300 200 1300 200 200
wall 1000 500 1000 1000
light 1800 1400 1.0
zone goal 1600 1100 300 300
)";

struct Scene {
    World world;
    NoPanel panel;
    WorldDriver driver{world, panel};
    WorldView view{driver};
    Scene() {
        std::string error;
        EXPECT_TRUE(world.load_text(kArena, "arena.world", &error)) << error;
    }
    QRgb at(const QImage& image, Vec floor) const {
        const QPointF p = view.to_pixels(floor);
        return image.pixel(static_cast<int>(p.x()), static_cast<int>(p.y()));
    }
};

const QRgb kWallPixel = qRgb(0x8b, 0x3a, 0x1a), kFloorPixel = qRgb(0xfa, 0xf8, 0xf0),
           kBodyPixel = qRgb(0x50, 0x70, 0x90);

TEST(WorldView, DrawsTheWallsTheRobotAndItsTrailAtTheirPlacesToScale) {
    Scene s;
    for (int zoom : {1, 3}) {
        SCOPED_TRACE(zoom);
        s.view.set_zoom(zoom);
        const QImage image = s.view.render_image();
        EXPECT_EQ(image.width(), 2 * WorldView::kMargin + 400 * zoom);
        EXPECT_EQ(image.height(), 2 * WorldView::kMargin + 300 * zoom);
        EXPECT_EQ(s.at(image, {1000, 750}), kWallPixel);
        EXPECT_EQ(s.at(image, {1002, 600}), kWallPixel);  // within the wall's drawn thickness
        EXPECT_EQ(s.at(image, {1000, 1100}), kFloorPixel);
        EXPECT_EQ(s.at(image, {0, 750}), kWallPixel);  // the border
        // The body round its centre, on either side of the heading's mark.
        EXPECT_EQ(s.at(image, {400, 330}), kBodyPixel);
        EXPECT_EQ(s.at(image, {400, 270}), kBodyPixel);
        EXPECT_EQ(s.at(image, {400, 380}), kFloorPixel);
        // The light, a yellow disc over the floor.
        const QRgb light = s.at(image, {1800, 1400});
        EXPECT_GT(qRed(light), qBlue(light) + 100);
        EXPECT_GT(qGreen(light), qBlue(light) + 60);
        // The mark points along the heading, light on the body.
        EXPECT_GT(qGray(s.at(image, {440, 300})), 180);
        EXPECT_LT(qGray(s.at(image, {360, 300})), 130);
    }
    s.view.set_zoom(0);
    EXPECT_EQ(s.view.zoom(), 1);
    s.view.set_zoom(99);
    EXPECT_EQ(s.view.zoom(), WorldView::kLargestZoom);
    // The trail follows the path until a reset.
    s.view.set_zoom(2);
    for (int i = 0; i < 150; ++i)
        s.world.step(200, 200);  // 300 mm along y 300
    QImage image = s.view.render_image();
    EXPECT_NE(s.at(image, {500, 300}), kFloorPixel);
    EXPECT_EQ(s.at(image, {700, 330}), kBodyPixel);
    s.world.reset();
    image = s.view.render_image();
    EXPECT_EQ(s.at(image, {500, 300}), kFloorPixel);
    EXPECT_EQ(s.at(image, {700, 330}), kFloorPixel);
}

void mouse(WorldView& v, QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent e(type, at, v.mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&v, &e);
}

void wheel(WorldView& v, QPointF at, int delta) {
    QWheelEvent e(at, v.mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                  Qt::NoScrollPhase, false);
    QApplication::sendEvent(&v, &e);
}

// Carried as the window's tests show; here the hands that must not move it, and one notch.
TEST(WorldView, MovesTheRobotOnlyWhileMovableAndPutDownClear) {
    Scene s;
    s.view.set_zoom(2);
    const Pose start = s.world.pose();
    const QPointF drop = s.view.to_pixels({700, 600});
    const auto drag = [&](QPointF from, QPointF to, Qt::MouseButton button) {
        mouse(s.view, QEvent::MouseButtonPress, from, button);
        mouse(s.view, QEvent::MouseMove, to, button);
        mouse(s.view, QEvent::MouseButtonRelease, to, button);
        EXPECT_EQ(s.world.pose().centre, start.centre);
    };
    drag(s.view.to_pixels(start.centre), drop, Qt::LeftButton);
    wheel(s.view, drop, 240);
    EXPECT_EQ(s.world.pose().heading, start.heading);
    s.view.set_movable(true);
    // The right button picks nothing up, nor does a press beside the body; a drop against a wall
    // or off the floor is refused.
    drag(s.view.to_pixels(start.centre), drop, Qt::RightButton);
    drag(s.view.to_pixels({470, 300}), drop, Qt::LeftButton);
    drag(s.view.to_pixels(start.centre), s.view.to_pixels({1010, 750}), Qt::LeftButton);
    drag(s.view.to_pixels(start.centre), s.view.to_pixels({2100, 300}), Qt::LeftButton);
    // A single notch of the wheel turns it 15 degrees.
    wheel(s.view, drop, 120);
    EXPECT_EQ(whole_pose(s.world.pose()).heading, 15);
}

}  // namespace
}  // namespace world
