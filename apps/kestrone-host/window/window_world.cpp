// The world beside the panel: an arena opened from a file and drawn to fill its dock, the robot on
// it driven by the wheels while the component simulates, and picked up, put down and turned by
// hand while it does not.
#include <QDockWidget>
#include <QImageWriter>
#include <QLabel>
#include <QPainter>
#include <QStackedWidget>

#include "main_window.h"
#include "panel_view.h"
#include "world_commands.h"

namespace window {

namespace {
// Between the panel and the world in a snapshot, as the window's layout spaces them.
constexpr int kStageGap = 6;
const QColor kStageBackground(0xef, 0xef, 0xef);
}  // namespace

// The arena fills its dock; before one is open the dock says how to open one.
void MainWindow::build_world_view() {
    arena_stack_ = new QStackedWidget;
    auto* none = new QLabel(tr("No arena: File > Open arena..."), arena_stack_);
    none->setAlignment(Qt::AlignCenter);
    none->setWordWrap(true);
    arena_stack_->addWidget(none);
    world_view_ = new world::WorldView(stage_.world_driver(), arena_stack_);
    world_view_->set_fit(true);
    arena_stack_->addWidget(world_view_);
    connect(world_view_, &world::WorldView::robotMoved, this, [this] {
        if (view_ && session().panel()) view_->refresh();
    });
    connect(world_view_, &world::WorldView::robotPutDown, this, &MainWindow::robot_put_down);
}

// Shown while an arena is loaded; movable by hand only while the simulation is stopped.
void MainWindow::follow_world() {
    const bool loaded = world().loaded(), editing = editing_arena();
    if (close_arena_) close_arena_->setEnabled(loaded && !editing);
    if (reset_robot_) reset_robot_->setEnabled(loaded && !editing);
    // While the arena is edited, the robot stays put.
    for (QAction* a : {start_action_, debug_.run, debug_.step, debug_.go_on, debug_.run_to})
        if (a) a->setEnabled(!editing);
    if (save_arena_) save_arena_->setEnabled(editing);
    if (save_arena_as_) save_arena_as_->setEnabled(editing);
    world_view_->set_movable(loaded && !simulating() && !editing);
    if (editing) return;
    arena_stack_->setCurrentIndex(loaded ? 1 : 0);
    if (loaded) world_view_->refresh();
}

bool MainWindow::open_arena(const std::string& path) {
    if (!close_arena_editor()) return false;
    const commands::Reply loaded = runner_.perform(commands::WorldLoad{path});
    if (!loaded.is_ok()) {
        tell("The arena could not be opened: " + loaded.text);
        return false;
    }
    arena_path_ = path;
    remember_file(path);
    arena_dock_->show();
    return true;
}

void MainWindow::close_arena() {
    if (!close_arena_editor()) return;
    if (world().loaded()) runner_.perform(commands::WorldUnload{});
    arena_path_.clear();
}

void MainWindow::reset_robot() {
    if (world().loaded()) runner_.perform(commands::WorldReset{});
}

// The console has no line that puts the robot down: the recording says where it was put, and a
// replay goes on from where the robot stood.
void MainWindow::robot_put_down() {
    clock_.pulse();
    const world::WholePose p = world::whole_pose(world().pose());
    recorder_.note_comment("the robot was put down by hand at x " + std::to_string(p.x) + ", y " +
                           std::to_string(p.y) + ", heading " + std::to_string(p.heading) +
                           "; the console has no line for it");
    stage_.changed();
    after_action();
}

// The panel and the world side by side at the window's zoom, their tops level, as the window
// shows them.
std::string MainWindow::write_stage(kestrone::IKestronePanel& panel, const std::string& path) {
    const QImage left = panelqt::render_panel(panel, options_.zoom);
    if (left.isNull()) return "the panel could not be painted";
    std::string why;
    const QImage right = world_view_->render_image(&why);
    if (right.isNull()) return why;
    QImage stage(left.width() + kStageGap + right.width(), std::max(left.height(), right.height()),
                 QImage::Format_RGB32);
    stage.fill(kStageBackground);
    QPainter p(&stage);
    p.drawImage(0, 0, left);
    p.drawImage(left.width() + kStageGap, 0, right);
    p.end();
    QImageWriter writer(QString::fromStdString(path), "png");
    if (!writer.write(stage))
        return "cannot write " + path + ": " + writer.errorString().toStdString();
    return {};
}

}  // namespace window
