// The window's menus: each entry calls one action of the window.
#include <QActionGroup>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>

#include "examples_folder.h"
#include "help_window.h"
#include "main_window.h"
#include "scope_dock.h"

namespace window {

QString ask_open_path(QWidget* parent, const QString& title, const QString& filter) {
    return QFileDialog::getOpenFileName(parent, title, {}, filter);
}

QString ask_save_path(QWidget* parent, const QString& title, const QString& filter) {
    return QFileDialog::getSaveFileName(parent, title, {}, filter);
}

namespace {
const QString kProjects = QStringLiteral("Projects (*.kproj *.json);;All files (*)");
const QString kScripts = QStringLiteral("Console scripts (*.console);;All files (*)");
const QString kPrograms =
    QStringLiteral("Robot programs (*.kflow);;Lessons (*.klesson);;All files (*)");
const QString kArenas = QStringLiteral("Arenas (*.world);;All files (*)");
const QString kLessons = QStringLiteral("Lessons (*.klesson);;All files (*)");

// An entry that asks for a file to open (or to save to) and hands its name on.
template <class Then>
QAction* file_entry(QMenu* menu, QWidget* parent, const QString& text, const QString& title,
                    const QString& filter, bool save, Then then) {
    return menu->addAction(text, parent, [=] {
        const QString path =
            save ? ask_save_path(parent, title, filter) : ask_open_path(parent, title, filter);
        if (!path.isEmpty()) then(path.toStdString());
    });
}
}  // namespace

void MainWindow::build_menus() {
    build_file_menu();
    build_program_menu();
    build_debug_menu();
    QMenu* sim = menuBar()->addMenu(tr("&Simulation"));
    start_action_ = sim->addAction(tr("&Start"), this, [this] { start_simulation(); });
    start_action_->setShortcut(Qt::Key_F5);
    sim->addAction(tr("S&top"), this, [this] { stop_simulation(); })
        ->setShortcut(Qt::SHIFT | Qt::Key_F5);
    reset_robot_ = sim->addAction(tr("&Reset robot"), this, [this] { reset_robot(); });
    sim->addSeparator();
    sim->addAction(tr("&Properties..."), this, [this] { show_properties(); });
    build_view_menu();
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&Contents"), this, [this] { show_help(); })->setShortcut(Qt::Key_F1);
}

void MainWindow::build_file_menu() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New project"), this, [this] { new_project(); });
    file_entry(file, this, tr("&Open project..."), tr("Open a project"), kProjects, false,
               [this](const std::string& p) { open_project(p); });
    file->addAction(tr("&Save project"), this, [this] {
        if (!session().project_path().empty()) return void(save_project());
        const QString path = ask_save_path(this, tr("Save the project"), kProjects);
        if (!path.isEmpty()) save_project_as(path.toStdString());
    });
    file_entry(file, this, tr("Save project &as..."), tr("Save the project as"), kProjects, true,
               [this](const std::string& p) { save_project_as(p); });
    file->addSeparator();
    file_entry(file, this, tr("Open ar&ena..."), tr("Open an arena"), kArenas, false,
               [this](const std::string& p) { open_arena(p); });
    close_arena_ = file->addAction(tr("&Close arena"), this, [this] { close_arena(); });
    build_arena_edit_menu(file);
    file_entry(file, this, tr("Open &lesson..."), tr("Open a lesson"), kLessons, false,
               [this](const std::string& p) { open_lesson(p); });
    file->addAction(tr("New lesso&n..."), this, [this] { new_lesson(); });
    file_entry(file, this, tr("Save lesson as..."), tr("Save the lesson as"), kLessons, true,
               [this](const std::string& p) { save_into_lesson(p); });
    file->addSeparator();
    recent_menu_ = file->addMenu(tr("Recent &files"));
    fill_recent_menu();
    fill_examples_menu(file->addMenu(tr("E&xamples")));
    file->addSeparator();
    file_entry(file, this, tr("Export &log..."), tr("Export the log of the signals"),
               tr("Logs (*.csv *.vcd)"), true, [this](const std::string& p) { export_log(p); });
    file_entry(file, this, tr("Save &recording..."), tr("Save the recording"), kScripts, true,
               [this](const std::string& p) { save_recording(p); });
    file_entry(file, this, tr("&Play script..."), tr("Play a console script"), kScripts, false,
               [this](const std::string& p) {
                   std::string error;
                   if (!player_.load(p, &error)) return tell(error);
                   player_.play();
               });
    file->addSeparator();
    file->addAction(tr("&Quit"), this, [this] { close(); })->setShortcut(QKeySequence::Quit);
}

