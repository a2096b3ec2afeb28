#include "step_code.h"

namespace kflow {

namespace {

class Layout {
  public:
    explicit Layout(StepCode& code) : code_(code) {}

    void block(const std::vector<Stmt>& body, int repeats) {
        for (const Stmt& s : body)
            statement(s, repeats);
    }

  private:
    int here() const { return static_cast<int>(code_.steps.size()); }
    int emit(StepOp op, Place at, ExprId expr = kNoExpr, int slot = -1) {
        code_.steps.push_back({op, at, slot, expr, -1});
        return here() - 1;
    }
    void patch(int step, int target) {
        code_.steps[static_cast<std::size_t>(step)].target = target;
    }

    void statement(const Stmt& s, int repeats);
    void if_statement(const Stmt& s, int repeats);

    StepCode& code_;
};

void Layout::statement(const Stmt& s, int repeats) {
    switch (s.kind) {
        case StmtKind::Declare:
            // Without a value there is nothing to do: every variable starts at 0.
            if (s.expr != kNoExpr) emit(StepOp::Set, s.at, s.expr, s.ref);
            return;
        case StmtKind::Assign:
            emit(StepOp::Set, s.at, s.expr, s.ref);
            return;
        case StmtKind::Call:
            emit(StepOp::Call, s.at, s.expr);
            return;
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
            patch(emit(StepOp::Jump, s.at), test);
            patch(test, here());
            return;
        }
        case StmtKind::While: {
            const int test = emit(StepOp::JumpUnless, s.at, s.expr);
            block(s.body, repeats);
            patch(emit(StepOp::Jump, s.at), test);
            patch(test, here());
            return;
        }
        case StmtKind::Forever: {
            const int top = here();
            block(s.body, repeats);
            patch(emit(StepOp::Jump, s.at), top);
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
        block(b.body, repeats);
        // After the last arm the jump to the end would go to the next step anyway.
        if (&b != &s.branches.back()) to_end.push_back(emit(StepOp::Jump, b.at));
        if (test >= 0) patch(test, here());
    }
    for (int j : to_end)
        patch(j, here());
}

}  // namespace

StepCode lay_out(const Program& program) {
    StepCode code;
    Layout(code).block(program.tree.statements, 0);
    code.steps.push_back({StepOp::End, {}, -1, kNoExpr, -1});
    return code;
}

}  // namespace kflow
