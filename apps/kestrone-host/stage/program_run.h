// The stage's program: a .kflow file checked against the component's macros, started, run in
// slices on the stage's clock, and stopped; or debugged: stopped before a statement at a step,
// a breakpoint or a line, and resumed. Its variables outlive it, for `var` after a run.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "component_session.h"
#include "interpreter.h"
#include "program.h"

namespace stage {

class ProgramRun {
  public:
    // Reads and checks the program against the component's macros (telling the component the
    // host's version first if it has none). False with `error`: the file that can't be read, or
    // the program's first fault as FILE:LINE:COLUMN: TEXT; the program loaded before stays. A
    // program that was running is stopped and replaced.
    bool load(host::ComponentSession& session, const std::string& path, std::string* error);
    // The same from the program's text, `path` naming it in the messages.
    bool load_text(host::ComponentSession& session, std::string_view source,
                   const std::string& path, std::string* error);
    bool loaded() const { return interpreter_ != nullptr; }
    // The checked program, while one is loaded.
    const kflow::Program* program() const { return program_.get(); }
    const std::string& path() const { return path_; }
    // The program goes (its object is going); its variables stay as the last run's.
    void retire();

    // Every variable to 0, then StartSimulation; a running program starts over. It is awake at
    // `now`.
    kestrone::HRESULT start(std::int64_t now);
    // When it wants its next slice: a running program that is not paused; nullopt otherwise.
    std::optional<std::int64_t> wakes_at() const;
    // At most `max_steps` steps at `now`: a delay puts it to sleep until now + the delay; an
    // end, a `stop` or a fault stops the simulation (the interpreter's StopSimulation).
    kflow::Pause run_slice(std::int64_t now, std::uint64_t max_steps);
    // Halts it with StopSimulation: at once, or from inside one of its own steps (a face's Stop
    // pressed while its tone sounds) once that step has returned.
    void stop(std::string why = {});

    // ---- Debugging
    // Starts it as start() does, stopped before its first statement (or at its end already).
    kestrone::HRESULT debug(std::int64_t now);
    bool debugging() const { return debugging_ && running(); }
    bool paused() const { return paused_ && running(); }
    // Resumed at `now` until the next statement starts (step), a breakpoint's statement is
    // about to start (go on), or one on `line` is (run to). A delay it was stopped in goes on
    // for what was left of it.
    void step(std::int64_t now);
    void go_on(std::int64_t now);
    void run_to(int line, std::int64_t now);
    // Stopped where it stands: in a delay, at once (what is left of it kept); else before the
    // next statement that starts.
    void pause(std::int64_t now);
    // The line it stands at: before a statement, or in a delay; 0 at its end or before a start.
    int where() const;
    // A breakpoint on the statement at `line` or the first after it: that statement's line;
    // nullopt after the last statement or without a program.
    std::optional<int> set_breakpoint(int line);
    void clear_breakpoint(int line) { breakpoints_.erase(line); }
    void clear_breakpoints() { breakpoints_.clear(); }
    const std::set<int>& breakpoints() const { return breakpoints_; }
    // Every variable with its value, in the order declared.
    std::vector<std::pair<std::string, std::int16_t>> variables() const;

    kflow::RunState state() const;
    bool running() const { return state() == kflow::RunState::Running; }
    std::uint64_t steps() const { return interpreter_ ? interpreter_->steps() : 0; }
    // The line that runs (or ran last); 0 before a start.
    int line() const;
    const std::string& message() const;
    // Halts a running program at a limit of a run, saying which.
    void stop_out_of_time(std::int64_t clock_ms);
    void stop_out_of_steps(std::uint64_t budget);
    // A variable of the program that runs, else of the last one that ran.
    std::optional<std::int16_t> variable(std::string_view name) const;
    bool has_run() const { return any_run_; }

  private:
    host::ComponentSession* session_ = nullptr;
    std::string path_;
    std::unique_ptr<kflow::Program> program_;  // the interpreter holds on to it
    std::unique_ptr<kflow::Interpreter> interpreter_;
    std::int64_t wake_at_ = 0;
    // Debugging: where to stop next, and a stop's state.
    enum class Goal : std::uint8_t { Step, GoOn, RunTo };
    void resume_towards(Goal goal, std::int64_t now);
    bool debugging_ = false;
    bool paused_ = false;
    bool at_stop_ = false;  // it stands before the statement it was stopped at
    Goal goal_ = Goal::GoOn;
    int goal_line_ = 0;
    std::int64_t left_of_delay_ = 0;
    std::set<int> breakpoints_;
    // The variables of the last program that ran, kept when it is replaced or its object goes.
    std::vector<std::pair<std::string, std::int16_t>> last_values_;
    bool any_run_ = false;
};

}  // namespace stage
