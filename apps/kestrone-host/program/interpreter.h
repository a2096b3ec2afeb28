// Runs a checked program against a component, through the host interface alone: StartSimulation,
// one SimMacroCall per macro call, StopSimulation at the end.
//
// The interpreter never waits and never looks at a clock. Its driver calls resume() with a number
// of steps; it comes back when that slice is used up, when the program asks for a delay, or when
// the program has ended. The driver moves its clock on by each delay (virtual in the console and
// the tests, real time in a window, where the panel's timers keep the wheels turning) and calls
// resume() again; a window yields to its event loop after every slice, a console counts the steps
// against a budget. Between two calls the program can be halted with stop(); from inside one of
// its own steps (a macro call that waits on the user) with request_stop().
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/component_v5.h"
#include "macro_table.h"
#include "program.h"
#include "step_code.h"

namespace kflow {

enum class RunState : std::uint8_t {
    Ready,     // made, not started
    Running,   // started: resume() goes on
    Finished,  // ran to its end or to a `stop`
    Halted,    // stopped from outside
    Failed,    // a run-time fault (division by 0, a macro that failed); see message()
};

struct Pause {
    // Break: a debugger's stop, before a statement's first step.
    enum class Why : std::uint8_t { Slice, Delay, Finished, Halted, Failed, Break };
    Why why = Why::Slice;
    std::uint16_t delay_ms = 0;  // for Why::Delay: the driver waits this long, then resumes
};

class Interpreter {
  public:
    // The program and the component must outlive the interpreter.
    Interpreter(const Program& program, kestrone::IKestroneComponentV5& component);

    // Every variable to 0, then StartSimulation. A failed start leaves the state Failed.
    kestrone::HRESULT start();
    // Runs at most `max_steps` steps. Only in the state Running; otherwise it reports the state.
    Pause resume(std::uint64_t max_steps);
    // As resume(), for a debugger: before a step that starts a statement on a line for which
    // `stop_at` says true it stops with Break, that statement not yet run. With `leave_first`
    // the first step is never stopped at, so that a program standing where it was stopped moves
    // on.
    Pause resume_debug(std::uint64_t max_steps, const std::function<bool(int line)>& stop_at,
                       bool leave_first);
    // The line of the statement the program stands before (or in, during a delay); 0 at its end.
    int next_line() const;
    // Where a breakpoint can stand: the lines of the statements, ascending.
    const std::vector<int>& statement_lines() const { return lines_; }
    // Halts a started program, with StopSimulation; `why` becomes the message. Nothing happens
    // when the program is not running.
    void stop(std::string why = {});
    // Halts a running program as stop() does, but when called from inside one of its steps only
    // once that step has returned: the step's macro call is never cut short, and the component
    // is not told to stop from inside its own call.
    void request_stop(std::string why = {});

    const Program& program() const { return program_; }
    RunState state() const { return state_; }
    // The place of the step that runs, or ran last: the line the program is at.
    Place place() const;
    std::uint64_t steps() const { return steps_; }
    // Whether the step that ran last lies in a loop: a later step goes back to it or before it.
    bool in_loop() const;
    // FILE:LINE:COLUMN: TEXT of a fault, or the reason given to stop().
    const std::string& message() const { return message_; }

    // The value of a variable by name, after a run or during one.
    std::optional<std::int16_t> variable(std::string_view name) const;
    const std::vector<std::int16_t>& values() const { return values_; }

  private:
    struct MacroCall {
        CType result = CType::Int;
        std::vector<CType> params;
        kestrone::Variant args;  // reused from call to call
    };
    struct Fault {
        Place at;
        std::string text;
    };

    // False when the slice must end (delay, end, fault). Inlined into the loop of resume(), as
    // is the macro call into it: the call of a step costs as much as a simple step itself.
    [[gnu::always_inline]] bool step();
    // Runs the expression code at `at`; its values are on the stack from its bottom to the
    // place returned.
    std::int16_t* run(int at);
    std::int16_t eval(int at) { return *(run(at) - 1); }
    std::int16_t binary(const Instr& i, std::int16_t a, std::int16_t b) const;
    // A macro call with its arguments in `args`; `source` is the call, for a fault's place. The
    // result in 16 bits, not yet as the macro's C type keeps it.
    [[gnu::always_inline]] std::int16_t call(std::int32_t macro, const std::int16_t* args,
                                             ExprId source);
    [[noreturn]] void call_failed(ExprId source, kestrone::HRESULT hr) const;
    void finish(RunState state, Pause::Why why);
    void fail(const Fault& f);

    const Program& program_;
    kestrone::IKestroneComponentV5& component_;
    StepCode code_;
    std::vector<MacroCall> calls_;  // by macro id
    std::vector<std::int16_t> values_;
    std::vector<std::int16_t> stack_;  // of the expression that runs
    kestrone::Variant affected_;       // the pins a call changed: empty between calls
    std::vector<std::uint16_t> counters_;
    std::vector<int> lines_;
    std::size_t pc_ = 0;
    std::size_t last_ = 0;  // the step that ran last
    std::uint64_t steps_ = 0;
    RunState state_ = RunState::Ready;
    bool in_step_ = false;
    bool stop_requested_ = false;
    std::string stop_why_;
    Pause pause_;
    std::string message_;
};

}  // namespace kflow
