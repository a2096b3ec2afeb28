// The program in the editor: New, Open, Save and Save As, a file changed on disk coming in, the
// checks as the user types, the C made of it and the hex compiled from that C.
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressBar>
#include <QStatusBar>

#include "c_program.h"
#include "main_window.h"
#include "program.h"

namespace window {

namespace {
const QString kUntitled = QStringLiteral("untitled.kflow");

QString file_name(const QString& path) {
    return path.isEmpty() ? kUntitled : QFileInfo(path).fileName();
}
}  // namespace

void MainWindow::connect_program_parts() {
    ProgramEditor* e = editor();
    connect(e, &QsciScintilla::textChanged, this, &MainWindow::text_edited);
    connect(e, &QsciScintilla::modificationChanged, this, &MainWindow::update_title);
    connect(e, &ProgramEditor::breakpoints_changed, this, [this] {
        if (stage_.program().running()) push_breakpoints();
    });
    connect(&checker_, &ProgramChecker::checked, this, [this](const Problems& found) {
        editor()->show_problems(found);
        problems_->show_program_problems(found);
        if (program_->code_shown()) refresh_code();
        update_chart();
    });
    connect(chart_, &chartqt::ChartDock::line_clicked, this, [this](int line) {
        chart_->show_line(line);
        editor()->go_to(line, 1);
    });
    connect(problems_, &ProblemsView::go_to, e, &ProgramEditor::go_to);
    connect(&file_, &ProgramFile::changed_on_disk, this, &MainWindow::reload_program);
    connect(&hex_, &HexBuilder::finished, this, &MainWindow::hex_built);
    connect(program_, &QTabWidget::currentChanged, this, [this] {
        if (program_->code_shown()) refresh_code();
    });
    connect(program_, &ProgramPane::save_code_requested, this, [this] {
        const QString path = ask_save_path(this, tr("Save the C program"), tr("C (*.c)"));
        if (!path.isEmpty()) save_code(path.toStdString());
    });
    connect(program_, &ProgramPane::save_hex_requested, this, [this] {
        const QString path =
            ask_save_path(this, tr("Save the hex for the chip"), tr("Hex (*.hex)"));
        if (!path.isEmpty()) save_hex(path.toStdString());
    });
}

// The macro table is read once an object has been told the host's version, and kept for it.
void MainWindow::follow_macros() {
    if (session().component() == checked_against_ && checker_.has_macros()) return;
    checked_against_ = session().component();
    auto macros = stage::ProgramRun::macros_of(session(), nullptr, false);
    NameSet names;
    if (macros)
        for (const kflow::MacroInfo& m : macros->macros())
            if (!m.is_private) names.insert(m.name);
    editor()->set_macro_names(std::move(names));
    checker_.set_macros(std::move(macros));
    if (checker_.has_macros()) text_edited();
}

void MainWindow::update_chart() {
    follow_macros();
    if (const kflow::MacroTable* macros = checker_.macros())
        chart_->set_program(editor()->text().toStdString(),
                            file_name(program_->program_path()).toStdString(), *macros);
}

void MainWindow::text_edited() {
    follow_macros();
    checker_.text_changed(editor()->text(), file_name(program_->program_path()));
    if (!stage_.program().running() && shown_line_ > 0) {
        shown_line_ = 0;
        program_->show_line(0);
    }
}

bool MainWindow::new_program() {
    if (!may_discard_program()) return false;
    if (stage_.program().running()) stop_program();
    program_->show_program({}, {});
    file_.follow({}, {});
    update_title();
    return true;
}

bool MainWindow::open_program(const std::string& path) {
    if (!may_discard_program()) return false;
    if (stage_.program().running()) stop_program();
    return show_program_file(path);
}

bool MainWindow::show_program_file(const std::string& path) {
    const QString file = QString::fromStdString(path);
    QString text;
    std::string error;
    if (!ProgramFile::read(file, &text, &error)) {
        tell(error);
        return false;
    }
    program_->show_program(file, text);
    update_chart();
    file_.follow(file, text);
    remember_file(path);
    refresh_code();
    after_action();
    return true;
}

bool MainWindow::save_program() {
    if (program_->program_path().isEmpty()) return false;
    return save_program_as(program_->program_path().toStdString());
}

bool MainWindow::save_program_as(const std::string& path) {
    // A program saved as a lesson goes into the open one, or makes a new one.
    if (is_lesson_file(path))
        return lesson_path_.empty() ? new_lesson(path) : save_into_lesson(path);
    std::string error;
    if (!file_.write(QString::fromStdString(path), editor()->text(), &error)) {
        tell(error);
        return false;
    }
    program_->set_program_path(QString::fromStdString(path));
    editor()->setModified(false);
    remember_file(path);
    update_title();
    return true;
}

// Without edits the file's text comes in at once; with them, the user chooses.
void MainWindow::reload_program(const QString& text) {
    if (editor()->isModified()) {
        const bool take =
            confirm_reload_
                ? confirm_reload_()
                : QMessageBox::question(this, file_name(program_->program_path()),
                                        tr("The program was changed on disk. Take the file's "
                                           "text and lose your edits?")) == QMessageBox::Yes;
        if (!take) return;
    }
    int line = 0, index = 0;
    editor()->getCursorPosition(&line, &index);
    editor()->setText(text);
    editor()->setModified(false);
    editor()->setCursorPosition(line, index);
    update_title();
}

bool MainWindow::may_discard_program() {
    if (!editor()->isModified()) return true;
    if (confirm_program_discard_) return confirm_program_discard_();
    const auto answer = QMessageBox::question(
        this, file_name(program_->program_path()),
        tr("The program has unsaved changes. Save them first?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel) return false;
    if (answer == QMessageBox::Discard) return true;
    if (!program_->program_path().isEmpty()) return save_program();
    const QString path =
        ask_save_path(this, tr("Save the program"), tr("Robot programs (*.kflow)"));
    return !path.isEmpty() && save_program_as(path.toStdString());
}

bool MainWindow::open_file(const std::string& path) {
    const QString suffix = QFileInfo(QString::fromStdString(path)).suffix();
    if (suffix == QLatin1String("kflow")) return open_program(path);
    if (suffix == QLatin1String("world")) return open_arena(path);
    if (suffix == QLatin1String("klesson")) return open_lesson(path);
    return open_project(path);
}

void MainWindow::remember_file(const std::string& path) {
    settings_.add_recent(QString::fromStdString(path));
    fill_recent_menu();
}

// A project opens to the program and the arena it was saved with.
void MainWindow::open_project_links() {
    const host::ProjectLinks links = session().project_links();
    if (!links.program.empty()) open_program(links.program);
    if (!links.arena.empty()) open_arena(links.arena);
}

// The C of the editor's program with the settings the object holds now: an applied setting
// shows at once.
void MainWindow::refresh_code() {
    kestrone::IKestroneComponentV5* component = session().component();
    std::string why = "there is no component";
    const auto macros = component ? stage::ProgramRun::macros_of(session(), &why) : std::nullopt;
    const std::string name = file_name(program_->program_path()).toStdString();
    if (!macros)
        return program_->show_code(QString::fromStdString("/* No C: " + why + " */"), false);
    const kflow::CheckedProgram checked =
        kflow::check_program(editor()->text().toStdString(), name, *macros);
    if (!checked.program)
        return program_->show_code(tr("/* No C: the program has %n error(s), listed under "
                                      "Problems. */",
                                      nullptr, static_cast<int>(checked.faults.size())),
                                   false);
    const auto code = kflow::read_component_code(*component, *checked.program, &why);
    program_->show_code(
        QString::fromStdString(code ? kflow::write_c_program(*checked.program, *code, name)
                                    : "/* No C: " + why + " */"),
        code.has_value());
}

bool MainWindow::save_hex(const std::string& path) {
    refresh_code();
    if (!program_->code_whole()) {
        tell("There is no C to compile: the program has errors (see Problems).");
        return false;
    }
    if (!hex_.build(program_->code(), QString::fromStdString(path))) {
        tell("The hex could not be started: a build is under way, or the C cannot be written.");
        return false;
    }
    program_->set_compiling(true);
    progress_->show();
    problems_->show_compiler_messages({});
    return true;
}

void MainWindow::hex_built(bool ok, const QString& why, const QStringList& messages) {
    program_->set_compiling(false);
    progress_->hide();
    problems_->show_compiler_messages(messages);
    if (hex_.compiler_missing()) {
        program_->set_hex_unavailable(why);
        // Said once, plainly: the button says it after.
        if (!std::exchange(told_compiler_missing_, true)) tell(why.toStdString());
        return;
    }
    if (!ok) tell("The hex could not be made: " + why.toStdString() + ".");
}

}  // namespace window
