// kestrone-host's window: the panel with Start and Stop, zoom, the property dialog, project files,
// robot programs, the arena, help, and the recording and playing of console scripts. A thin face
// of the stage: every action is a command, run and recorded by the action runner.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>

#include "action_recorder.h"
#include "action_runner.h"
#include "panel_snapshot.h"
#include "panel_view.h"
#include "program_pane.h"
#include "real_time_clock.h"
#include "script_player.h"
#include "signal_log.h"
#include "stage.h"
#include "view_input.h"
#include "window_services.h"
#include "world_view.h"

class QAction;
class QScrollArea;

namespace window {

class PropertiesDialog;
class ScopeDock;

// The file dialogs; an empty name when the user cancels.
QString ask_open_path(QWidget* parent, const QString& title, const QString& filter);
QString ask_save_path(QWidget* parent, const QString& title, const QString& filter);

struct WindowOptions {
    std::string module;    // the component module
    std::string play;      // a console script to play in real time
    std::string project;   // a project file to open
    int zoom = 1;          // 1, 2 or 3
    std::string world;     // an arena to open
    std::string run;       // a robot program to open and run at once
    std::string snapshot;  // a PNG of the panel (and world), written once the script has played
    bool quit_after_play = false;
};

class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindow(WindowOptions options, SteadyClock clock = &steady_ms);
    ~MainWindow() override;

    // Loads the module, opens the project, makes the object and starts the clock; then plays the
    // script if one was given. False when there is no object to show (the user has been told).
    bool start();

    // The actions of the menus.
    void start_simulation();
    void stop_simulation();
    void set_zoom(int zoom);
    void show_properties();
    // The dialog for the open page, not yet shown (show_properties runs it modally).
    std::unique_ptr<PropertiesDialog> make_properties();
    bool new_project();
    bool open_project(const std::string& path);
    bool save_project();
    bool save_project_as(const std::string& path);
    bool open_program(const std::string& path);
    void run_program();
    void stop_program();
    bool save_recording(const std::string& path);
    // The signals since the window started (log.h keeps the newest hour), CSV or VCD by the
    // file's extension; false with the user told when it fails.
    bool export_log(const std::string& path);
    const signal_log::SignalLog& signal_log() const { return log_; }
    ScopeDock* scope() const { return scope_; }
    bool save_code(const std::string& path);
    void show_help();
    // The arena beside the panel (window_world.cpp): a bad file is told and leaves the world as
    // it was.
    bool open_arena(const std::string& path);
    void close_arena();
    void reset_robot();
    // The panel as it stands to a PNG: at a zoom of 1, as the console's snapshot; with an arena,
    // the panel and the world side by side at the window's zoom. False with the user told when
    // it fails.
    bool write_snapshot(const std::string& path);

    stage::Stage& stage() { return stage_; }
    host::ComponentSession& session() { return stage_.session(); }
    RealTimeClock& clock() { return clock_; }
    ActionRunner& runner() { return runner_; }
    ViewInput& input() { return input_; }
    ActionRecorder& recorder() { return recorder_; }
    WindowServices& services() { return services_; }
    ScriptPlayer& player() { return player_; }
    ProgramPane* program_pane() const { return program_; }
    panelqt::PanelView* view() const { return view_; }
    world::WorldView* world_view() const { return world_view_; }
    world::World& world() { return stage_.world(); }
    QString status_text() const { return status_->text(); }
    // The question before unsaved changes are lost: true to go on. Tests give their own answer.
    void set_confirm_discard(std::function<bool()> confirm) {
        confirm_discard_ = std::move(confirm);
    }
    // The failures of the last play, and the exit status for --quit-after-play.
    int exit_status() const { return exit_status_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void build_menus();
    void build_file_menu();
    void build_program_menu();
    // A new object, made ready as a host does when `ready`; the view follows it.
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
    void refresh_code();
    QString project_name();
    bool simulating();
    // window_world.cpp
    void build_world_view(QWidget* stage);
    void follow_world();
    void robot_put_down();
    std::string write_stage(kestrone::IKestronePanel& panel, const std::string& path);

    WindowOptions options_;
    WindowServices services_;
    stage::Stage stage_;
    commands::Context context_{stage_};
    signal_log::SignalLog log_{stage_};
    RealTimeClock clock_;
    ActionRecorder recorder_;
    ActionRunner runner_;
    ViewInput input_;
    ScriptPlayer player_;
    panelqt::PanelSnapshots snapshots_;
    panelqt::PanelView* view_ = nullptr;
    QLabel* placeholder_ = nullptr;
    QWidget* stage_area_ = nullptr;  // the panel and the world side by side
    QScrollArea* world_area_ = nullptr;
    world::WorldView* world_view_ = nullptr;
    QAction* close_arena_ = nullptr;
    QAction* reset_robot_ = nullptr;
    ProgramPane* program_ = nullptr;
    ScopeDock* scope_ = nullptr;  // hidden until View > Scope
    QLabel* status_ = nullptr;
    kestrone::IKestronePanel* shown_panel_ = nullptr;
    std::function<bool()> confirm_discard_;
    int exit_status_ = 0;
    int shown_line_ = -1;
};

}  // namespace window
