#include "step_code.h"

#include <algorithm>

namespace kflow {

namespace {

// The statements whose step goes on to the next one and to nothing else: a loop whose body ends
// in one of them takes the way back in that step.
bool plain(const Stmt& s) {
    return s.kind == StmtKind::Assign || s.kind == StmtKind::Call || s.kind == StmtKind::Delay ||
           s.kind == StmtKind::Stop;
}

class Layout {
  public:
    Layout(const Program& program, StepCode& code) : program_(program), code_(code) {}

    void block(const std::vector<Stmt>& body, int repeats) {
        for (const Stmt& s : body)
            statement(s, repeats);
    }

  private:
    int here() const { return static_cast<int>(code_.steps.size()); }
    int emit(StepOp op, Place at, ExprId expr = kNoExpr, int slot = -1) {
        Step s{op, CType::Int, at, slot, -1, kNoExpr, -1, -1, here() + 1, false};
        if (expr != kNoExpr) s.code = lay_out_expr(program_, expr, code_.exprs);
        code_.steps.push_back(s);
        return here() - 1;
    }
    Step& at(int step) { return code_.steps[static_cast<std::size_t>(step)]; }
    void patch(int step, int target) { at(step).target = target; }
    // The way back to a loop's head after its body.
    void loop_back(const std::vector<Stmt>& body, Place head, int to) {
        if (!body.empty() && plain(body.back()))
            at(here() - 1).next = to;
        else
            at(emit(StepOp::Jump, head)).next = to;
    }

    void statement(const Stmt& s, int repeats);
    void statement_steps(const Stmt& s, int repeats);
    void set(const Stmt& s);
    void call(const Stmt& s);
    void if_statement(const Stmt& s, int repeats);

    const Program& program_;
    StepCode& code_;
};

void Layout::set(const Stmt& s) {
    const Expr& value = program_.expr(s.expr);
    CType kept = CType::Int;
    if (value.kind == ExprKind::Call) {
        call(s);
        at(here() - 1).op = StepOp::SetCall;
        at(here() - 1).slot = s.ref;
        // The result as its C type keeps it, in one go with the variable's own narrowing.
        kept = ctype_of(program_.macros.at(value.ref).returns);
    } else {
        emit(StepOp::Set, s.at, s.expr, s.ref);
    }
    if (program_.variables[static_cast<std::size_t>(s.ref)].is_byte) kept = CType::UnsignedChar;
    at(here() - 1).stored = kept;
}

void Layout::call(const Stmt& s) {
    const int step = emit(StepOp::Call, s.at);
    // A call without arguments has no code to run before it.
    if (!program_.expr(s.expr).args.empty())
        at(step).code = lay_out_expr(program_, s.expr, code_.exprs, false);
    at(step).call = s.expr;
    at(step).macro = program_.expr(s.expr).ref;
}

void Layout::statement(const Stmt& s, int repeats) {
    const int first = here();
    statement_steps(s, repeats);
    if (first < here()) at(first).starts = true;
}

void Layout::statement_steps(const Stmt& s, int repeats) {
    switch (s.kind) {
        case StmtKind::Declare:
            // Every variable starts at 0; a declaration without a value still has its line, for
            // a debugger to stop at.
            if (s.expr != kNoExpr)
                set(s);
            else
                emit(StepOp::Mark, s.at);
            return;
        case StmtKind::Assign:
            return set(s);
        case StmtKind::Call:
            return call(s);
        case StmtKind::Delay:
            emit(StepOp::Delay, s.at, s.expr);
            return;
        case StmtKind::Stop:
            emit(StepOp::Stop, s.at);
            return;
        case StmtKind::Repeat: {
            emit(StepOp::RepeatStart, s.at, s.expr, repeats);
            const int test = emit(StepOp::RepeatNext, s.at, kNoExpr, repeats);
            if (repeats + 1 > code_.counters) code_.counters = repeats + 1;
            block(s.body, repeats + 1);
            loop_back(s.body, s.at, test);
            patch(test, here());
            return;
        }
        case StmtKind::While: {
            const int test = emit(StepOp::JumpUnless, s.at, s.expr);
            block(s.body, repeats);
            loop_back(s.body, s.at, test);
            patch(test, here());
            return;
        }
        case StmtKind::Forever: {
            // Its line runs once, on entry; the way back goes to the body's first statement.
            emit(StepOp::Mark, s.at);
            const int top = here();
            block(s.body, repeats);
            loop_back(s.body, s.at, top);
            return;
        }
        case StmtKind::If:
            return if_statement(s, repeats);
    }
}

void Layout::if_statement(const Stmt& s, int repeats) {
    std::vector<int> to_end;
    for (const Branch& b : s.branches) {
        const int test = b.condition == kNoExpr ? -1 : emit(StepOp::JumpUnless, b.at, b.condition);
        if (test >= 0) at(test).starts = true;  // an else if's test, as the if's own
        block(b.body, repeats);
        // After the last arm the jump to the end would go to the next step anyway.
        if (&b != &s.branches.back()) to_end.push_back(emit(StepOp::Jump, b.at));
        if (test >= 0) patch(test, here());
    }
    for (int j : to_end)
        at(j).next = here();
}

}  // namespace

StepCode lay_out(const Program& program) {
    StepCode code;
    Layout(program, code).block(program.tree.statements, 0);
    code.steps.push_back({StepOp::End, CType::Int, {}, -1, -1, kNoExpr, -1, -1, -1, false});
    return code;
}

std::vector<int> statement_lines(const StepCode& code) {
    std::vector<int> lines;
    for (const Step& s : code.steps)
        if (s.starts) lines.push_back(s.at.line);
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

}  // namespace kflow
