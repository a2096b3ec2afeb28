// Warnings of lines that run, but not as they read: a constant that loses bits in a byte or a
// char, a count or a time below 0, a condition that never changes.
#pragma once

#include <optional>
#include <string>

#include "diagnostic.h"
#include "pic_int.h"
#include "syntax.h"

namespace kflow {

// The value of an expression of literals and operators alone, by the chip's rules; nullopt for
// one that reads a variable, calls a macro or divides by 0 (that stops the program as it runs).
std::optional<pic::Int> constant_value(const SyntaxTree& tree, ExprId id);

class ValueWarnings {
  public:
    ValueWarnings(const SyntaxTree& tree, Diagnostics& out) : tree_(tree), out_(out) {}

    // A value kept in 8 bits; `holder` says what keeps it ("'b' is a byte").
    void into_byte(ExprId value, const std::string& holder);
    // The count of a repeat or the time of a delay, read as 0 to 65535.
    void count(ExprId value, bool is_delay);
    // The condition of an if or an else if.
    void condition(ExprId condition);

  private:
    // The number a reader takes a constant for.
    std::int32_t as_read(ExprId id, pic::Int value) const;
    Place start_of(ExprId id) const;
    const Expr& expr(ExprId id) const { return tree_.exprs[static_cast<std::size_t>(id)]; }

    const SyntaxTree& tree_;
    Diagnostics& out_;
};

}  // namespace kflow
