// An expression laid out flat, in the order the interpreter evaluates it: operands before their
// operator, arguments before their call, each value pushed on one stack. Evaluated by a loop
// without recursion; && and || jump over their right side when the left decides.
#pragma once

#include <cstdint>
#include <vector>

#include "program.h"

namespace kflow {

enum class CodeOp : std::uint8_t {
    Literal,   // push `value`
    Variable,  // push variable `ref`
    Call,      // pop the arguments of call `source`, push its result
    Unary,     // the top by `op`
    Binary,    // pop the right value, then the left by `op` with it
    AndThen,   // pop: if 0, push 0 and go to `ref`
    OrElse,    // pop: if not 0, push 1 and go to `ref`
    Truth,     // the top as 0 or 1
    End,       // the expression is done
};

struct Instr {
    CodeOp code = CodeOp::End;
    Op op = Op::Add;
    std::int16_t value = 0;
    int ref = -1;
    ExprId source = kNoExpr;  // the expression the instruction comes from, for its place
};

struct ExprCode {
    std::vector<Instr> code;
    int depth = 0;  // the deepest stack any expression needs
};

// Appends `id` to `out`, ended by End, and returns where it starts. Without `whole_call`, a
// call at the top leaves only its arguments: the step that runs it makes the call itself.
int lay_out_expr(const Program& program, ExprId id, ExprCode& out, bool whole_call = true);

}  // namespace kflow
