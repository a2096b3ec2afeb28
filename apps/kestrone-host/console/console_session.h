// The console: reads commands line by line and answers each with its notices and one final line.
// It is the line protocol alone: every command is parsed here, carried out by the host session and
// its outcome written back.
#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "command_line.h"
#include "component_session.h"
#include "kestrone/services.h"
#include "session_port.h"
#include "world_driver.h"

namespace console {

// Writes the answers; every notice and final line is flushed as it is written. While a final line
// is captured (an `expect` runs its command) it is kept instead of written; notices still go out.
class Output {
  public:
    explicit Output(std::ostream& out) : out_(out) {}
    void notice(const std::string& line);
    void ok(const std::string& rest = {});
    void error(kestrone::HRESULT status);
    void fail(const std::string& why);
    // Where the next final lines go instead of the output; null to write them again.
    void capture(std::string* final_line) { capture_ = final_line; }

  private:
    void final_line(const std::string& line);
    std::ostream& out_;
    std::string* capture_ = nullptr;
};

// Renders the panel to a PNG file: "" when written, else why not. The console itself knows no
// view; the program that has one hands it this.
using SnapshotHook =
    std::function<std::string(kestrone::IKestronePanel& panel, const std::string& path)>;

// The platform as the console gives it: a message is answered with OK at once and a tone
// returns at once; both are written as notices.
class ConsoleServices : public kestrone::IHostServices {
  public:
    explicit ConsoleServices(Output& out) : out_(out) {}
    virtual ~ConsoleServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override;

  private:
    Output& out_;
};

// The progress of long work as a terminal shows it.
std::string progress_text(std::string_view command, std::int64_t done, std::int64_t total);

// The answer of `advance`: its count of ticks, without loss.
kestrone::Variant tick_count(std::int64_t ticks);

// A number as written in the console: any numeric kind.
std::optional<double> number_of(std::string_view text);

class ConsoleSession {
  public:
    // `codec` reads and writes the project files of `store save` and `store load`. A face that
    // runs console lines against its own platform (a window playing a script) lends its
    // `services`; without them messages and tones are answered at once as notices.
    explicit ConsoleSession(std::ostream& out, host::ProjectCodec codec = {},
                            kestrone::IHostServices* services = nullptr);

    // The session behind the console: load its module and open its project before start().
    host::ComponentSession& session() { return session_; }

    // The world the robot drives in, stepped with the session's clock: the `world` commands work
    // on it, and a window shows it.
    world::WorldDriver& world_driver() { return world_driver_; }

    // What `snapshot` renders with; without one it fails with "no view built".
    void set_snapshot(SnapshotHook hook) { snapshot_ = std::move(hook); }

    // The start-up: creates the object and answers like `new`.
    void start();
    // Runs one line; false once `quit` has run.
    bool execute(std::string_view line);
    // Reads and runs lines until the end of input or `quit`.
    void run(std::istream& in);
    // False once an `expect` has failed: the console then exits with status 1.
    bool expectations_met() const { return expectations_met_; }
    // For a person at a terminal: long work (advance, run) can be stopped by an interrupt
    // (console_interrupt.h) and, past a second, shows its progress on `progress`.
    void watch_long_work(std::ostream& progress);

  private:
    using Handler = void (ConsoleSession::*)(const CommandLine&);
    static const std::map<std::string_view, Handler>& commands();

    bool have_object();
    void create_object();

    void cmd_new(const CommandLine&);
    void cmd_quit(const CommandLine&);
    void cmd_field(const CommandLine&);
    void cmd_operation(const CommandLine&);
    void cmd_help(const CommandLine&);  // console_help.cpp

    // the store and the property page (console_store.cpp)
    void cmd_store(const CommandLine&);
    void cmd_project_file(const CommandLine&);
    void cmd_writeprops(const CommandLine&);
    void cmd_readprops(const CommandLine&);
    void run_store_walk(bool save);
    void cmd_page(const CommandLine&);
    void page_get(const CommandLine&);
    void page_put(const CommandLine&);

    // the panel (console_panel.cpp)
    bool have_panel();
    bool find_element(const std::string& text, std::int32_t* id);
    void answer_element_status(kestrone::HRESULT hr, const std::string& what);
    void cmd_get(const CommandLine&);
    void cmd_put(const CommandLine&);
    void cmd_click(const CommandLine&);
    void cmd_arrow(const CommandLine&);
    void cmd_mouse(const CommandLine&);
    void cmd_event(const CommandLine&);
    void cmd_tick(const CommandLine&);
    void cmd_advance(const CommandLine&);
    void cmd_snapshot(const CommandLine&);

    // programs and checks (console_program.cpp)
    void cmd_run(const CommandLine&);
    void cmd_var(const CommandLine&);
    void cmd_expect(const CommandLine&);

    // the world (console_world.cpp)
    void cmd_world(const CommandLine&);
    void world_pose(const CommandLine&);
    void world_in(const CommandLine&);

    // Declared in this order so that the session, and the object with it, goes first.
    Output out_;
    ConsoleServices services_;
    // The world works the session's panel; it goes after the session, which calls it.
    world::World world_;
    world::SessionPort world_port_{session_};
    world::WorldDriver world_driver_{world_, world_port_};
    host::ComponentSession session_;
    SnapshotHook snapshot_;
    bool quit_ = false;
    bool expectations_met_ = true;
    // Long work of the command that runs, for watch_long_work.
    std::ostream* progress_ = nullptr;
    std::string command_word_;
    std::chrono::steady_clock::time_point command_started_;
    bool progress_shown_ = false;
};

}  // namespace console
