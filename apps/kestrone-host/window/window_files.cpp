// The window's files: projects (New, Open, Save, Save As), the C of the program, and the
// recording of what the user did.
#include <QFile>
#include <QFileInfo>

#include "log_file.h"
#include "main_window.h"
#include "object_commands.h"
#include "store_commands.h"

namespace window {

bool MainWindow::new_project() {
    if (!may_discard()) return false;
    player_.stop();
    clock_.pulse();
    session().new_project();
    recorder_.note(commands::StoreClear{});
    recorder_.note(commands::NewObject{});
    const bool made = make_object(true);
    after_action();
    return made;
}

// A file that cannot be read leaves the open project, its object and its changes as they were.
bool MainWindow::open_project(const std::string& path) {
    if (!may_discard()) return false;
    clock_.pulse();
    std::string error;
    if (!session().open_project(path, &error)) {
        tell("The project could not be opened: " + error);
        update_title();
        return false;
    }
    player_.stop();
    recorder_.note(commands::StoreFile{false, path});
    recorder_.note(commands::NewObject{});
    const bool made = make_object(false);
    if (made) {
        runner_.perform(commands::StoreWalk{false});
        make_object_ready();
    }
    remember_file(path);
    after_action();
    if (made) open_project_links();
    return made;
}

bool MainWindow::save_project() {
    if (session().project_path().empty()) return false;
    return save_project_as(session().project_path());
}

// The object's settings go to the store first, as a host saves a project, and the project keeps
// the program and the arena open now.
bool MainWindow::save_project_as(const std::string& path) {
    session().set_project_links({program_->program_path().toStdString(), arena_path_});
    const commands::Reply written = runner_.perform(commands::StoreWalk{true});
    std::string error;
    bool saved = false;
    if (!written.is_ok())
        tell("The component could not save its settings (" + written.line() + ").");
    else if (!(saved = session().save_project_as(path, &error)))
        tell("The project could not be saved: " + error);
    if (saved) remember_file(path);
    update_title();
    return saved;
}

bool MainWindow::save_code(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(program_->code().toUtf8()) < 0) {
        tell("Cannot write the C program " + path);
        return false;
    }
    return true;
}

// The time up to the save is part of the recording: a replay ends where the window stands.
bool MainWindow::save_recording(const std::string& path) {
    clock_.pulse();
    recorder_.note_comment("saved here");
    std::string error;
    if (recorder_.save(path, &error)) return true;
    tell(error);
    return false;
}

bool MainWindow::export_log(const std::string& path) {
    std::string why;
    if (signal_log::export_log(log_, path, &why)) return true;
    tell("The log could not be written: " + why);
    return false;
}

}  // namespace window
