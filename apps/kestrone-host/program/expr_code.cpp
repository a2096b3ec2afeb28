#include "expr_code.h"

#include <algorithm>

namespace kflow {

namespace {

class Flattener {
  public:
    Flattener(const Program& program, ExprCode& out) : program_(program), out_(out) {}

    void expr(ExprId id) {
        const Expr& e = program_.expr(id);
        switch (e.kind) {
            case ExprKind::Literal:
                return push({CodeOp::Literal, e.op, e.value, -1, id});
            case ExprKind::Variable:
                return push({CodeOp::Variable, e.op, 0, e.ref, id});
            case ExprKind::Call:
                arguments(e);
                depth_ -= static_cast<int>(e.args.size());
                return push({CodeOp::Call, e.op, 0, e.ref, id});
            case ExprKind::Unary:
                expr(e.lhs);
                return emit({CodeOp::Unary, e.op, 0, -1, id});
            case ExprKind::Binary:
                return binary(e, id);
        }
    }

    void arguments(const Expr& call) {
        for (ExprId a : call.args)
            expr(a);
    }

  private:
    void emit(const Instr& i) { out_.code.push_back(i); }
    // An instruction that leaves one value more on the stack.
    void push(const Instr& i) {
        emit(i);
        out_.depth = std::max(out_.depth, ++depth_);
    }

    void binary(const Expr& e, ExprId id) {
        expr(e.lhs);
        if (e.op == Op::And || e.op == Op::Or) {
            // The right side is not evaluated when the left decides: a macro there is not called.
            const std::size_t jump = out_.code.size();
            emit({e.op == Op::And ? CodeOp::AndThen : CodeOp::OrElse, e.op, 0, -1, id});
            --depth_;
            expr(e.rhs);
            emit({CodeOp::Truth, e.op, 0, -1, id});
            out_.code[jump].ref = static_cast<int>(out_.code.size());
            return;
        }
        expr(e.rhs);
        --depth_;
        emit({CodeOp::Binary, e.op, 0, -1, id});
    }

    const Program& program_;
    ExprCode& out_;
    int depth_ = 0;
};

}  // namespace

int lay_out_expr(const Program& program, ExprId id, ExprCode& out, bool whole_call) {
    const int start = static_cast<int>(out.code.size());
    Flattener f(program, out);
    const Expr& e = program.expr(id);
    if (whole_call || e.kind != ExprKind::Call)
        f.expr(id);
    else
        f.arguments(e);
    out.code.push_back({CodeOp::End, Op::Add, 0, -1, id});
    return start;
}

}  // namespace kflow
