// The world beside the panel in the window: opened from a file and closed, a bad arena leaving
// the old one, the robot moved by hand only while stopped, and driven by a program the window
// runs on its clock.
#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <random>

#include "scope_dock.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

class WindowWorldTest : public WindowTest {
  protected:
    world::World& world() { return window_->world(); }
    world::WholePose pose() { return world::whole_pose(world().pose()); }
    bool world_shown() { return window_->world_view()->isVisibleTo(window_.get()); }
    // The left button pressed on `from` and let go on `to`, floor millimetres.
    void drag(world::Vec from, world::Vec to) {
        world::WorldView& v = *window_->world_view();
        for (const auto& [type, at] : {std::pair{QEvent::MouseButtonPress, from},
                                       {QEvent::MouseMove, to},
                                       {QEvent::MouseButtonRelease, to}}) {
            const QPointF p = v.to_pixels(at);
            QMouseEvent e(type, p, v.mapToGlobal(p), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
            QApplication::sendEvent(&v, &e);
        }
    }
    void wheel(int notches) {
        world::WorldView& v = *window_->world_view();
        const QPointF p = v.to_pixels(world().pose().centre);
        QWheelEvent e(p, v.mapToGlobal(p), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&v, &e);
    }
    bool recorded(const std::string& start) {
        for (const auto& l : window_->recorder().lines())
            if (l.rfind(start, 0) == 0) return true;
        return false;
    }
};

TEST_F(WindowWorldTest, AnArenaIsShownBesideThePanelUntilClosedAndABadOneLeavesIt) {
    EXPECT_FALSE(world_shown());
    const std::string track = example("line_track.world");
    ASSERT_TRUE(window_->open_arena(track));
    EXPECT_TRUE(world_shown());
    // 1600 by 1000 mm at a fifth of a pixel a millimetre, inside its rim; twice that at zoom 2.
    EXPECT_EQ(window_->world_view()->sizeHint(), QSize(336, 216));
    window_->set_zoom(2);
    EXPECT_EQ(window_->world_view()->sizeHint(), QSize(656, 416));
    const std::string bad = dir_.write("bad.world", "size 900 900\nrobot 450 450 0\nwall 1 2 3\n");
    EXPECT_FALSE(window_->open_arena(bad));
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find(bad + ":3: wall takes 4 numbers"), std::string::npos) << told_[0];
    EXPECT_EQ(world().arena().width, 1600);
    EXPECT_TRUE(world_shown());
    window_->close_arena();
    EXPECT_FALSE(world_shown());
    EXPECT_TRUE(recorded("world load \"" + track + "\""));
    EXPECT_FALSE(recorded("world load \"" + bad));
    EXPECT_TRUE(recorded("world unload"));
    // A floor of a hundred metres at zoom 3 is no picture to make: the snapshot fails and says so.
    ASSERT_TRUE(
        window_->open_arena(dir_.write("huge.world", "size 100000 100000\nrobot 500 500 0\n")));
    window_->set_zoom(3);
    EXPECT_FALSE(window_->write_snapshot(dir_.path() + "/huge.png"));
    EXPECT_NE(told_.back().find("more than 8192 on a side"), std::string::npos) << told_.back();
}

// Fitting its dock, the arena keeps its shape, stands centred, and fills the room inside its rim
// along one side; a point drawn reads back as the same point of the floor.
TEST_F(WindowWorldTest, TheArenaFillsItsDockKeepingItsShape) {
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));
    world::WorldView& v = *window_->world_view();
    const double aw = world().arena().width, ah = world().arena().height;
    // The rim, from the drawing at zoom 1 (a fifth of a pixel a millimetre).
    const double rim = (v.sizeHint().width() - aw / 5) / 2;
    std::mt19937 rng(5);
    for (int n = 0; n < 20; ++n) {
        const int w = 100 + static_cast<int>(rng() % 900), h = 100 + static_cast<int>(rng() % 700);
        v.resize(w, h);
        const QPointF a = v.to_pixels({0, ah}), b = v.to_pixels({aw, 0});
        EXPECT_NEAR((b.x() - a.x()) / (b.y() - a.y()), aw / ah, 1e-9) << w << "x" << h;
        EXPECT_NEAR(a.x(), w - b.x(), 1e-9) << w << "x" << h;
        EXPECT_NEAR(a.y(), h - b.y(), 1e-9) << w << "x" << h;
        EXPECT_NEAR(std::min(a.x(), a.y()), rim, 1e-9) << w << "x" << h;
        const world::Vec p = v.to_floor(v.to_pixels({aw * 0.3, ah * 0.7}));
        EXPECT_NEAR(p.x, aw * 0.3, 1e-6);
        EXPECT_NEAR(p.y, ah * 0.7, 1e-6);
    }
}

TEST_F(WindowWorldTest, TheRobotIsPutDownAndTurnedByHandOnlyWhileStopped) {
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));  // the start: 200, 300, 0
    drag({210, 290}, {410, 690});
    wheel(2);
    EXPECT_EQ(pose().x, 400);
    EXPECT_EQ(pose().y, 700);
    EXPECT_EQ(pose().heading, 30);
    EXPECT_TRUE(recorded("# the robot was put down by hand at x 400, y 700, heading 30"));
    window_->start_simulation();
    drag({400, 700}, {800, 500});
    wheel(-1);
    EXPECT_EQ(pose().x, 400);
    EXPECT_EQ(pose().heading, 30);
    window_->stop_simulation();
    wheel(-1);
    EXPECT_EQ(pose().heading, 15);
}

// The headless check of line_track.console, on the window's clock.
TEST_F(WindowWorldTest, AProgramRunInTheWindowDrivesTheRobotAndAResetBringsItBack) {
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    window_->run_program();
    elapse(1000, 10);
    EXPECT_GT(pose().x, 300);
    EXPECT_GT(world().trail().size(), 40u);
    elapse(15000, 25);
    EXPECT_EQ(window_->stage().program().state(), kflow::RunState::Finished);
    EXPECT_TRUE(world().arena().zone("finish")->contains(world().pose().centre));
    window_->reset_robot();
    EXPECT_EQ(world().trail().size(), 1u);
    EXPECT_EQ(pose().x, 200);
    EXPECT_TRUE(recorded("world reset"));
}

// --world, --run and --scope: the window opens with the arena, the program running, its clock
// where it started, and the scope in front of the problems.
TEST(WindowWorldStartTest, OpensWithTheArenaAndRunsTheProgram) {
    window::WindowOptions options;
    options.module = KESTRONE_MODULE;
    options.world = example("line_track.world");
    options.run = example("line_follower.kflow");
    options.scope = true;
    window::MainWindow window(options, [] { return std::int64_t{5'000'000}; });
    ASSERT_TRUE(window.start());
    EXPECT_TRUE(window.world().loaded());
    EXPECT_EQ(window.stage().program().state(), kflow::RunState::Running);
    EXPECT_LT(window.session().now(), 100);
    EXPECT_EQ(window.exit_status(), 0);
    window.show();
    QApplication::processEvents();
    EXPECT_FALSE(window.scope()->visibleRegion().isEmpty());
}

}  // namespace
}  // namespace window_testing
