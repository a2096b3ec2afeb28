// A checked program laid out as a flat list of steps with jumps: the unit in which the
// interpreter runs, counts, reports its place and can be halted.
#pragma once

#include <cstdint>
#include <vector>

#include "program.h"

namespace kflow {

enum class StepOp : std::uint8_t {
    Set,          // variable `slot` = expr
    Call,         // a macro call whose result is dropped
    Delay,        // report a wait of expr milliseconds to the driver
    JumpUnless,   // to `target` when expr is 0
    Jump,         // to `target`
    RepeatStart,  // counter `slot` = expr, read as 0 to 65535
    RepeatNext,   // to `target` when counter `slot` is 0, else count it down
    Stop,         // the program's `stop`
    End,          // the program's last line has run
};

struct Step {
    StepOp op = StepOp::End;
    Place at;  // the statement's place, for the line that runs
    int slot = -1;
    ExprId expr = kNoExpr;
    int target = -1;
};

struct StepCode {
    std::vector<Step> steps;
    int counters = 0;  // repeat counters, one per level of nesting
};

StepCode lay_out(const Program& program);

}  // namespace kflow
