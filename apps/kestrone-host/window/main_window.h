// kestrone-host's window: a workbench for a robot program beside the robot. The program's editor
// is the work area; the panel, the arena, the program's variables and its problems stand in dock
// areas around it. Start and Stop, the debugger, zoom, the property dialog, project and program
// files, help, and the recording and playing of console scripts. A thin face of the stage: every
// action on the robot is a command, run and recorded by the action runner.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "action_recorder.h"
#include "action_runner.h"
#include "chart_dock.h"
#include "hex_builder.h"
#include "panel_snapshot.h"
#include "panel_view.h"
#include "problems_view.h"
#include "program_checker.h"
#include "program_file.h"
#include "program_pane.h"
#include "real_time_clock.h"
#include "script_player.h"
#include "signal_log.h"
#include "stage.h"
#include "variables_view.h"
#include "view_input.h"
#include "window_services.h"
#include "window_settings.h"
#include "world_view.h"

namespace world {
class ArenaEditor;
class ArenaDocument;
}  // namespace world

class QAction;
class QDockWidget;
class QMenu;
class QProgressBar;
class QScrollArea;
class QStackedWidget;
class QTextBrowser;

namespace lesson {
struct Lesson;
}

namespace window {

class LessonDialog;
class PropertiesDialog;
class ScopeDock;

// The file dialogs; an empty name when the user cancels.
QString ask_open_path(QWidget* parent, const QString& title, const QString& filter);
QString ask_save_path(QWidget* parent, const QString& title, const QString& filter);
// A name ending in .klesson.
bool is_lesson_file(const std::string& path);

struct WindowOptions {
    std::string module;    // the component module
    std::string play;      // a console script to play in real time
    std::string project;   // a project file to open
    int zoom = 0;          // 1, 2 or 3; 0: as the window was last left (1 the first time)
    std::string world;     // an arena to open
    std::string lesson;    // a lesson to open
    std::string run;       // a robot program to open and run at once
    std::string snapshot;  // a PNG of the panel (and world), written once the script has played
    std::string shot;      // a PNG of the whole window, written then too
    std::string settings;  // a settings file of the window's own; empty: the user's settings
    bool quit_after_play = false;
    bool scope = false;  // the scope shown from the start
};

class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindow(WindowOptions options, SteadyClock clock = &steady_ms);
    ~MainWindow() override;

    // Loads the module, opens the project, makes the object and starts the clock; then plays the
    // script if one was given. False when there is no object to show (the user has been told).
    bool start();

    // ---- The robot (main_window.cpp, window_layout.cpp)
    void start_simulation();
    void stop_simulation();
    void set_zoom(int zoom);
    int zoom() const { return options_.zoom; }
    void show_properties();
    // The dialog for the open page, not yet shown (show_properties runs it modally).
    std::unique_ptr<PropertiesDialog> make_properties();
    // The size of a first start on a screen of `available` room: everything readable, nothing
    // past the screen's edge.
    static QSize first_size(const QSize& available);

    // ---- Files (window_files.cpp, window_program.cpp)
    bool new_project();
    bool open_project(const std::string& path);
    bool save_project();
    bool save_project_as(const std::string& path);
    bool new_program();
    // Into the editor; false when it cannot be read (the user is told).
    bool open_program(const std::string& path);
    bool save_program();
    bool save_program_as(const std::string& path);
    // A file of Recent files or Examples, opened by its kind: a program, an arena or a project.
    bool open_file(const std::string& path);
    bool save_recording(const std::string& path);
    // The signals since the window started (log.h keeps the newest hour), CSV or VCD by the
    // file's extension; false with the user told when it fails.
    bool export_log(const std::string& path);
    const signal_log::SignalLog& signal_log() const { return log_; }
    ScopeDock* scope() const { return scope_; }
    bool save_code(const std::string& path);
    // Compiles the C for the chip off the interface's thread; the .hex goes to `path`.
    bool save_hex(const std::string& path);
    void show_help();

    // ---- The program and its debugger (window_debug.cpp). Each runs the editor's text.
    void run_program();  // runs to a breakpoint; paused, goes on
    void pause_program();
    void step_program();  // to the next line that runs; not running, starts stopped at the first
    void continue_program();
    void run_to_cursor();
    void stop_program();
    void toggle_breakpoint();  // at the editor's caret

