// Drives an interpreter to its end on a clock that the driver moves itself: the console's and
// the tests' way to run a program, where time passes only when the program waits.
#pragma once

#include <cstdint>
#include <string>

#include "interpreter.h"
#include "kestrone/panel.h"

namespace kflow {

// Where a program's delays go.
class Clock {
  public:
    virtual ~Clock() = default;
    // The program waits `ms` milliseconds: the clock moves on by as much.
    virtual void wait(std::uint16_t ms) = 0;
};

// The panel's own clock: every timer tick due on the way is delivered, so the wheels turn while
// the program waits.
class PanelClock : public Clock {
  public:
    explicit PanelClock(kestrone::IKestronePanel& panel) : panel_(panel) {}
    void wait(std::uint16_t ms) override;
    std::int64_t ticks() const { return ticks_; }

  private:
    kestrone::IKestronePanel& panel_;
    std::int64_t ticks_ = 0;
};

struct RunOutcome {
    enum class End : std::uint8_t { Finished, OutOfSteps, Failed, Halted };
    End end = End::Finished;
    std::int64_t elapsed_ms = 0;  // the sum of the delays waited
    std::string message;          // FILE:LINE:COLUMN: TEXT unless Finished
};

// The steps a console run may take before it is ended: enough for any program that waits now
// and then, few enough to answer at once when a loop never waits.
inline constexpr std::uint64_t kDefaultStepBudget = 1'000'000;

// Starts the program and runs it to its end, waiting on `clock`; a program that has taken
// `step_budget` steps is halted with a message that names the line it had reached.
RunOutcome run_to_end(Interpreter& program, Clock& clock,
                      std::uint64_t step_budget = kDefaultStepBudget);

}  // namespace kflow
