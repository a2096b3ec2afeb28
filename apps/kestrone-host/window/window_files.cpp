// The window's files: projects (New, Open, Save, Save As), robot programs with their C, and the
// recording of what the user did.
#include <QFile>
#include <QFileInfo>
#include <sstream>

#include "c_program.h"
#include "log_file.h"
#include "main_window.h"
#include "object_commands.h"
#include "store_commands.h"
#include "user_file.h"

namespace window {

bool MainWindow::new_project() {
    if (!may_discard()) return false;
    player_.stop();
    clock_.pulse();
    session().new_project();
    recorder_.note(commands::StoreClear{});
    recorder_.note(commands::NewObject{});
    const bool made = make_object(true);
    program_->hide();
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
    program_->hide();
    after_action();
    return made;
}

bool MainWindow::save_project() {
    if (session().project_path().empty()) return false;
    return save_project_as(session().project_path());
}

// The object's settings go to the store first, as a host saves a project.
bool MainWindow::save_project_as(const std::string& path) {
    const commands::Reply written = runner_.perform(commands::StoreWalk{true});
    std::string error;
    bool saved = false;
    if (!written.is_ok())
        tell("The component could not save its settings (" + written.line() + ").");
    else if (!(saved = session().save_project_as(path, &error)))
        tell("The project could not be saved: " + error);
    update_title();
    return saved;
}

bool MainWindow::open_program(const std::string& path) {
    std::string error;
    if (!stage_.load_program(path, &error)) {
        tell("The program could not be opened: " + error);
        return false;
    }
    std::string text;
    host::read_user_file(path, host::kLargestTextFile, "a robot program", &text, nullptr);
    program_->show_program(QString::fromStdString(path), QString::fromStdString(text));
    program_->show();
    shown_line_ = -1;
    refresh_code();
    after_action();
    return true;
}

// The C of the program with the settings the object holds now: an applied setting shows at once.
void MainWindow::refresh_code() {
    const kflow::Program* program = stage_.program().program();
    kestrone::IKestroneComponentV5* component = session().component();
    if (!program || !component) return;
    std::string error;
    const auto code = kflow::read_component_code(*component, *program, &error);
    const std::string name = QFileInfo(program_->program_path()).fileName().toStdString();
    program_->show_code(code ? QString::fromStdString(kflow::write_c_program(*program, *code, name))
                             : QString::fromStdString("/* No C: " + error + " */"));
}

void MainWindow::run_program() {
    if (!stage_.program().loaded()) return tell("Open a program first.");
    clock_.pulse();
    // The console replays no program in real time: the recording says where it ran.
    recorder_.note_comment("the program " + stage_.program().path() +
                           " ran here in the window; it is not part of the replay");
    const kestrone::HRESULT hr = stage_.start_program();
    if (kestrone::failed(hr))
        tell("The program could not start (" + commands::Reply::error(hr).line() + ").");
    clock_.pulse();
    after_action();
}

// Stopped where it stands, and the simulation with it, whether the program still ran or not.
void MainWindow::stop_program() {
    clock_.pulse();
    if (stage_.program().running())
        stage_.program().stop("stopped by the user");
    else
        runner_.perform(commands::Operation{"StopSimulation", false, {}});
    clock_.pulse();
    after_action();
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
