// The checks of names: every variable declared once and before its use, every macro known,
// public, called with its number of arguments, and a value where a value is wanted; an unknown
// name is answered with the nearest known one. Warnings of values alongside.
#include <algorithm>
#include <map>

#include "lexer.h"
#include "nearest_name.h"
#include "parser.h"
#include "program.h"
#include "value_warnings.h"

namespace kflow {

namespace {

std::string count_of(std::size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

std::string did_you_mean(const NearestName& near) {
    return "; did you mean '" + *near.found() + "'?";
}

// Enough to compare a misspelt name with thousands of known ones, yet a bound on the time that
// a program of a hundred thousand misspelt names takes to check.
constexpr std::int64_t kSuggestionSteps = std::int64_t{1} << 24;

class Checker {
  public:
    Checker(Program& p, Diagnostics& faults, Diagnostics& warnings)
        : p_(p), faults_(faults), warn_(p.tree, warnings) {}

    void run() {
        collect_declarations(p_.tree.statements);
        block(p_.tree.statements, 0);
        std::sort(p_.used_macros.begin(), p_.used_macros.end());
        p_.used_macros.erase(std::unique(p_.used_macros.begin(), p_.used_macros.end()),
                             p_.used_macros.end());
    }

  private:
    void collect_declarations(const std::vector<Stmt>& body) {
        for (const Stmt& s : body) {
            if (s.kind == StmtKind::Declare) declared_at_.try_emplace(s.name, s.name_at.line);
            collect_declarations(s.body);
            for (const Branch& b : s.branches)
                collect_declarations(b.body);
        }
    }

    void block(std::vector<Stmt>& body, int repeats) {
        p_.repeat_depth = std::max(p_.repeat_depth, repeats);
        for (Stmt& s : body)
            statement(s, repeats);
    }

    void statement(Stmt& s, int repeats) {
        switch (s.kind) {
            case StmtKind::Declare:
                return declaration(s);
            case StmtKind::Assign:
                value(s.expr);
                s.ref = variable(s.name, s.name_at, false);
                if (s.ref >= 0 && p_.variables[static_cast<std::size_t>(s.ref)].is_byte)
                    warn_.into_byte(s.expr, "'" + s.name + "' is a byte");
                return;
            case StmtKind::Call:
                return call(s.expr, false);
            case StmtKind::Repeat:
                value(s.expr);
                warn_.count(s.expr, false);
                return block(s.body, repeats + 1);
            case StmtKind::If:
                for (Branch& b : s.branches) {
                    value(b.condition);
                    warn_.condition(b.condition);
                    block(b.body, repeats);
                }
                return;
            case StmtKind::Delay:
                value(s.expr);
                return warn_.count(s.expr, true);
            case StmtKind::While:
            case StmtKind::Forever:
            case StmtKind::Stop:
                value(s.expr);
                return block(s.body, repeats);
        }
    }

    void declaration(Stmt& s) {
        value(s.expr);
        if (s.is_byte) warn_.into_byte(s.expr, "'" + s.name + "' is a byte");
        if (p_.macros.find(s.name)) {
            faults_.add(s.name_at, "'" + s.name +
                                       "' is the name of a macro and cannot name a "
                                       "variable");
            return;
        }
        const int known = p_.slot_of(s.name);
        if (known >= 0) {
            faults_.add(
                s.name_at,
                "'" + s.name + "' is already declared on line " +
                    std::to_string(p_.variables[static_cast<std::size_t>(known)].declared_at.line));
            return;
        }
        s.ref = p_.declare({s.name, s.is_byte, s.name_at});
    }

    // The slot of a variable used by name; -1 after a fault.
    int variable(const std::string& name, Place at, bool reading) {
        const int slot = p_.slot_of(name);
        if (slot >= 0) return slot;
        if (const MacroInfo* m = p_.macros.find(name)) {
            faults_.add(at, "'" + name + "' is a macro, not a variable: " +
                                (reading ? "call it with brackets, as " + m->name + "()"
                                         : std::string("only a variable can be set with '='")));
            return -1;
        }
        const auto later = declared_at_.find(name);
        if (later != declared_at_.end()) {
            faults_.add(at, "'" + name + "' is used before its declaration on line " +
                                std::to_string(later->second) +
                                ": declare variables at the top of the program");
            return -1;
        }
        NearestName near(name, budget_);
        for (const Variable& v : p_.variables)
            if (!near.offer(v.name)) break;
        const std::string declare = "declare it first, as int " + name + " = 0";
        faults_.add(
            at, "there is no variable '" + name + "'" +
                    (near.found() ? did_you_mean(near) + " If not, " + declare : ": " + declare));
        return -1;
    }

    // An expression whose value is used.
    void value(ExprId id) {
        if (id == kNoExpr) return;
        Expr& e = p_.tree.exprs[static_cast<std::size_t>(id)];
        switch (e.kind) {
            case ExprKind::Literal:
                return;
            case ExprKind::Variable:
                e.ref = variable(e.name, e.at, true);
                return;
            case ExprKind::Call:
                return call(id, true);
            case ExprKind::Unary:
                return value(e.lhs);
            case ExprKind::Binary:
                value(e.lhs);
                return value(e.rhs);
        }
    }

    void call(ExprId id, bool as_value);

    std::string no_macro(const std::string& name);
    void char_arguments(const MacroInfo& m, const std::vector<ExprId>& args);

    Program& p_;
    Diagnostics& faults_;
    ValueWarnings warn_;
    SuggestionBudget budget_{kSuggestionSteps};
    std::map<std::string, int> declared_at_;  // line of each name's first declaration
};

// An unknown macro, with the public one nearest to it.
std::string Checker::no_macro(const std::string& name) {
    NearestName near(name, budget_);
    for (const MacroInfo& m : p_.macros.macros())
        if (!m.is_private && !near.offer(m.name)) break;
    if (!near.found()) return "there is no macro '" + name + "' in this component";
    return "there is no macro '" + name + "'" + did_you_mean(near) +
           (near.same_ignoring_case() ? " Names must match in capitals too" : "");
}

void Checker::char_arguments(const MacroInfo& m, const std::vector<ExprId>& args) {
    for (std::size_t k = 0; k < args.size(); ++k)
        if (ctype_of(m.params[k].type) == CType::UnsignedChar)
            warn_.into_byte(args[k], "'" + m.name + "' takes " + m.params[k].name + " as a char");
}

void Checker::call(ExprId id, bool as_value) {
    if (id == kNoExpr) return;
    const std::vector<ExprId> args = p_.tree.exprs[static_cast<std::size_t>(id)].args;
    for (ExprId a : args)
        value(a);
    Expr& e = p_.tree.exprs[static_cast<std::size_t>(id)];
    const MacroInfo* m = p_.macros.find(e.name);
    if (!m) {
        faults_.add(e.at, p_.slot_of(e.name) >= 0
                              ? "'" + e.name + "' is a variable, not a macro: it takes no brackets"
                              : no_macro(e.name));
        return;
    }
    if (m->is_private) {
        faults_.add(e.at, "'" + e.name +
                              "' is private to the component: programs cannot call "
                              "it");
        return;
    }
    if (args.size() != m->params.size()) {
        faults_.add(e.at, "'" + e.name + "' takes " +
                              count_of(m->params.size(), "argument", "arguments") + ", but " +
                              count_of(args.size(), "is", "are") + " given");
        return;
    }
    if (as_value && !m->is_function) {
        faults_.add(e.at, "'" + e.name +
                              "' gives no value, so it cannot be used in an "
                              "expression; call it on a line of its own");
        return;
    }
    char_arguments(*m, args);
    e.ref = m->id;
    p_.used_macros.push_back(m->id);
}

}  // namespace

int Program::slot_of(std::string_view name) const {
    const auto found = slots_.find(name);
    return found == slots_.end() ? -1 : found->second;
}

int Program::declare(Variable v) {
    const int slot = static_cast<int>(variables.size());
    slots_.emplace(v.name, slot);
    variables.push_back(std::move(v));
    return slot;
}

CheckedProgram check_program(std::string_view source, const std::string& file,
                             const MacroTable& macros) {
    Diagnostics faults, warnings;
    Program p;
    p.file = file;
    p.macros = macros;
    p.tree = parse(lex(source, faults), faults);
    Checker(p, faults, warnings).run();
    CheckedProgram out;
    out.faults = faults.sorted();
    out.warnings = warnings.sorted();
    if (out.faults.empty()) out.program = std::move(p);
    return out;
}

}  // namespace kflow
