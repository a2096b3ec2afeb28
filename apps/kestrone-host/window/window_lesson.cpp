// A lesson in the window: its instructions in a dock beside the panel, its settings in a fresh
// object, its arena in the world and its starting program beside the panel, ready to run.
#include <QDockWidget>
#include <QTextBrowser>

#include "lesson.h"
#include "macro_table.h"
#include "main_window.h"
#include "object_commands.h"
#include "store_commands.h"

namespace window {

void MainWindow::build_lesson_dock() {
    lesson_dock_ = new QDockWidget(tr("Lesson"), this);
    lesson_dock_->setObjectName("lesson");
    lesson_text_ = new QTextBrowser(lesson_dock_);
    lesson_text_->setOpenExternalLinks(true);
    lesson_dock_->setWidget(lesson_text_);
    addDockWidget(Qt::RightDockWidgetArea, lesson_dock_);
    // A tab beside the chart, in front while a lesson is new: the instructions get the room.
    tabifyDockWidget(chart_, lesson_dock_);
    lesson_dock_->hide();
}

// A bad lesson is told with its file and what is wrong, and nothing of it is used.
bool MainWindow::open_lesson(const std::string& path) {
    if (!may_discard() || !may_discard_program()) return false;
    std::optional<kflow::MacroTable> macros;
    if (session().component()) macros = kflow::MacroTable::read(*session().component(), nullptr);
    std::string error, text;
    const auto lesson = lesson::read_lesson(path, macros ? &*macros : nullptr, &error, &text);
    if (!lesson) {
        tell("The lesson could not be opened: " + error);
        return false;
    }
    player_.stop();
    clock_.pulse();
    if (!take_lesson_settings(*lesson, path)) return false;
    if (lesson->arena && !stage_.world_driver().load_text(*lesson->arena, path, &error))
        tell("The lesson's arena could not be loaded: " + error);
    if (lesson->arena) {
        arena_path_.clear();
        recorder_.note_comment("the arena of the lesson " + path + " was loaded here");
    } else
        close_arena();
    program_->hide();
    file_.follow({}, {});
    if (lesson->program) {
        if (stage_.load_program_text(*lesson->program, path, &error)) {
            // The editor holds the lesson's program; the lesson's file is not a program to read.
            loaded_as_ = path;
            program_->show_program(QString::fromStdString(path),
                                   QString::fromStdString(*lesson->program));
            program_->show();
            update_chart();
            shown_line_ = -1;
            refresh_code();
        } else {
            tell("The lesson's program could not be loaded: " + error);
        }
    }
    show_lesson_text(*lesson);
    lesson_path_ = path;
    lesson_source_ = std::move(text);
    remember_file(path);
    after_action();
    return true;
}

void MainWindow::show_lesson_text(const lesson::Lesson& lesson) {
    lesson_dock_->setWindowTitle(QString::fromStdString(lesson.title));
    lesson_text_->setMarkdown(QString::fromStdString(lesson.instructions));
    lesson_dock_->show();
    lesson_dock_->raise();
}

// A new object that takes the lesson's settings as a host loads a project; the recording says
// the same in console lines.
bool MainWindow::take_lesson_settings(const lesson::Lesson& lesson, const std::string& path) {
    session().new_project();
    recorder_.note(commands::StoreClear{});
    for (const auto& [key, value] : lesson.settings)
        recorder_.note(commands::StoreSet{key, value});
    recorder_.note(commands::NewObject{});
    if (!make_object(false)) return false;
    recorder_.note(commands::StoreWalk{false});
    recorder_.note(commands::Operation{
        "KestroneVersion", true, {kestrone::Variant::long_(kestrone::kHostVersion)}});
    host::ObjectRecipe recipe;
    recipe.settings = &lesson.settings;
    recipe.settings_from = path;
    const kestrone::HRESULT hr = session().make_ready(recipe);
    if (kestrone::failed(hr))
        tell("The robot could not take the lesson's settings (" +
             commands::Reply::error(hr).line() + ").");
    return true;
}

}  // namespace window
