// A checked program laid out as a flat list of steps with jumps: the unit in which the
// interpreter runs, counts, reports its place and can be halted. Each step names the step after
// it, so a loop whose body ends in a plain step goes back to its head without a step of its own.
#pragma once

#include <cstdint>
#include <vector>

#include "expr_code.h"
#include "macro_table.h"
#include "program.h"

namespace kflow {

enum class StepOp : std::uint8_t {
    Set,          // variable `slot` = code
    SetCall,      // variable `slot` = the macro call `call`, its arguments in code
    Call,         // the macro call `call`, its arguments in code, its result dropped
    Delay,        // report a wait of code milliseconds to the driver
    JumpUnless,   // to `target` when code is 0
    Jump,         // nothing but the way to `next`
    RepeatStart,  // counter `slot` = code, read as 0 to 65535
    RepeatNext,   // to `target` when counter `slot` is 0, else count it down
    Stop,         // the program's `stop`
    End,          // the program's last line has run
    Mark,         // a statement's line with no work of its own: free, for a debugger to stop at
};

struct Step {
    StepOp op = StepOp::End;
    CType stored = CType::Int;  // what a set keeps of its value (or a call's result)
    Place at;                   // the statement's place, for the line that runs
    int slot = -1;
    int code = -1;            // where the step's expression starts in StepCode::exprs, or -1
    ExprId call = kNoExpr;    // the macro call of SetCall and Call
    std::int32_t macro = -1;  // and the id of its macro
    int target = -1;
    int next = -1;  // the step that follows unless a condition goes to `target`
    // The first step of a statement's work, where a debugger stops: a declaration, assignment,
    // call, delay or stop; a repeat's count, on entry; a while's or an if's test, each time; a
    // forever, on entry.
    bool starts = false;
};

struct StepCode {
    std::vector<Step> steps;
    ExprCode exprs;
    int counters = 0;  // repeat counters, one per level of nesting
};

StepCode lay_out(const Program& program);

// The lines of the statements, ascending, each once: where a breakpoint can stand.
std::vector<int> statement_lines(const StepCode& code);

}  // namespace kflow
