// The world view drawn offscreen: walls and the robot at their pixels, to scale at each zoom, the
// trail gone after a reset, and the robot picked up, put down and turned only while movable.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include "world_view.h"

namespace world {
namespace {

struct NoPanel : PanelPort {
    int clicks = 0;
    std::optional<bool> simulating() override { return false; }
    std::optional<std::int32_t> motor_speed(int) override { return 0; }
    std::optional<std::int32_t> full_scale() override { return 255; }
    std::optional<std::int32_t> sensor_value(int) override { return 0; }
    std::optional<std::int32_t> check_value(CheckInput) override { return 0; }
    bool click(CheckInput) override { return ++clicks, true; }
    bool arrow(int, bool) override { return false; }
};

QApplication& app() {
    static int argc = 1;
    static char name[] = "world_view_tests";
    static char* argv[] = {name, nullptr};
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication a(argc, argv);
    return a;
}

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
        app();
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

TEST(WorldView, DrawsTheWallsAndTheRobotAtTheirPlacesToScale) {
    Scene s;
    for (int zoom : {1, 3}) {
        SCOPED_TRACE(zoom);
        s.view.set_zoom(zoom);
        const QImage image = s.view.render_image();
        EXPECT_EQ(image.width(), 2 * WorldView::kMargin + 400 * zoom);
        EXPECT_EQ(image.height(), 2 * WorldView::kMargin + 300 * zoom);
        EXPECT_EQ(s.at(image, {1000, 750}), kWallPixel);
        EXPECT_EQ(s.at(image, {1000, 495}), kWallPixel);  // within the wall's drawn thickness
        EXPECT_EQ(s.at(image, {1000, 1100}), kFloorPixel);
        EXPECT_EQ(s.at(image, {0, 750}), kWallPixel);  // the border
        // The body round its centre, on either side of the heading's mark.
        EXPECT_EQ(s.at(image, {400, 330}), kBodyPixel);
        EXPECT_EQ(s.at(image, {400, 270}), kBodyPixel);
        EXPECT_EQ(s.at(image, {400, 380}), kFloorPixel);
        // The mark points along the heading.
        EXPECT_EQ(qGray(s.at(image, {440, 300})), 255);
    }
    s.view.set_zoom(0);
    EXPECT_EQ(s.view.zoom(), 1);
    s.view.set_zoom(99);
    EXPECT_EQ(s.view.zoom(), WorldView::kLargestZoom);
}

TEST(WorldView, TheTrailFollowsThePathUntilAReset) {
    Scene s;
    s.view.set_zoom(2);
    for (int i = 0; i < 150; ++i) s.world.step(200, 200);  // 300 mm along y 300
    QImage image = s.view.render_image();
    EXPECT_NE(s.at(image, {500, 300}), kFloorPixel);
    EXPECT_EQ(s.at(image, {700, 330}), kBodyPixel);
    const std::string shot = KESTRONE_SCREENSHOT;
    EXPECT_TRUE(image.save(QString::fromStdString(shot), "PNG"));
    s.world.reset();
    image = s.view.render_image();
    EXPECT_EQ(s.at(image, {500, 300}), kFloorPixel);
    EXPECT_EQ(s.at(image, {700, 330}), kFloorPixel);
}

void mouse(WorldView& v, QEvent::Type type, QPointF at) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, at, v.mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(&v, &e);
}

void wheel(WorldView& v, QPointF at, int delta) {
    QWheelEvent e(at, v.mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                  Qt::NoScrollPhase, false);
    QApplication::sendEvent(&v, &e);
}

TEST(WorldView, PicksUpPutsDownAndTurnsTheRobotOnlyWhileMovable) {
    Scene s;
    s.view.set_zoom(2);
    const QPointF grip = s.view.to_pixels({420, 310});  // off the centre: the grip is kept
    const QPointF drop = s.view.to_pixels({720, 610});
    mouse(s.view, QEvent::MouseButtonPress, grip);
    mouse(s.view, QEvent::MouseMove, drop);
    mouse(s.view, QEvent::MouseButtonRelease, drop);
    wheel(s.view, drop, 240);
    EXPECT_EQ(whole_pose(s.world.pose()).x, 400);
    EXPECT_EQ(whole_pose(s.world.pose()).heading, 0);
    s.view.set_movable(true);
    mouse(s.view, QEvent::MouseButtonPress, grip);
    mouse(s.view, QEvent::MouseMove, drop);
    mouse(s.view, QEvent::MouseButtonRelease, drop);
    EXPECT_NEAR(s.world.pose().centre.x, 700, 2.5);  // a pixel is 2.5 mm at zoom 2
    EXPECT_NEAR(s.world.pose().centre.y, 600, 2.5);
    // Two notches turn it 30 degrees anticlockwise; the driver set the inputs at each placing.
    wheel(s.view, drop, 240);
    EXPECT_EQ(whole_pose(s.world.pose()).heading, 30);
    // A press beside the body picks nothing up; a drop against a wall is refused.
    const Pose before = s.world.pose();
    mouse(s.view, QEvent::MouseButtonPress, s.view.to_pixels({900, 900}));
    mouse(s.view, QEvent::MouseButtonRelease, s.view.to_pixels({1500, 900}));
    EXPECT_EQ(s.world.pose().centre, before.centre);
    mouse(s.view, QEvent::MouseButtonPress, s.view.to_pixels(before.centre));
    mouse(s.view, QEvent::MouseButtonRelease, s.view.to_pixels({1010, 750}));
    EXPECT_EQ(s.world.pose().centre, before.centre);
}

}  // namespace
}  // namespace world
