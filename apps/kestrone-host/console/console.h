// The console: the line protocol over the stage. It reads a line, parses it as a command,
// executes it and prints its notices and one final line; nothing else is written to the output.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>
#include <string_view>

#include "command.h"
#include "kestrone/services.h"
#include "stage.h"

namespace console {

// The platform as the console gives it: a message is answered with OK at once and a tone
// returns at once; both are written as notices.
class ConsoleServices : public kestrone::IHostServices {
  public:
    explicit ConsoleServices(std::ostream& out) : out_(out) {}
    virtual ~ConsoleServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override;

  private:
    std::ostream& out_;
};

// The progress of long work as a terminal shows it.
std::string progress_text(std::string_view command, std::int64_t done, std::int64_t total);

class Console {
  public:
    // `codec` reads and writes the project files of `store save` and `store load`.
    explicit Console(std::ostream& out, host::ProjectCodec codec = {});

    // The stage behind the console: load its module and open its project before start().
    stage::Stage& stage() { return stage_; }
    host::ComponentSession& session() { return stage_.session(); }
    // What `snapshot` renders with; without one it fails with "no view built".
    void set_snapshot(commands::SnapshotHook hook) { context_.snapshot = std::move(hook); }

    // The start-up: creates the object and answers like `new`.
    void start();
    // Runs one line; false once `quit` has run.
    bool execute(std::string_view line);
    // Reads and runs lines until the end of input or `quit`.
    void run(std::istream& in);
    // False once an `expect` has failed: the console then exits with status 1.
    bool expectations_met() const { return context_.expectations_met; }
    // Long work (advance, run) can be stopped by an interrupt (console_interrupt.h) and, past a
    // second, shows its progress on `progress` when there is one (a person at a terminal).
    void watch_long_work(std::ostream* progress);

  private:
    void answer(const commands::Reply& reply);

    std::ostream& out_;
    ConsoleServices services_;
    stage::Stage stage_;
    commands::Context context_{stage_};
    // Long work of the command that runs, for watch_long_work.
    std::ostream* progress_ = nullptr;
    std::string command_word_;
    std::chrono::steady_clock::time_point command_started_;
    bool progress_shown_ = false;
};

}  // namespace console