    // ---- The arena beside the panel (window_world.cpp): a bad file is told and leaves the world
    // as it was.
    bool open_arena(const std::string& path);
    void close_arena();
    // A lesson (window_lesson.cpp): its settings, arena, program and instructions; a bad one is
    // told with its file and what is wrong, and changes nothing.
    bool open_lesson(const std::string& path);
    // window_lesson_files.cpp: the editor's program saved into the open lesson, at its own file
    // or at a new one, every other byte of the lesson kept; a new lesson of the open program,
    // arena and settings, its title, instructions and checks edited in a dialog first (the file
    // asked for after it when `path` is empty). False with the user told when it fails.
    bool save_into_lesson(const std::string& path);
    bool new_lesson(const std::string& path = {});
    const std::string& lesson_path() const { return lesson_path_; }
    // Tests fill the new lesson's dialog themselves (true: OK).
    void set_edit_lesson(std::function<bool(LessonDialog&)> edit) {
        edit_lesson_ = std::move(edit);
    }
    // The arena editor (window_arena_edit.cpp): a new arena or the open one edited in the arena's
    // dock; the robot runs again when it is closed, in the arena as saved.
    bool new_arena(double width, double height);
    bool edit_arena();
    bool save_arena();
    bool save_arena_as(const std::string& path);
    bool close_arena_editor();  // false when the user goes on editing
    bool editing_arena() const;
    world::ArenaEditor* arena_editor() const { return arena_editor_; }
    void set_confirm_arena_discard(std::function<bool()> confirm) {
        confirm_arena_discard_ = std::move(confirm);
    }
    void reset_robot();
    // The panel as it stands to a PNG: at a zoom of 1, as the console's snapshot; with an arena,
    // the panel and the world side by side at the window's zoom. False with the user told when
    // it fails.
    bool write_snapshot(const std::string& path);
    // The whole window as it stands to a PNG.
    bool write_shot(const std::string& path);

