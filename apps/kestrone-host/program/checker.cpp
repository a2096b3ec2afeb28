// The checks of names: every variable declared once and before its use, every macro known,
// public, called with its number of arguments, and a value where a value is wanted.
#include <algorithm>
#include <map>

#include "lexer.h"
#include "parser.h"
#include "program.h"

namespace kflow {

namespace {

std::string count_of(std::size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

class Checker {
  public:
    Checker(Program& p, Diagnostics& faults) : p_(p), faults_(faults) {}

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
                return;
            case StmtKind::Call:
                return call(s.expr, false);
            case StmtKind::Repeat:
                value(s.expr);
                return block(s.body, repeats + 1);
            case StmtKind::If:
                for (Branch& b : s.branches) {
                    value(b.condition);
                    block(b.body, repeats);
                }
                return;
            case StmtKind::Delay:
            case StmtKind::While:
            case StmtKind::Forever:
            case StmtKind::Stop:
                value(s.expr);
                return block(s.body, repeats);
        }
    }

    void declaration(Stmt& s) {
        value(s.expr);
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
        if (later != declared_at_.end())
            faults_.add(at, "'" + name + "' is used before its declaration on line " +
                                std::to_string(later->second) +
                                ": declare variables at the top of the program");
        else
            faults_.add(at, "there is no variable '" + name + "': declare it first, as int " +
                                name + " = 0");
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

    Program& p_;
    Diagnostics& faults_;
    std::map<std::string, int> declared_at_;  // line of each name's first declaration
};

void Checker::call(ExprId id, bool as_value) {
    if (id == kNoExpr) return;
    const std::vector<ExprId> args = p_.tree.exprs[static_cast<std::size_t>(id)].args;
    for (ExprId a : args)
        value(a);
    Expr& e = p_.tree.exprs[static_cast<std::size_t>(id)];
    const MacroInfo* m = p_.macros.find(e.name);
    if (!m) {
        std::string text;
        if (p_.slot_of(e.name) >= 0)
            text = "'" + e.name + "' is a variable, not a macro: it takes no brackets";
        else if (const MacroInfo* near = p_.macros.find_ignoring_case(e.name);
                 near && !near->is_private)
            text = "there is no macro '" + e.name + "': did you mean '" + near->name +
                   "'? Names must match in capitals too";
        else
            text = "there is no macro '" + e.name + "' in this component";
        faults_.add(e.at, text);
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
    Diagnostics faults;
    Program p;
    p.file = file;
    p.macros = macros;
    p.tree = parse(lex(source, faults), faults);
    Checker(p, faults).run();
    CheckedProgram out;
    out.faults = faults.sorted();
    if (out.faults.empty()) out.program = std::move(p);
    return out;
}

}  // namespace kflow
