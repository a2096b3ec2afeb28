// Expressions within one line: C's operators with C's precedence, all left-associative.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "lexer.h"
#include "syntax.h"

namespace kflow {

// Brackets, signs and calls within one another, and operations built on one another (a long
// chain of sums is as deep a tree as many brackets): deeper than this an expression is refused,
// so that the parser and everything that walks the tree stay well within the stack.
inline constexpr int kMaxExpressionNesting = 200;

// Reads tokens from `pos` on. On a fault it gives kNoExpr and sets `fault`; the caller reports
// it and drops the rest of the line.
class ExpressionParser {
  public:
    ExpressionParser(const std::vector<Token>& tokens, std::size_t pos, std::vector<Expr>& exprs)
        : t_(tokens), pos_(pos), exprs_(exprs), first_(exprs.size()) {}

    ExprId parse();
    std::size_t position() const { return pos_; }

    struct Fault {
        Place at;
        std::string text;
    };
    const std::optional<Fault>& fault() const { return fault_; }

  private:
    // An expression within `opener` (a bracket, a call's bracket, or the line itself).
    ExprId nested(Place opener);
    ExprId binary(int level);
    ExprId unary();
    ExprId primary();
    ExprId call(const Token& name);
    ExprId add(Expr e);
    ExprId fail(Place at, std::string text);
    // False, with the fault, when one more level opened at `at` would be too deep.
    bool enter(Place at);
    const Token* peek() const { return pos_ < t_.size() ? &t_[pos_] : nullptr; }
    Place end_place() const;

    const std::vector<Token>& t_;
    std::size_t pos_;
    std::vector<Expr>& exprs_;
    std::size_t first_;         // the id of this parser's first expression
    std::vector<int> heights_;  // of each expression added here, from first_ on
    std::optional<Fault> fault_;
    int depth_ = 0;
};

}  // namespace kflow
