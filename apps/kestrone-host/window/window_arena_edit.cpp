// The arena editor in the arena's dock. While it is open the robot stands still: Start and the
// program's Run are off, the status bar and the editor's banner say so, and the world is not
// stepped. Closing it loads the edited arena's file into the world, as `world load` does.
#include <QMenu>
#include <QMessageBox>
#include <QStackedWidget>
#include <fstream>
#include <sstream>

#include "arena_editor.h"
#include "main_window.h"
#include "object_commands.h"

namespace window {

namespace {
const QString kArenas = QStringLiteral("Arenas (*.world);;All files (*)");
// A new arena's floor: room for a track and a maze.
constexpr double kNewWidth = 2000, kNewHeight = 1500;
}  // namespace

void MainWindow::build_arena_edit_menu(QMenu* file) {
    file->addAction(tr("&New arena"), this, [this] { new_arena(kNewWidth, kNewHeight); });
    file->addAction(tr("E&dit arena"), this, [this] { edit_arena(); });
    save_arena_ = file->addAction(tr("Save arena"), this, [this] { save_arena(); });
    save_arena_as_ = file->addAction(tr("Save arena as..."), this, [this] {
        const QString path = ask_save_path(this, tr("Save the arena as"), kArenas);
        if (!path.isEmpty()) save_arena_as(path.toStdString());
    });
}

bool MainWindow::editing_arena() const {
    return arena_editor_ && arena_stack_->currentWidget() == arena_editor_;
}

// The robot stops where it is; the dock shows the editor instead of the world.
void MainWindow::begin_arena_edit(world::ArenaDocument document, const std::string& path) {
    if (stage_.program().running()) stop_program();
    if (simulating()) runner_.perform(commands::Operation{"StopSimulation", false, {}});
    if (!arena_editor_) {
        arena_editor_ = new world::ArenaEditor(arena_stack_);
        arena_stack_->addWidget(arena_editor_);
        connect(arena_editor_, &world::ArenaEditor::closeRequested, this,
                [this] { close_arena_editor(); });
        connect(arena_editor_, &world::ArenaEditor::changed, this, [this] { after_action(); });
    }
    arena_editor_->set_document(std::move(document), path);
    arena_stack_->setCurrentWidget(arena_editor_);
    arena_dock_->show();
    arena_dock_->raise();
    after_action();
}

bool MainWindow::new_arena(double width, double height) {
    if (editing_arena() && !close_arena_editor()) return false;
    begin_arena_edit(world::ArenaDocument::blank(width, height), {});
    return true;
}

// The open arena's file, or a new arena when none is open.
bool MainWindow::edit_arena() {
    if (editing_arena()) return true;
    if (arena_path_.empty()) return new_arena(kNewWidth, kNewHeight);
    std::ifstream in(arena_path_, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    world::ArenaError error;
    auto document = world::ArenaDocument::read(text.str(), &error);
    if (!in || !document) {
        tell("The arena could not be edited: " + arena_path_ + ":" + std::to_string(error.line) +
             ": " + error.text);
        return false;
    }
    begin_arena_edit(std::move(*document), arena_path_);
    return true;
}

bool MainWindow::save_arena() {
    if (!editing_arena()) return false;
    if (!arena_editor_->path().empty()) return save_arena_as(arena_editor_->path());
    const QString path = ask_save_path(this, tr("Save the arena"), kArenas);
    return !path.isEmpty() && save_arena_as(path.toStdString());
}

bool MainWindow::save_arena_as(const std::string& path) {
    if (!editing_arena()) return false;
    std::string error;
    if (!arena_editor_->save_to(path, &error)) {
        tell("The arena could not be saved: " + error);
        return false;
    }
    remember_file(path);
    return true;
}

// Unsaved edits are saved, dropped or kept on asking; true to go on.
bool MainWindow::may_discard_arena() {
    if (!editing_arena() || !arena_editor_->modified()) return true;
    if (confirm_arena_discard_) return confirm_arena_discard_();
    const auto answer = QMessageBox::question(
        this, tr("Arena"), tr("The arena has unsaved changes. Save them first?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel) return false;
    return answer == QMessageBox::Discard || save_arena();
}

// The world takes the arena's file as last saved.
bool MainWindow::close_arena_editor() {
    if (!editing_arena()) return true;
    if (!may_discard_arena()) return false;
    const std::string path = arena_editor_->path();
    arena_stack_->setCurrentIndex(0);
    if (!path.empty()) open_arena(path);
    after_action();
    return true;
}

}  // namespace window