    stage::Stage& stage() { return stage_; }
    host::ComponentSession& session() { return stage_.session(); }
    RealTimeClock& clock() { return clock_; }
    ActionRunner& runner() { return runner_; }
    ViewInput& input() { return input_; }
    ActionRecorder& recorder() { return recorder_; }
    WindowServices& services() { return services_; }
    ScriptPlayer& player() { return player_; }
    WindowSettings& settings() { return settings_; }
    ProgramPane* program_pane() const { return program_; }
    ProgramEditor* editor() const { return program_->editor(); }
    ProblemsView* problems() const { return problems_; }
    VariablesView* variables() const { return variables_; }
    ProgramChecker& checker() { return checker_; }
    HexBuilder& hex() { return hex_; }
    chartqt::ChartDock* chart_dock() const { return chart_; }
    panelqt::PanelView* view() const { return view_; }
    QScrollArea* panel_area() const { return panel_area_; }
    world::WorldView* world_view() const { return world_view_; }
    world::World& world() { return stage_.world(); }
    QString status_text() const { return status_->text(); }
    // The questions the user answers; tests give their own answers. Unsaved changes of the
    // project (true: go on), of the program (true: go on), and a program changed on disk while
    // the editor holds edits (true: take the file's).
    void set_confirm_discard(std::function<bool()> confirm) {
        confirm_discard_ = std::move(confirm);
    }
    void set_confirm_program_discard(std::function<bool()> confirm) {
        confirm_program_discard_ = std::move(confirm);
    }
    void set_confirm_reload(std::function<bool()> confirm) { confirm_reload_ = std::move(confirm); }
    // The failures of the last play, and the exit status for --quit-after-play.
    int exit_status() const { return exit_status_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    // window_menus.cpp
    void build_menus();
    void build_file_menu();
    void build_program_menu();
    void build_debug_menu();
    void build_view_menu();
    void fill_recent_menu();
    void fill_examples_menu(QMenu* menu);
    // window_layout.cpp
    void build_docks();
    QDockWidget* add_dock(const QString& title, const QString& name, QWidget* content,
                          Qt::DockWidgetArea area);
    void restore_layout();
    void save_layout();
    // main_window.cpp
    bool make_object(bool ready);
    void make_object_ready();
    void follow_object();
    void after_action();
    void update_title();
    void update_status();
    void tell(const std::string& text);
    bool may_discard();
    bool ask_discard();
    void played_to_end();
    QString project_name();
    bool simulating();
    // window_program.cpp
    void connect_program_parts();
    void refresh_code();
    void follow_macros();
    // The chart follows the editor's text whenever that passes the checks.
    void update_chart();
    void text_edited();
    void reload_program(const QString& text);
    // Into the editor as it stands, nothing asked and nothing stopped.
    bool show_program_file(const std::string& path);
    bool may_discard_program();
    void remember_file(const std::string& path);
    void open_project_links();
    void hex_built(bool ok, const QString& why, const QStringList& messages);
    // window_chart.cpp: edits and breakpoints made on the chart, into the editor.
    void connect_chart();
    // window_debug.cpp
    bool load_editor_program();
    bool begin_debugging();
    void follow_program();
    void push_breakpoints();
    // window_world.cpp
    void build_world_view();
    void follow_world();
    void robot_put_down();
    std::string write_stage(kestrone::IKestronePanel& panel, const std::string& path);
    // window_arena_edit.cpp
    void build_arena_edit_menu(QMenu* file);
    void begin_arena_edit(world::ArenaDocument document, const std::string& path);
    bool may_discard_arena();
    // window_lesson.cpp
    void build_lesson_dock();
    bool take_lesson_settings(const lesson::Lesson& lesson, const std::string& path);
    void show_lesson_text(const lesson::Lesson& lesson);
    // window_lesson_files.cpp
    bool write_lesson_file(const std::string& path, const std::string& text);
    void show_saved_lesson(const std::string& path, const std::string& text);
    std::optional<std::string> open_arena_text();

    WindowOptions options_;
    WindowSettings settings_;
    WindowServices services_;
    stage::Stage stage_;
    commands::Context context_{stage_};
    signal_log::SignalLog log_{stage_};
    RealTimeClock clock_;
    ActionRecorder recorder_;
    ActionRunner runner_;
    ViewInput input_;
    ScriptPlayer player_;
    ProgramChecker checker_;
    ProgramFile file_;
    HexBuilder hex_;
    panelqt::PanelSnapshots snapshots_;
    panelqt::PanelView* view_ = nullptr;
    QLabel* placeholder_ = nullptr;
    QScrollArea* panel_area_ = nullptr;
    QStackedWidget* arena_stack_ = nullptr;
    world::WorldView* world_view_ = nullptr;
    QDockWidget* arena_dock_ = nullptr;
    QAction* close_arena_ = nullptr;
    QAction* reset_robot_ = nullptr;
    QAction* start_action_ = nullptr;
    world::ArenaEditor* arena_editor_ = nullptr;
    QAction *save_arena_ = nullptr, *save_arena_as_ = nullptr;
    std::function<bool()> confirm_arena_discard_;
    QMenu* recent_menu_ = nullptr;
    struct DebugActions {
        QAction *run, *pause, *step, *go_on, *run_to, *stop;
    } debug_{};
    ProgramPane* program_ = nullptr;
    ProblemsView* problems_ = nullptr;
    VariablesView* variables_ = nullptr;
    chartqt::ChartDock* chart_ = nullptr;
    ScopeDock* scope_ = nullptr;  // hidden until View > Scope
    QLabel* status_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QDockWidget* lesson_dock_ = nullptr;
    QTextBrowser* lesson_text_ = nullptr;
    std::string lesson_path_;
    std::string lesson_source_;  // the open lesson's text, as read or last saved
    std::function<bool(LessonDialog&)> edit_lesson_;
    kestrone::IKestronePanel* shown_panel_ = nullptr;
    kestrone::IKestroneComponentV5* checked_against_ = nullptr;
    std::function<bool()> confirm_discard_;
    std::function<bool()> confirm_program_discard_;
    std::function<bool()> confirm_reload_;
    std::string arena_path_;
    std::string loaded_as_;  // the name the stage's program was loaded under from the editor
    int exit_status_ = 0;
    int shown_line_ = -1;
    bool told_compiler_missing_ = false;
};

}  // namespace window
