#include "main_window.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <iostream>

#include "error_text.h"
#include "help_window.h"
#include "object_commands.h"
#include "project_file.h"
#include "properties_dialog.h"
#include "scope_dock.h"
#include "store_commands.h"
#include "value_syntax.h"

namespace window {

namespace {
constexpr const char* kProduct = "Rovanta";
}  // namespace

MainWindow::MainWindow(WindowOptions options, SteadyClock clock)
    : options_(std::move(options)),
      settings_(QString::fromStdString(options_.settings)),
      services_([this] { return project_name(); }),
      stage_(services_, {&host::load_project_file, &host::save_project_file}),
      clock_(stage_, std::move(clock)),
      recorder_([this] { return stage_.now(); }),
      runner_(context_, clock_, recorder_, [this] { after_action(); }),
      input_(runner_),
      player_(runner_, clock_) {
    services_.set_parent(this);
    context_.snapshot = [this](kestrone::IKestronePanel& panel, const std::string& path) {
        return snapshots_.write(panel, path);
    };
    // Unattended, the component's own boxes are answered at once, as the console does.
    if (options_.quit_after_play) services_.set_box_handler([](QWidget* box) { box->close(); });
    if (options_.zoom == 0) options_.zoom = std::max(settings_.zoom(), 1);
    program_ = new ProgramPane(this);
    setCentralWidget(program_);
    build_docks();
    status_ = new QLabel(this);
    // A long message is cut at the window's edge rather than widening the window.
    status_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(status_, 1);
    progress_ = new QProgressBar(this);
    progress_->setRange(0, 0);
    progress_->setMaximumWidth(120);
    progress_->hide();
    statusBar()->addPermanentWidget(progress_);
    build_lesson_dock();
    build_menus();
    connect(&clock_, &RealTimeClock::advanced, this, &MainWindow::after_action);
    connect(&player_, &ScriptPlayer::finished, this, &MainWindow::played_to_end);
    connect_program_parts();
    connect_chart();
    restore_layout();
    update_title();
}

MainWindow::~MainWindow() {
    player_.stop();
    clock_.stop();
}

bool MainWindow::start() {
    std::string error;
    if (!session().load_module(options_.module, &error)) {
        placeholder_->setText(tr("No component: %1").arg(QString::fromStdString(error)));
        tell("The component could not be loaded: " + error);
        return false;
    }
    bool opened = false;
    if (!options_.project.empty()) {
        opened = session().open_project(options_.project, &error);
        if (!opened) tell("The project could not be opened: " + error);
    }
    // A script plays against an object as the console makes it; a user's window gets one made
    // ready as a host does.
    recorder_.restart(stage_.now());
    if (opened) recorder_.note(commands::StoreFile{false, options_.project});
    if (!make_object(options_.play.empty() && !opened)) return false;
    if (opened) {
        runner_.perform(commands::StoreWalk{false});
        if (options_.play.empty()) make_object_ready();
    }
    set_zoom(options_.zoom);
    clock_.start();
    log_.start();
    // After the clock has started: an action brings the stage to the clock's now first.
    if (opened) open_project_links();
    if (!options_.world.empty() && !open_arena(options_.world)) exit_status_ = 1;
    if (!options_.lesson.empty() && !open_lesson(options_.lesson)) exit_status_ = 1;
    if (!options_.run.empty()) {
        if (open_program(options_.run)) run_program();
        if (!stage_.program().running()) exit_status_ = 1;
    }
    if (!options_.play.empty()) {
        if (!player_.load(options_.play, &error)) {
            tell(error);
            exit_status_ = 1;
            played_to_end();
            return true;
        }
        player_.play();
    } else if (!options_.snapshot.empty() || !options_.shot.empty() || options_.quit_after_play) {
        played_to_end();
    }
    return true;
}

// What a host tells a new object: the host's version, as the console's line for it.
void MainWindow::make_object_ready() {
    runner_.perform(commands::Operation{
        "KestroneVersion", true, {kestrone::Variant::long_(kestrone::kHostVersion)}});
}

bool MainWindow::make_object(bool ready) {
    const commands::Reply made = commands::make_object(context_);
    stage_.changed();  // a new object, made outside a command: the log reads it anew
    if (!made.is_ok()) {
        tell("The component could not make its object (" + made.line() + ").");
        follow_object();
        return false;
    }
    if (ready) make_object_ready();
    follow_object();
    follow_macros();  // the panel may have been followed before the object was ready
    return true;
}

// The view shows the object the session has now: a new one after New, Open or a script's `new`.
void MainWindow::follow_object() {
    kestrone::IKestronePanel* panel = session().panel();
    if (panel == shown_panel_) return;
    shown_panel_ = panel;
    follow_macros();
    if (!panel) {
        if (view_) view_->hide();
        placeholder_->show();
        return;
    }
    if (view_) {
        view_->reset(*panel);
    } else {
        view_ = new panelqt::PanelView(*panel, input_, placeholder_->parentWidget());
        view_->set_zoom(options_.zoom);
        // The panel keeps its size at each zoom; the area scrolls when it is larger.
        static_cast<QVBoxLayout*>(placeholder_->parentWidget()->layout())
            ->insertWidget(0, view_, 0, Qt::AlignLeft | Qt::AlignTop);
    }
    placeholder_->hide();
    view_->show();
    view_->setFocus();
}

void MainWindow::after_action() {
    follow_object();
    if (view_ && session().panel()) view_->refresh();
    follow_world();
    follow_program();
    update_status();
    update_title();
}

// With a program in the editor, Start runs it, as the host's Start runs the user's program;
// without one the panel simulates alone.
void MainWindow::start_simulation() {
    if (editing_arena()) return;
    if (!program_->program_path().isEmpty() || !editor()->text().trimmed().isEmpty())
        return run_program();
    runner_.perform(commands::Operation{"StartSimulation", false, {}});
}

// A running program stops with the simulation.
void MainWindow::stop_simulation() {
    if (stage_.program().running()) return stop_program();
    runner_.perform(commands::Operation{"StopSimulation", false, {}});
}

std::unique_ptr<PropertiesDialog> MainWindow::make_properties() {
    const commands::Reply opened = runner_.perform(commands::PageOpen{});
    if (!opened.is_ok() && !session().page_open()) {
        tell("The property page could not be opened (" + opened.line() + ").");
        return nullptr;
    }
    auto dialog = std::make_unique<PropertiesDialog>(
        runner_, [this](const std::string& text) { tell(text); }, options_.zoom, this);
    // The C follows the settings the object holds: an apply changes it at once.
    connect(dialog.get(), &PropertiesDialog::applied, this, &MainWindow::refresh_code);
    return dialog;
}

void MainWindow::show_properties() {
    if (auto dialog = make_properties()) {
        dialog->exec();
        after_action();
    }
}

bool MainWindow::simulating() {
    kestrone::Variant v;
    session().field("bSimulating", std::nullopt, "", &v);
    return !v.is_array() && v.type() == kestrone::VarType::Boolean && v.as_boolean();
}

void MainWindow::update_status() {
    QString state = !session().has_object() ? tr("No object")
                    : simulating()          ? tr("Simulating")
                                            : tr("Stopped");
    const stage::ProgramRun& program = stage_.program();
    if (program.paused())
        state += tr(" - program paused at line %1").arg(program.where());
    else if (program.running())
        state += tr(" - program at line %1").arg(program.line());
    else if (!program.message().empty())
        state += " - " + QString::fromStdString(program.message());
    if (player_.playing()) state += tr(" - playing");
    // Which inputs are the world's: each is set when its reading changes, and is the user's
    // between changes.
    if (world().loaded()) state += tr(" - the arena sets the line sensors, bumpers, LDR and IR");
    if (editing_arena()) state = tr("Editing arena - the robot runs when the editor is closed");
    const QString text = tr("%1    left wheel %2 ticks/s    right wheel %3 ticks/s")
                             .arg(state)
                             .arg(clock_.rate(0), 0, 'f', 0)
                             .arg(clock_.rate(1), 0, 'f', 0);
    // Called on every tick of the clock: only a change reaches the screen.
    if (text != status_->text()) status_->setText(text);
}

QString MainWindow::project_name() {
    const std::string& path = session().project_path();
    return path.empty() ? tr("Untitled")
                        : QFileInfo(QString::fromStdString(path)).completeBaseName();
}

void MainWindow::update_title() {
    const QString title = project_name() + "[*] - " + kProduct;
    if (title != windowTitle()) setWindowTitle(title);
    if (session().dirty() != isWindowModified()) setWindowModified(session().dirty());
    const QString path = program_->program_path();
    const QString tab = (path.isEmpty() ? tr("New program") : QFileInfo(path).fileName()) +
                        (editor()->isModified() ? "*" : "");
    if (program_->tabText(0) != tab) program_->setTabText(0, tab);
}

void MainWindow::tell(const std::string& text) {
    // Unattended (a script played to its end and quit): nobody would close a box.
    if (options_.quit_after_play) {
        std::cerr << "kestrone-host: " << console::escape_text(text) << std::endl;
        return;
    }
    services_.ShowMessage(text);
}

void MainWindow::played_to_end() {
    if (!player_.failures().empty()) exit_status_ = 1;
    // The lines that failed are said where the caller of a played script sees them.
    for (const std::string& failure : player_.failures())
        std::cerr << "kestrone-host: " << console::escape_text(failure) << "\n";
    if (!options_.snapshot.empty() && !write_snapshot(options_.snapshot)) exit_status_ = 1;
    if (!options_.shot.empty() && !write_shot(options_.shot)) exit_status_ = 1;
    if (options_.quit_after_play) {
        clock_.stop();
        // Later, so that the event loop has started when it is asked to end.
        QTimer::singleShot(0, this, [this] { QCoreApplication::exit(exit_status_); });
    }
}

// By the console's own snapshot, so that a window's picture and a headless replay's compare.
bool MainWindow::write_snapshot(const std::string& path) {
    kestrone::IKestronePanel* panel = session().panel();
    if (!panel) return false;
    const std::string why =
        world().loaded() ? write_stage(*panel, path) : snapshots_.write(*panel, path);
    if (why.empty()) return true;
    tell("Cannot write the picture " + path + ": " + why);
    return false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!may_discard() || !may_discard_program() || !may_discard_arena()) return event->ignore();
    player_.stop();
    clock_.stop();
    save_layout();
    event->accept();
}

bool MainWindow::may_discard() {
    if (!session().dirty()) return true;
    return confirm_discard_ ? confirm_discard_() : ask_discard();
}

bool MainWindow::ask_discard() {
    const auto answer = QMessageBox::question(
        this, project_name(), tr("The project has unsaved changes. Save them first?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel) return false;
    if (answer == QMessageBox::Discard) return true;
    return save_project();
}

}  // namespace window
