#include "expression_parser.h"

#include <algorithm>
#include <array>

namespace kflow {

namespace {

struct BinaryOp {
    Tok token;
    Op op;
    int level;  // 1 binds loosest
};
constexpr int kTopLevel = 10;
constexpr std::array<BinaryOp, 18> kBinary{{
    {Tok::OrOr, Op::Or, 1},
    {Tok::AndAnd, Op::And, 2},
    {Tok::Pipe, Op::BitOr, 3},
    {Tok::Caret, Op::BitXor, 4},
    {Tok::Amp, Op::BitAnd, 5},
    {Tok::Equal, Op::Equal, 6},
    {Tok::NotEqual, Op::NotEqual, 6},
    {Tok::Less, Op::Less, 7},
    {Tok::LessEqual, Op::LessEqual, 7},
    {Tok::Greater, Op::Greater, 7},
    {Tok::GreaterEqual, Op::GreaterEqual, 7},
    {Tok::Shl, Op::ShiftLeft, 8},
    {Tok::Shr, Op::ShiftRight, 8},
    {Tok::Plus, Op::Add, 9},
    {Tok::Minus, Op::Subtract, 9},
    {Tok::Star, Op::Multiply, 10},
    {Tok::Slash, Op::Divide, 10},
    {Tok::Percent, Op::Remainder, 10},
}};

struct UnaryOp {
    Tok token;
    Op op;
};
constexpr std::array<UnaryOp, 3> kUnary{
    {{Tok::Minus, Op::Negate}, {Tok::Not, Op::Not}, {Tok::Tilde, Op::Complement}}};

const BinaryOp* binary_of(const Token* t) {
    if (!t) return nullptr;
    for (const BinaryOp& b : kBinary)
        if (b.token == t->kind) return &b;
    return nullptr;
}

}  // namespace

const char* op_text(Op op) {
    // In the order of Op.
    static constexpr std::array<const char*, 21> kTexts{
        "-",  "!", "~",  "*",  "/",  "%", "+", "-", "<<", ">>", "<",
        "<=", ">", ">=", "==", "!=", "&", "^", "|", "&&", "||"};
    return kTexts[static_cast<std::size_t>(op)];
}

ExprId ExpressionParser::add(Expr e) {
    int height = -1;  // a value alone is no operation: 0 after the count below
    const auto below = [&](ExprId id) {
        if (id != kNoExpr)
            height = std::max(height, heights_[static_cast<std::size_t>(id) - first_]);
    };
    below(e.lhs);
    below(e.rhs);
    for (const ExprId a : e.args)
        below(a);
    if (++height > kMaxExpressionNesting)
        return fail(e.at, "the expression is too long: more than " +
                              std::to_string(kMaxExpressionNesting) +
                              " operations build on one another; split it over a few variables");
    exprs_.push_back(std::move(e));
    heights_.push_back(height);
    return static_cast<ExprId>(exprs_.size() - 1);
}

ExprId ExpressionParser::fail(Place at, std::string text) {
    if (!fault_) fault_ = Fault{at, std::move(text)};
    return kNoExpr;
}

Place ExpressionParser::end_place() const {
    if (t_.empty()) return {};
    const Token& last = t_.back();
    return {last.at.line, last.at.column + static_cast<int>(last.text.size())};
}

bool ExpressionParser::enter(Place at) {
    if (depth_ < kMaxExpressionNesting) return true;
    fail(at, "the expression is nested more than " + std::to_string(kMaxExpressionNesting) +
                 " deep: split it over a few variables");
    return false;
}

ExprId ExpressionParser::parse() {
    return binary(1);  // the line itself is no level of nesting
}

ExprId ExpressionParser::nested(Place opener) {
    if (!enter(opener)) return kNoExpr;
    ++depth_;
    const ExprId e = binary(1);
    --depth_;
    return e;
}

ExprId ExpressionParser::binary(int level) {
    if (level > kTopLevel) return unary();
    ExprId left = binary(level + 1);
    while (left != kNoExpr) {
        const BinaryOp* b = binary_of(peek());
        if (!b || b->level != level) break;
        const Place at = peek()->at;
        ++pos_;
        const ExprId right = binary(level + 1);
        if (right == kNoExpr) return kNoExpr;
        Expr e;
        e.kind = ExprKind::Binary;
        e.op = b->op;
        e.at = at;
        e.lhs = left;
        e.rhs = right;
        left = add(std::move(e));
    }
    return left;
}

ExprId ExpressionParser::unary() {
    const Token* t = peek();
    if (t)
        for (const UnaryOp& u : kUnary)
            if (u.token == t->kind) {
                const Place at = t->at;
                if (!enter(at)) return kNoExpr;
                ++pos_;
                ++depth_;
                const ExprId operand = unary();
                --depth_;
                if (operand == kNoExpr) return kNoExpr;
                Expr e;
                e.kind = ExprKind::Unary;
                e.op = u.op;
                e.at = at;
                e.lhs = operand;
                return add(std::move(e));
            }
    return primary();
}

ExprId ExpressionParser::primary() {
    const Token* t = peek();
    if (!t) return fail(end_place(), "a value is missing at the end of the line");
    ++pos_;
    switch (t->kind) {
        case Tok::Number: {
            Expr e;
            e.kind = ExprKind::Literal;
            e.at = t->at;
            e.value = t->value;
            e.character = !t->text.empty() && t->text.front() == '\'';
            return add(std::move(e));
        }
        case Tok::Name: {
            if (peek() && peek()->kind == Tok::LParen) return call(*t);
            Expr e;
            e.kind = ExprKind::Variable;
            e.at = t->at;
            e.name = t->text;
            return add(std::move(e));
        }
        case Tok::LParen: {
            const ExprId inner = nested(t->at);
            if (inner == kNoExpr) return kNoExpr;
            if (!peek() || peek()->kind != Tok::RParen)
                return fail(
                    peek() ? peek()->at : end_place(),
                    "a ')' is missing to close the '(' at column " + std::to_string(t->at.column));
            ++pos_;
            return inner;
        }
        case Tok::Assign:
            return fail(t->at, "'=' sets a variable; to compare two values, write '=='");
        default:
            return fail(t->at, "a value is missing before " + describe(*t));
    }
}

ExprId ExpressionParser::call(const Token& name) {
    Expr e;
    e.kind = ExprKind::Call;
    e.at = name.at;
    e.name = name.text;
    const Place open = peek()->at;
    ++pos_;  // the '('
    if (peek() && peek()->kind == Tok::RParen) {
        ++pos_;
        return add(std::move(e));
    }
    while (true) {
        const ExprId arg = nested(open);
        if (arg == kNoExpr) return kNoExpr;
        e.args.push_back(arg);
        const Token* t = peek();
        if (t && t->kind == Tok::Comma) {
            ++pos_;
            continue;
        }
        if (t && t->kind == Tok::RParen) {
            ++pos_;
            return add(std::move(e));
        }
        return fail(t ? t->at : end_place(), "a ')' is missing to close the call of '" + name.text +
                                                 "' at column " + std::to_string(open.column));
    }
}

}  // namespace kflow
