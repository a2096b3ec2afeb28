// The program's run and its debugger in the window: Run, Pause, Step, Continue, Run to cursor and
// Stop, breakpoints from the editor's margin, and the editor, the variables and the actions
// following where the program stands. The program always runs the editor's text as it is now.
// It runs on the window's real clock; while paused the clock holds the stage still.
#include <QAction>
#include <QFileInfo>

#include "error_text.h"
#include "main_window.h"
#include "object_commands.h"

namespace window {

namespace {
const std::string kUntitled = "untitled.kflow";
}  // namespace

// The editor's text, saved or not, checked and loaded; its faults are told.
bool MainWindow::load_editor_program() {
    const QString path = program_->program_path();
    if (path.isEmpty() && editor()->text().trimmed().isEmpty()) {
        tell("Write a program or open one first.");
        return false;
    }
    const std::string name = path.isEmpty() ? kUntitled : path.toStdString();
    std::string error;
    if (!stage_.load_program_text(editor()->text().toStdString(), name, &error)) {
        tell("The program cannot run: " + error + "\nEvery problem is listed under Problems.");
        return false;
    }
    loaded_as_ = name;
    push_breakpoints();
    update_chart();  // the object is ready now: its macros chart the text that runs
    return true;
}

// Started under the debugger, stopped before its first statement.
bool MainWindow::begin_debugging() {
    clock_.pulse();
    if (!load_editor_program()) return false;
    // The console replays no program in real time: the recording says where it ran.
    recorder_.note_comment("the program " + loaded_as_ +
                           " ran here in the window; it is not part of the replay");
    const kestrone::HRESULT hr = stage_.debug_program();
    if (kestrone::failed(hr)) {
        tell("The program could not start (" + commands::Reply::error(hr).line() + ").");
        return false;
    }
    variables_->restart();
    return true;
}

void MainWindow::run_program() {
    if (stage_.program().paused()) return continue_program();
    if (!begin_debugging()) return after_action();
    stage::ProgramRun& program = stage_.program();
    // A breakpoint on its first statement holds it there.
    if (program.breakpoints().count(program.where()) == 0) program.go_on(stage_.now());
    clock_.pulse();
    after_action();
}

void MainWindow::pause_program() {
    clock_.pulse();
    stage_.program().pause(stage_.now());
    clock_.pulse();
    after_action();
}

// Running, it stops at the next statement that starts; not running, it starts stopped.
void MainWindow::step_program() {
    if (!stage_.program().running()) {
        begin_debugging();
        return after_action();
    }
    clock_.pulse();
    stage_.program().step(stage_.now());
    clock_.pulse();
    after_action();
}

void MainWindow::continue_program() {
    if (!stage_.program().running()) return run_program();
    clock_.pulse();
    stage_.program().go_on(stage_.now());
    clock_.pulse();
    after_action();
}

// To the statement at the caret's line or the first after it.
void MainWindow::run_to_cursor() {
    if (!stage_.program().running() && !begin_debugging()) return after_action();
    stage::ProgramRun& program = stage_.program();
    const std::optional<int> line = program.statement_at(editor()->caret_line());
    clock_.pulse();
    if (line)
        program.run_to(*line, stage_.now());
    else
        program.go_on(stage_.now());
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

void MainWindow::toggle_breakpoint() {
    editor()->toggle_breakpoint(editor()->caret_line());
    if (stage_.program().running()) push_breakpoints();
}

// The editor's breakpoints onto the program, each moved to its statement's line.
void MainWindow::push_breakpoints() {
    stage::ProgramRun& program = stage_.program();
    program.clear_breakpoints();
    std::set<int> placed;
    for (const int line : editor()->breakpoints())
        if (const auto at = program.set_breakpoint(line)) placed.insert(*at);
    editor()->set_breakpoints(placed);
}

void MainWindow::follow_program() {
    const stage::ProgramRun& program = stage_.program();
    // A program that a played script loaded comes into the editor, when that holds no edits.
    if (program.loaded() && program.path() != loaded_as_ && !editor()->isModified() &&
        QFileInfo::exists(QString::fromStdString(program.path()))) {
        loaded_as_ = program.path();
        show_program_file(loaded_as_);
    }
    const bool running = program.running(), paused = program.paused();
    const int line = paused ? program.where() : program.line();
    if (line != shown_line_) {
        shown_line_ = line;
        program_->show_line(line);
        chart_->set_running_line(line);
    }
    if (running) editor()->set_breakpoints(program.breakpoints());
    editor()->setReadOnly(running);
    variables_->follow();
    debug_.pause->setEnabled(running && !paused);
    debug_.go_on->setEnabled(paused);
    debug_.stop->setEnabled(running);
}

}  // namespace window