void MainWindow::fill_recent_menu() {
    recent_menu_->clear();
    for (const QString& path : settings_.recent())
        recent_menu_->addAction(path, this, [this, path] {
            if (!QFileInfo::exists(path)) settings_.remove_recent(path);
            open_file(path.toStdString());
        });
    recent_menu_->setEnabled(!recent_menu_->isEmpty());
}

// The shipped programs, arenas and lessons open; the demonstrations play.
void MainWindow::fill_examples_menu(QMenu* menu) {
    const QString folder = examples_folder();
    const auto add = [&](const QString& title, const QString& pattern, auto then) {
        QMenu* sub = menu->addMenu(title);
        for (const QString& path : example_files(folder, pattern))
            sub->addAction(QFileInfo(path).fileName(), this, [then, path] { then(path); });
        sub->setEnabled(!sub->isEmpty());
    };
    add(tr("&Programs"), QStringLiteral("*.kflow"),
        [this](const QString& p) { open_program(p.toStdString()); });
    add(tr("&Arenas"), QStringLiteral("*.world"),
        [this](const QString& p) { open_arena(p.toStdString()); });
    add(tr("&Lessons"), QStringLiteral("lessons/*.klesson"),
        [this](const QString& p) { open_lesson(p.toStdString()); });
    add(tr("&Demonstrations"), QStringLiteral("demo-*.console"), [this](const QString& p) {
        std::string error;
        if (!player_.load(p.toStdString(), &error)) return tell(error);
        player_.play();
    });
}

void MainWindow::build_program_menu() {
    QMenu* program = menuBar()->addMenu(tr("&Program"));
    program->addAction(tr("&New program"), this, [this] { new_program(); })
        ->setShortcut(QKeySequence::New);
    file_entry(program, this, tr("&Open program..."), tr("Open a robot program"), kPrograms, false,
               [this](const std::string& p) { open_program(p); })
        ->setShortcut(QKeySequence::Open);
    const auto save_as = [this](const std::string& p) { save_program_as(p); };
    program
        ->addAction(tr("&Save program"), this,
                    [this, save_as] {
                        if (save_program()) return;
                        const QString path = ask_save_path(this, tr("Save the program"), kPrograms);
                        if (!path.isEmpty()) save_as(path.toStdString());
                    })
        ->setShortcut(QKeySequence::Save);
    file_entry(program, this, tr("Save program &as..."), tr("Save the program as"), kPrograms, true,
               save_as)
        ->setShortcut(QKeySequence::SaveAs);
    program->addSeparator();
    program->addAction(tr("Save &C..."), program_, &ProgramPane::save_code_requested);
    program->addAction(tr("Save &hex..."), program_, &ProgramPane::save_hex_requested);
}

void MainWindow::build_debug_menu() {
    QMenu* debug = menuBar()->addMenu(tr("&Debug"));
    const auto add = [&](const QString& text, QKeySequence keys, void (MainWindow::*act)()) {
        QAction* a = debug->addAction(text, this, [this, act] { (this->*act)(); });
        a->setShortcut(keys);
        return a;
    };
    debug_.run = add(tr("&Run"), Qt::Key_F9, &MainWindow::run_program);
    debug_.pause = add(tr("&Pause"), Qt::Key_F6, &MainWindow::pause_program);
    debug_.step = add(tr("&Step"), Qt::Key_F10, &MainWindow::step_program);
    debug_.go_on = add(tr("&Continue"), Qt::Key_F8, &MainWindow::continue_program);
    debug_.run_to = add(tr("Run to &cursor"), Qt::CTRL | Qt::Key_F10, &MainWindow::run_to_cursor);
    debug_.stop = add(tr("S&top"), Qt::SHIFT | Qt::Key_F9, &MainWindow::stop_program);
    debug->addSeparator();
    add(tr("Toggle &breakpoint"), Qt::CTRL | Qt::Key_B, &MainWindow::toggle_breakpoint);
}

void MainWindow::build_view_menu() {
    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* zooms = new QActionGroup(this);
    for (int z = 1; z <= 3; ++z) {
        QAction* a = view->addAction(tr("Zoom %1x").arg(z), this, [this, z] { set_zoom(z); });
        a->setCheckable(true);
        a->setChecked(z == options_.zoom);
        a->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + z)));
        zooms->addAction(a);
    }
    view->addSeparator();
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        view->addAction(dock->toggleViewAction());
}

void MainWindow::show_help() {
    const QString folder = help_folder(QString::fromStdString(options_.module));
    if (!HelpWindow::available(folder))
        return tell("The help pages are not installed in " + folder.toStdString());
    auto* help = new HelpWindow(folder, this);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->show();
}

}  // namespace window
