#include "run_driver.h"

#include <algorithm>

namespace kflow {

namespace {
std::string at_line(const Interpreter& program, const std::string& text) {
    return format_diagnostic(program.program().file, {program.place(), text});
}
// A delay is the cure only for a loop that never waits; a long program without one just ran out.
std::string out_of_steps(const Interpreter& program, std::uint64_t budget) {
    std::string text = "the program was stopped at this line: its budget of " +
                       std::to_string(budget) + " steps ran out";
    if (program.in_loop())
        return text + " in a loop. Does the loop run on and on? A delay in it lets time pass";
    return text;
}
}  // namespace

std::string out_of_time_text(const Interpreter& program, std::int64_t clock_ms) {
    return at_line(program, "the program was stopped after " + std::to_string(clock_ms) +
                                " ms at this line: does it run forever?");
}

std::string out_of_steps_text(const Interpreter& program, std::uint64_t budget) {
    return at_line(program, out_of_steps(program, budget));
}

RunOutcome run_to_end(Interpreter& program, Clock& clock, const RunLimits& limits) {
    RunOutcome out;
    if (kestrone::failed(program.start())) {
        out.end = RunOutcome::End::Failed;
        out.message = program.message();
        return out;
    }
    while (true) {
        const std::uint64_t left = limits.steps - std::min(limits.steps, program.steps());
        const Pause p = left ? program.resume(left) : Pause{Pause::Why::Slice};
        switch (p.why) {
            case Pause::Why::Delay:
                if (out.elapsed_ms + p.delay_ms > limits.clock_ms) {
                    clock.wait(static_cast<std::uint16_t>(limits.clock_ms - out.elapsed_ms));
                    out.elapsed_ms = limits.clock_ms;
                    program.stop(out_of_time_text(program, limits.clock_ms));
                    out.end = RunOutcome::End::OutOfTime;
                    break;
                }
                clock.wait(p.delay_ms);
                out.elapsed_ms += p.delay_ms;
                continue;
            case Pause::Why::Slice:
                program.stop(out_of_steps_text(program, limits.steps));
                out.end = RunOutcome::End::OutOfSteps;
                break;
            case Pause::Why::Finished:
                out.end = RunOutcome::End::Finished;
                break;
            case Pause::Why::Halted:
            case Pause::Why::Break:  // no debugger here: nothing breaks a run
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
