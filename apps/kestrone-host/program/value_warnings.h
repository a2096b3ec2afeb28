// Warnings of lines that run, but not as they read: a constant that loses bits in a byte or a
// char, a count or a time outside 0 to 65535, a condition that never changes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "diagnostic.h"
#include "pic_int.h"
#include "syntax.h"

namespace kflow {

// An expression of literals and operators alone, worked out twice: by the chip's rules, as it
// runs, and exactly, as its reader takes it (literals as written, nothing wrapped; nullopt once
// it leaves 32 bits).
struct Constant {
    pic::Int chip;
    std::optional<std::int64_t> exact;
};

// nullopt for an expression that reads a variable, calls a macro or divides by 0 (that stops
// the program as it runs).
std::optional<Constant> constant_value(const SyntaxTree& tree, ExprId id);

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
    Place start_of(ExprId id) const;
    const Expr& expr(ExprId id) const { return tree_.exprs[static_cast<std::size_t>(id)]; }

    const SyntaxTree& tree_;
    Diagnostics& out_;
};

}  // namespace kflow
