#include "run_driver.h"

#include <algorithm>

namespace kflow {

void PanelClock::wait(std::uint16_t ms) {
    std::int32_t ticks = 0;
    panel_.Advance(ms, &ticks);
    ticks_ += ticks;
}

RunOutcome run_to_end(Interpreter& program, Clock& clock, std::uint64_t step_budget) {
    RunOutcome out;
    if (kestrone::failed(program.start())) {
        out.end = RunOutcome::End::Failed;
        out.message = program.message();
        return out;
    }
    while (true) {
        const std::uint64_t left = step_budget - std::min(step_budget, program.steps());
        const Pause p = left ? program.resume(left) : Pause{Pause::Why::Slice, 0};
        switch (p.why) {
            case Pause::Why::Delay:
                clock.wait(p.delay_ms);
                out.elapsed_ms += p.delay_ms;
                continue;
            case Pause::Why::Slice:
                program.stop(format_diagnostic(
                    program.program().file,
                    {program.place(), "the program was stopped after " +
                                          std::to_string(program.steps()) +
                                          " steps at this line: does a loop run on and on?"}));
                out.end = RunOutcome::End::OutOfSteps;
                break;
            case Pause::Why::Finished:
                out.end = RunOutcome::End::Finished;
                break;
            case Pause::Why::Halted:
                out.end = RunOutcome::End::Halted;
                break;
            case Pause::Why::Failed:
                out.end = RunOutcome::End::Failed;
                break;
        }
        out.message = program.message();
        return out;
    }
}

}  // namespace kflow
