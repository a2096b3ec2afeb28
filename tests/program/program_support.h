// Shared by the program tests: the robot's macro table through a fake component, a run of a
// program on a clock that only counts, and a shell command's output.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fake_component.h"
#include "interpreter.h"
#include "program.h"
#include "run_driver.h"

namespace program_testing {

// A clock that moves only when the program waits, and remembers every wait.
class CountingClock : public kflow::Clock {
  public:
    void wait(std::uint16_t ms) override { waits.push_back(ms); }
    std::vector<std::uint16_t> waits;
};

// A program checked against the fake robot and, when it has no fault, run to its end.
struct Run {
    FakeComponent component{FakeComponent::robot_macros()};
    kflow::CheckedProgram checked;
    std::unique_ptr<kflow::Interpreter> interpreter;
    CountingClock clock;
    kflow::RunOutcome outcome;

    // The value of a variable after the run; fails the test for a name the program lacks.
    std::int16_t var(const std::string& name) const;
    // The arguments of every call of the macro `id`, as plain numbers.
    std::vector<std::vector<int>> args_of(std::int32_t id) const;
};

// Runs only a program without faults, as a host does; `setup` may change the fake first.
std::unique_ptr<Run> run_program(const std::string& source, const kflow::RunLimits& limits = {},
                                 const std::function<void(FakeComponent&)>& setup = {});

inline kflow::MacroTable table_of(FakeComponent& c) {
    std::string error;
    return *kflow::MacroTable::read(c, &error);
}

// Runs a shell command, standard error merged into the output.
struct Command {
    int status = -1;  // the exit status, -1 after a signal
    std::string output;
};
Command shell(const std::string& command);

}  // namespace program_testing
