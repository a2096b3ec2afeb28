#include "value_warnings.h"

namespace kflow {

std::optional<pic::Int> constant_value(const SyntaxTree& tree, ExprId id) {
    const Expr& e = tree.exprs[static_cast<std::size_t>(id)];
    switch (e.kind) {
        case ExprKind::Literal:
            return e.value;
        case ExprKind::Variable:
        case ExprKind::Call:
            return std::nullopt;
        case ExprKind::Unary:
            if (const auto v = constant_value(tree, e.lhs)) return pic::unary(e.op, *v);
            return std::nullopt;
        case ExprKind::Binary:
            break;
    }
    const auto l = constant_value(tree, e.lhs), r = constant_value(tree, e.rhs);
    if (!l || !r || (*r == 0 && (e.op == Op::Divide || e.op == Op::Remainder))) return std::nullopt;
    return pic::apply(e.op, *l, *r);
}

// A literal, with or without a minus, as written: from 0 to 65535, so that 40000 is 40000 and
// not the -25536 it stands for. Anything else as the chip's 16-bit signed value.
std::int32_t ValueWarnings::as_read(ExprId id, pic::Int value) const {
    const Expr* e = &expr(id);
    const bool negated = e->kind == ExprKind::Unary && e->op == Op::Negate;
    if (negated) e = &expr(e->lhs);
    if (e->kind != ExprKind::Literal) return value;
    const std::int32_t written = pic::as_unsigned(e->value);
    return negated ? -written : written;
}

// Where the expression's text begins: a binary operation's place is its operator's.
Place ValueWarnings::start_of(ExprId id) const {
    while (expr(id).kind == ExprKind::Binary)
        id = expr(id).lhs;
    return expr(id).at;
}

void ValueWarnings::into_byte(ExprId value, const std::string& holder) {
    if (value == kNoExpr) return;
    const auto v = constant_value(tree_, value);
    if (!v) return;
    const std::int32_t read = as_read(value, *v);
    if (read >= 0 && read <= 255) return;
    out_.add(start_of(value),
             holder + ": " + std::to_string(read) +
                 " is outside 0 to 255, so only its low 8 bits are kept: " +
                 std::to_string(pic::low_byte(*v)),
             Diagnostic::Severity::Warning);
}

void ValueWarnings::count(ExprId value, bool is_delay) {
    if (value == kNoExpr) return;
    const auto v = constant_value(tree_, value);
    if (!v) return;
    const std::int32_t read = as_read(value, *v);
    if (read >= 0) return;
    const std::string as = std::to_string(pic::as_unsigned(*v));
    out_.add(start_of(value),
             is_delay ? "a time below 0: 'delay' reads " + std::to_string(read) + " as " + as +
                            " milliseconds"
                      : "a count below 0: 'repeat' reads " + std::to_string(read) + " as " + as +
                            " times",
             Diagnostic::Severity::Warning);
}

void ValueWarnings::condition(ExprId condition) {
    if (condition == kNoExpr) return;
    const auto v = constant_value(tree_, condition);
    if (!v) return;
    out_.add(start_of(condition),
             *v != 0 ? "the condition is always true: it is a constant, so any 'else' after it "
                       "never runs"
                     : "the condition is always false: it is a constant, so its lines never run",
             Diagnostic::Severity::Warning);
}

}  // namespace kflow
