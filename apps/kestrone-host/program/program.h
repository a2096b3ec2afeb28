// A robot program that has passed every check: its tree with every name resolved, its variables
// and the component's macro table it was checked against. Only such a program runs or becomes C.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostic.h"
#include "macro_table.h"
#include "syntax.h"

namespace kflow {

struct Variable {
    std::string name;
    bool is_byte = false;
    Place declared_at;
};

struct Program {
    std::string file;  // as the messages name it
    SyntaxTree tree;
    std::vector<Variable> variables;  // by slot, in the order of declaration
    MacroTable macros;
    std::vector<std::int32_t> used_macros;  // ids of the macros the program calls, ascending
    int repeat_depth = 0;                   // the deepest nesting of repeat blocks

    const Expr& expr(ExprId id) const { return tree.exprs[static_cast<std::size_t>(id)]; }
    // The slot of a variable, or -1.
    int slot_of(std::string_view name) const;
    // A new variable in the next slot, which it returns.
    int declare(Variable v);

  private:
    // Every name's slot, so that a program of many variables is checked in time near its size.
    std::map<std::string, int, std::less<>> slots_;
};

struct CheckedProgram {
    std::optional<Program> program;    // set when there is no fault
    std::vector<Diagnostic> faults;    // the errors, in the order of their places
    std::vector<Diagnostic> warnings;  // in the order of their places; they stop nothing
};

// Reads, parses and checks `source` against the component's macros. `file` names the program in
// the messages.
CheckedProgram check_program(std::string_view source, const std::string& file,
                             const MacroTable& macros);

}  // namespace kflow
