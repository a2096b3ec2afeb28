// A lesson's files in the window: the student's program saved into the lesson (every other byte
// of it kept), or into a copy under a new name; and a new lesson made of the open program, arena
// and settings, its title, instructions and checks edited in a dialog.
#include <QFileInfo>

#include "file_save.h"
#include "lesson.h"
#include "lesson_dialog.h"
#include "lesson_writer.h"
#include "main_window.h"
#include "store_commands.h"
#include "user_file.h"

namespace window {

bool is_lesson_file(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).suffix() == QLatin1String("klesson");
}

bool MainWindow::save_into_lesson(const std::string& path) {
    if (lesson_path_.empty()) {
        tell("No lesson is open: File > New lesson makes one of the program.");
        return false;
    }
    std::string why;
    const auto text = lesson::with_program(lesson_source_, editor()->text().toStdString(), &why);
    if (!text) {
        tell("The lesson could not be saved: " + lesson_path_ + ": " + why);
        return false;
    }
    if (!write_lesson_file(path, *text)) return false;
    show_saved_lesson(path, *text);
    return true;
}

// What the window would refuse to open is refused before anything is written.
bool MainWindow::write_lesson_file(const std::string& path, const std::string& text) {
    follow_macros();
    std::string why;
    if (!lesson::parse_lesson(text, checker_.macros(), &why)) {
        tell("The lesson was not saved: " + path + ": " + why +
             "\nA lesson keeps only a program that passes its checks (see Problems); Save program "
             "as saves it as a program file.");
        return false;
    }
    if (!host::save_user_file(path, text, &why)) {
        tell("The lesson could not be saved: " + path + ": " + why);
        return false;
    }
    return true;
}

// The editor's program now belongs to the lesson at `path`, which holds `text`.
void MainWindow::show_saved_lesson(const std::string& path, const std::string& text) {
    lesson_source_ = text;
    lesson_path_ = path;
    file_.follow({}, {});
    program_->set_program_path(QString::fromStdString(path));
    editor()->setModified(false);
    remember_file(path);
    update_title();
}

// The open arena's text: its file's, or that of the lesson it came with.
std::optional<std::string> MainWindow::open_arena_text() {
    if (!world().loaded()) return std::nullopt;
    if (arena_path_.empty()) {
        const auto open = lesson::parse_lesson(lesson_source_, nullptr, nullptr);
        return open ? open->arena : std::nullopt;
    }
    std::string text, why;
    if (host::read_user_file(arena_path_, host::kLargestTextFile, "an arena", &text, &why))
        return text;
    tell("The arena is left out of the lesson: " + arena_path_ + ": " + why);
    return std::nullopt;
}

bool MainWindow::new_lesson(const std::string& path) {
    LessonDialog dialog(this);
    const auto open = lesson::parse_lesson(lesson_source_, nullptr, nullptr);
    if (open)
        dialog.set_lesson(open->title, open->instructions, open->checks);
    else
        dialog.set_lesson(QFileInfo(program_->program_path()).completeBaseName().toStdString(), {},
                          {"run program 20000"});
    if (edit_lesson_ ? !edit_lesson_(dialog) : dialog.exec() != QDialog::Accepted) return false;
    std::string target = path;
    if (target.empty())
        target =
            ask_save_path(this, tr("Save the new lesson"), tr("Lessons (*.klesson)")).toStdString();
    if (target.empty()) return false;

    lesson::Lesson l;
    l.title = dialog.title();
    l.instructions = dialog.instructions();
    l.checks = dialog.checks();
    l.arena = open_arena_text();
    if (const QString program = editor()->text(); !program.isEmpty())
        l.program = program.toStdString();
    // The object's settings as a project's save takes them.
    const commands::Reply written = runner_.perform(commands::StoreWalk{true});
    if (!written.is_ok()) {
        tell("The component could not save its settings (" + written.line() + ").");
        return false;
    }
    l.settings = session().store().entries();
    const std::string text = lesson::write_lesson(l);
    if (!write_lesson_file(target, text)) return false;
    show_saved_lesson(target, text);
    show_lesson_text(l);
    return true;
}

}  // namespace window
