#include "value_warnings.h"

namespace kflow {

namespace {

// Exact values stay within 32 bits, so that a product of two never overflows.
constexpr std::int64_t kExactLimit = std::int64_t{1} << 31;

std::optional<std::int64_t> bounded(std::int64_t v) {
    if (v > kExactLimit || v < -kExactLimit) return std::nullopt;
    return v;
}

std::optional<std::int64_t> exact_unary(Op op, std::int64_t a) {
    switch (op) {
        case Op::Negate:
            return -a;
        case Op::Not:
            return a == 0;
        default:
            return bounded(~a);
    }
}

// C's operators on integers of any size; the caller has made sure that a divisor is not 0.
std::optional<std::int64_t> exact_binary(Op op, std::int64_t a, std::int64_t b) {
    switch (op) {
        case Op::Multiply:
            return bounded(a * b);
        case Op::Divide:
            return a / b;
        case Op::Remainder:
            return a % b;
        case Op::Add:
            return bounded(a + b);
        case Op::Subtract:
            return bounded(a - b);
        // A count below 0 is a large one, as the chip reads it.
        case Op::ShiftLeft:
            if (a == 0) return 0;
            if (b < 0 || b > 31) return std::nullopt;
            return bounded(a * (std::int64_t{1} << b));
        case Op::ShiftRight:
            return a >> (b < 0 || b > 62 ? 62 : b);
        case Op::Less:
            return a < b;
        case Op::LessEqual:
            return a <= b;
        case Op::Greater:
            return a > b;
        case Op::GreaterEqual:
            return a >= b;
        case Op::Equal:
            return a == b;
        case Op::NotEqual:
            return a != b;
        case Op::BitAnd:
            return a & b;
        case Op::BitXor:
            return a ^ b;
        case Op::BitOr:
            return a | b;
        case Op::And:
            return a != 0 && b != 0;
        case Op::Or:
            return a != 0 || b != 0;
        default:
            return std::nullopt;
    }
}

std::string as_written(const Constant& c) {
    return c.exact ? std::to_string(*c.exact) : "a value beyond 32 bits";
}

}  // namespace

std::optional<Constant> constant_value(const SyntaxTree& tree, ExprId id) {
    const Expr& e = tree.exprs[static_cast<std::size_t>(id)];
    switch (e.kind) {
        case ExprKind::Literal:
            return Constant{e.value, pic::as_unsigned(e.value)};
        case ExprKind::Variable:
        case ExprKind::Call:
            return std::nullopt;
        case ExprKind::Unary: {
            const auto v = constant_value(tree, e.lhs);
            if (!v) return std::nullopt;
            return Constant{pic::unary(e.op, v->chip),
                            v->exact ? exact_unary(e.op, *v->exact) : std::nullopt};
        }
        case ExprKind::Binary:
            break;
    }
    const auto l = constant_value(tree, e.lhs), r = constant_value(tree, e.rhs);
    if (!l || !r) return std::nullopt;
    // A divisor of 0, on the chip or as written (40000 < 0 is 1 on the chip), makes no constant.
    if ((e.op == Op::Divide || e.op == Op::Remainder) && (r->chip == 0 || r->exact == 0))
        return std::nullopt;
    return Constant{pic::apply(e.op, l->chip, r->chip),
                    l->exact && r->exact ? exact_binary(e.op, *l->exact, *r->exact) : std::nullopt};
}

// Where the expression's text begins: a binary operation's place is its operator's.
Place ValueWarnings::start_of(ExprId id) const {
    while (expr(id).kind == ExprKind::Binary)
        id = expr(id).lhs;
    return expr(id).at;
}

void ValueWarnings::into_byte(ExprId value, const std::string& holder) {
    if (value == kNoExpr) return;
    const auto c = constant_value(tree_, value);
    if (!c || (c->exact && *c->exact >= 0 && *c->exact <= 255)) return;
    out_.add(start_of(value),
             holder + ": " + as_written(*c) +
                 " is outside 0 to 255, so only its low 8 bits are kept: " +
                 std::to_string(pic::low_byte(c->chip)),
             Diagnostic::Severity::Warning);
}

void ValueWarnings::count(ExprId value, bool is_delay) {
    if (value == kNoExpr) return;
    const auto c = constant_value(tree_, value);
    if (!c || (c->exact && *c->exact >= 0 && *c->exact <= 65535)) return;
    const std::string read = as_written(*c) + " as " + std::to_string(pic::as_unsigned(c->chip));
    out_.add(start_of(value),
             is_delay ? "a time outside 0 to 65535: 'delay' reads " + read + " milliseconds"
                      : "a count outside 0 to 65535: 'repeat' reads " + read + " times",
             Diagnostic::Severity::Warning);
}

void ValueWarnings::condition(ExprId condition) {
    if (condition == kNoExpr) return;
    const auto c = constant_value(tree_, condition);
    if (!c) return;
    out_.add(start_of(condition),
             c->chip != 0 ? "the condition is always true: it is a constant, so any 'else' after "
                            "it never runs"
                          : "the condition is always false: it is a constant, so its lines never "
                            "run",
             Diagnostic::Severity::Warning);
}

}  // namespace kflow
