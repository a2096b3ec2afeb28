// The window's menus: each entry calls one action of the window.
#include <QActionGroup>
#include <QFileDialog>
#include <QMenuBar>

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
const QString kPrograms = QStringLiteral("Robot programs (*.kflow);;All files (*)");
const QString kArenas = QStringLiteral("Arenas (*.world);;All files (*)");
}  // namespace

void MainWindow::build_menus() {
    build_file_menu();
    QMenu* sim = menuBar()->addMenu(tr("&Simulation"));
    QAction* start = sim->addAction(tr("&Start"), this, [this] { start_simulation(); });
    start->setShortcut(Qt::Key_F5);
    QAction* stop = sim->addAction(tr("S&top"), this, [this] { stop_simulation(); });
    stop->setShortcut(Qt::SHIFT | Qt::Key_F5);
    reset_robot_ = sim->addAction(tr("&Reset robot"), this, [this] { reset_robot(); });
    sim->addSeparator();
    sim->addAction(tr("&Properties..."), this, [this] { show_properties(); });

    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* zooms = new QActionGroup(this);
    for (int z = 1; z <= 3; ++z) {
        QAction* a = view->addAction(tr("Zoom %1x").arg(z), this, [this, z] { set_zoom(z); });
        a->setCheckable(true);
        a->setChecked(z == options_.zoom);
        a->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + z)));
        zooms->addAction(a);
    }
    build_program_menu();
    view->addSeparator();
    QAction* scope = scope_->toggleViewAction();
    scope->setText(tr("&Scope"));
    view->addAction(scope);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&Contents"), this, [this] { show_help(); })->setShortcut(Qt::Key_F1);
}

void MainWindow::build_file_menu() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New project"), this, [this] { new_project(); })
        ->setShortcut(QKeySequence::New);
    file->addAction(tr("&Open project..."), this,
                    [this] {
                        const QString path = ask_open_path(this, tr("Open a project"), kProjects);
                        if (!path.isEmpty()) open_project(path.toStdString());
                    })
        ->setShortcut(QKeySequence::Open);
    file->addAction(tr("&Save project"), this,
                    [this] {
                        if (session().project_path().empty()) {
                            const QString path =
                                ask_save_path(this, tr("Save the project"), kProjects);
                            if (!path.isEmpty()) save_project_as(path.toStdString());
                        } else {
                            save_project();
                        }
                    })
        ->setShortcut(QKeySequence::Save);
    file->addAction(tr("Save project &as..."), this, [this] {
        const QString path = ask_save_path(this, tr("Save the project as"), kProjects);
        if (!path.isEmpty()) save_project_as(path.toStdString());
    });
    file->addSeparator();
    file->addAction(tr("Open ar&ena..."), this, [this] {
        const QString path = ask_open_path(this, tr("Open an arena"), kArenas);
        if (!path.isEmpty()) open_arena(path.toStdString());
    });
    close_arena_ = file->addAction(tr("&Close arena"), this, [this] { close_arena(); });
    file->addSeparator();
    file->addAction(tr("Save &recording..."), this, [this] {
        const QString path = ask_save_path(this, tr("Save the recording"), kScripts);
        if (!path.isEmpty()) save_recording(path.toStdString());
    });
    file->addAction(tr("Export &log..."), this, [this] {
        const QString path =
            ask_save_path(this, tr("Export the log of the signals"), tr("Logs (*.csv *.vcd)"));
        if (!path.isEmpty()) export_log(path.toStdString());
    });
    file->addAction(tr("&Play script..."), this, [this] {
        const QString path = ask_open_path(this, tr("Play a console script"), kScripts);
        std::string error;
        if (path.isEmpty()) return;
        if (!player_.load(path.toStdString(), &error)) return tell(error);
        player_.play();
    });
    file->addSeparator();
    file->addAction(tr("&Quit"), this, [this] { close(); })->setShortcut(QKeySequence::Quit);
}

void MainWindow::build_program_menu() {
    QMenu* program = menuBar()->addMenu(tr("&Program"));
    program->addAction(tr("&Open program..."), this, [this] {
        const QString path = ask_open_path(this, tr("Open a robot program"), kPrograms);
        if (!path.isEmpty()) open_program(path.toStdString());
    });
    program->addAction(tr("&Run"), this, [this] { run_program(); })->setShortcut(Qt::Key_F9);
    program->addAction(tr("&Stop"), this, [this] { stop_program(); })
        ->setShortcut(Qt::SHIFT | Qt::Key_F9);
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
