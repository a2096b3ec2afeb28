// Drives an interpreter to its end on a clock that the driver moves itself: the console's and
// the tests' way to run a program, where time passes only when the program waits.
#pragma once

#include <cstdint>
#include <string>

#include "interpreter.h"

namespace kflow {

// Where a program's delays go.
class Clock {
  public:
    virtual ~Clock() = default;
    // The program waits `ms` milliseconds: the clock moves on by as much.
    virtual void wait(std::uint16_t ms) = 0;
};

struct RunOutcome {
    enum class End : std::uint8_t { Finished, OutOfSteps, OutOfTime, Failed, Halted };
    End end = End::Finished;
    std::int64_t elapsed_ms = 0;  // the time waited on the clock
    std::string message;          // FILE:LINE:COLUMN: TEXT unless Finished
};

// What a console run may take before it is ended: enough for any program that is meant to end,
// little enough to answer soon when a loop never waits (the steps) or waits forever (the time on
// the clock, which the panel's timers fill with ticks).
struct RunLimits {
    std::uint64_t steps = 1'000'000;
    std::int64_t clock_ms = 10 * 60 * 1000;
};

// Why a run was halted at a limit, naming the line it had reached: FILE:LINE:COLUMN: TEXT.
std::string out_of_time_text(const Interpreter& program, std::int64_t clock_ms);
std::string out_of_steps_text(const Interpreter& program, std::uint64_t budget);

// Starts the program and runs it to its end, waiting on `clock`. A program that reaches a limit
// is halted with a message that names the line it had reached.
RunOutcome run_to_end(Interpreter& program, Clock& clock, const RunLimits& limits = {});

}  // namespace kflow
