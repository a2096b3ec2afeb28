// The window's files: projects (New, Open, Save, Save As), robot programs with their C, and the
// recording of what the user did.
#include <QFile>
#include <QFileInfo>
#include <sstream>

#include "code_command.h"
#include "error_text.h"
#include "main_window.h"
#include "user_file.h"
#include "value_syntax.h"

namespace window {

bool MainWindow::new_project() {
    if (!may_discard()) return false;
    player_.stop();
    clock_.pulse();
    session().new_project();
    recorder_.note("store clear");
    recorder_.note("new");
    recorder_.note("KestroneVersion = " + std::to_string(host::kHostVersion));
    const bool made = make_object(true);
    program_->hide();
    after_clock();
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
    recorder_.note("store load " + console::quote(path));
    recorder_.note("new");
    const bool made = make_object(false);
    if (made) {
        session().read_settings();
        recorder_.note("readprops");
        session().make_ready();
        recorder_.note("KestroneVersion = " + std::to_string(host::kHostVersion));
    }
    program_->hide();
    after_clock();
    return made;
}

bool MainWindow::save_project() {
    if (session().project_path().empty()) return false;
    return save_project_as(session().project_path());
}

// The object's settings go to the store first, as a host saves a project.
bool MainWindow::save_project_as(const std::string& path) {
    clock_.pulse();
    recorder_.note("writeprops");
    const kestrone::HRESULT hr = session().write_settings();
    std::string error;
    bool saved = false;
    if (kestrone::failed(hr))
        tell("The component could not save its settings (status " + console::status_text(hr) +
             ").");
    else if (!(saved = session().save_project_as(path, &error)))
        tell("The project could not be saved: " + error);
    update_title();
    return saved;
}

bool MainWindow::open_program(const std::string& path) {
    std::string error;
    if (!session().load_program(path, &error)) {
        tell("The program could not be opened: " + error);
        return false;
    }
    std::string text;
    host::read_user_file(path, host::kLargestTextFile, "a robot program", &text, nullptr);
    program_->show_program(QString::fromStdString(path), QString::fromStdString(text));
    program_->show();
    shown_line_ = -1;
    refresh_code();
    after_clock();
    return true;
}

// The C of the program with the settings the store holds now (the last save or open).
void MainWindow::refresh_code() {
    std::ostringstream code, notes;
    const kflow::CodeOptions options{program_->program_path().toStdString(), "", "(window)", false,
                                     session().module() ? session().module()->path() : ""};
    const host::StoreEntries entries = session().store().entries();
    const int status = kflow::run_code_command(
        options,
        [&entries](const std::string&, host::StoreEntries& out, std::string&) {
            out = entries;
            return true;
        },
        code, notes);
    program_->show_code(status == kflow::kCodeWritten
                            ? QString::fromStdString(code.str())
                            : QString::fromStdString("/* No C: " + notes.str() + " */"));
}

void MainWindow::run_program() {
    if (!session().has_program()) return tell("Open a program first.");
    clock_.pulse();
    // The console replays no program in real time: the recording says where it ran.
    recorder_.note("# the program " + program_->program_path().toStdString() +
                   " ran here in the window; it is not part of the replay");
    const kestrone::HRESULT hr = session().start_program();
    if (kestrone::failed(hr))
        tell("The program could not start (status " + console::status_text(hr) + ").");
    clock_.pulse();
    after_clock();
}

void MainWindow::stop_program() {
    session().stop_program("stopped by the user");
    clock_.pulse();
    after_clock();
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
    recorder_.note("# saved here");
    std::string error;
    if (recorder_.save(path, &error)) return true;
    tell(error);
    return false;
}

}  // namespace window
