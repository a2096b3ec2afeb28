#include "c_flow.h"

#include <algorithm>
#include <array>

namespace kflow {

namespace {

struct HelperText {
    Helper helper;
    const char* text;
};
// Each one is written only when the flow uses it.
constexpr std::array<HelperText, 6> kHelpers{{
    {Helper::Stop,
     "/* The program has ended: the chip stays here. */\n"
     "static void kf_stop(void)\n{\n    for (;;) {\n    }\n}\n"},
    {Helper::Delay,
     "/* Waits ms milliseconds: one pass of the inner loop takes 35.6 instruction cycles\n"
     "   (SDCC 4.2, measured in gpsim), and the chip runs one per four clock periods.\n"
     "   Interrupts add their own time. */\n"
     "#define KF_LOOP_CYCLES_X10 356UL\n"
     "#define KF_LOOPS_PER_MS ((unsigned int)(KF_CLOCK_HZ / 400UL / KF_LOOP_CYCLES_X10))\n"
     "static void kf_delay_ms(unsigned int ms)\n{\n"
     "    volatile unsigned int n;\n"
     "    while (ms != 0) {\n"
     "        for (n = KF_LOOPS_PER_MS; n != 0; n--) {\n        }\n"
     "        ms--;\n    }\n}\n"},
    {Helper::Divide,
     "/* a / b, truncated toward 0; a divisor of 0 ends the program. */\n"
     "static int kf_div(int a, int b)\n{\n"
     "    if (b == 0)\n        kf_stop();\n"
     "    if (b == -1)\n        return (int)(0u - (unsigned int)a);\n"
     "    return a / b;\n}\n"},
    {Helper::Remainder,
     "/* a % b, with the sign of a; a divisor of 0 ends the program. */\n"
     "static int kf_mod(int a, int b)\n{\n"
     "    if (b == 0)\n        kf_stop();\n"
     "    if (b == -1)\n        return 0;\n"
     "    return a % b;\n}\n"},
    {Helper::ShiftLeft,
     "/* a << n; from 16 places on every bit is out. */\n"
     "static int kf_shl(int a, int n)\n{\n"
     "    if ((unsigned int)n > 15u)\n        return 0;\n"
     "    return (int)((unsigned int)a << n);\n}\n"},
    {Helper::ShiftRight,
     "/* a >> n, keeping the sign (rounds down); from 16 places on, 0 or -1. */\n"
     "static int kf_shr(int a, int n)\n{\n"
     "    if ((unsigned int)n > 15u)\n        n = 15;\n"
     "    if (a < 0)\n        return ~(~a >> n);\n"
     "    return a >> n;\n}\n"},
}};

std::string literal(const Expr& e) {
    const int v = e.value;
    if (e.character && v >= 0x20 && v < 0x7F && v != '\'' && v != '\\')
        return std::string("'") + static_cast<char>(v) + "'";
    if (v == -32768) return "(-32767 - 1)";
    if (v < 0) return "(" + std::to_string(v) + ")";
    return std::to_string(v);
}

class FlowWriter {
  public:
    explicit FlowWriter(const Program& p) : p_(p) {}

    void block(const std::vector<Stmt>& body, int depth, int repeats);
    std::string out;
    std::set<Helper> helpers;
    int temporaries = 0;
    int counters = 0;

  private:
    void line(int depth, const std::string& text, int source_line) {
        out += std::string(static_cast<std::size_t>(depth) * 4, ' ') + text + "  /* line " +
               std::to_string(source_line) + " */\n";
    }
    void close(int depth) { out += std::string(static_cast<std::size_t>(depth) * 4, ' ') + "}\n"; }
    void statement(const Stmt& s, int depth, int repeats);

    std::string expr(ExprId id);
    std::string operand(ExprId id);
    std::string binary(const Expr& e);
    std::string call(const Expr& e);
    bool has_effect(ExprId id) const;
    std::string temporary() { return "kft" + std::to_string(temporaries_now_++); }

    const Program& p_;
    int temporaries_now_ = 0;  // temporaries taken by the statement being written
};

bool FlowWriter::has_effect(ExprId id) const {
    const Expr& e = p_.expr(id);
    switch (e.kind) {
        case ExprKind::Call:
            return true;
        case ExprKind::Unary:
            return has_effect(e.lhs);
        case ExprKind::Binary: {
            // A division may stop the program, unless its divisor is a number other than 0.
            const Expr& divisor = p_.expr(e.rhs);
            const bool may_stop = (e.op == Op::Divide || e.op == Op::Remainder) &&
                                  !(divisor.kind == ExprKind::Literal && divisor.value != 0);
            return may_stop || has_effect(e.lhs) || has_effect(e.rhs);
        }
        default:
            return false;
    }
}

std::string FlowWriter::expr(ExprId id) {
    const Expr& e = p_.expr(id);
    switch (e.kind) {
        case ExprKind::Literal:
            return literal(e);
        case ExprKind::Variable:
            return kVariablePrefix + p_.variables[static_cast<std::size_t>(e.ref)].name;
        case ExprKind::Call:
            return call(e);
        case ExprKind::Unary:
            return op_text(e.op) + operand(e.lhs);
        case ExprKind::Binary:
            return binary(e);
    }
    return "0";
}

// An operand of an operator: every operation in brackets, so that C's precedence and its
// warnings about it never come into play, and "- -x" never reads as "--x".
std::string FlowWriter::operand(ExprId id) {
    const ExprKind k = p_.expr(id).kind;
    if (k == ExprKind::Binary || k == ExprKind::Unary) return "(" + expr(id) + ")";
    return expr(id);
}

struct Routine {
    Op op;
    Helper helper;
    const char* name;
};
constexpr std::array<Routine, 4> kRoutines{{{Op::Divide, Helper::Divide, "kf_div"},
                                            {Op::Remainder, Helper::Remainder, "kf_mod"},
                                            {Op::ShiftLeft, Helper::ShiftLeft, "kf_shl"},
                                            {Op::ShiftRight, Helper::ShiftRight, "kf_shr"}}};

std::string FlowWriter::binary(const Expr& e) {
    const bool ordered =
        e.op != Op::And && e.op != Op::Or && has_effect(e.lhs) && has_effect(e.rhs);
    std::string left = operand(e.lhs), right = operand(e.rhs), prefix;
    if (ordered) {
        const std::string a = temporary(), b = temporary();
        prefix = a + " = " + left + ", " + b + " = " + right + ", ";
        left = a;
        right = b;
    }
    std::string text;
    const auto routine = std::find_if(kRoutines.begin(), kRoutines.end(),
                                      [&](const Routine& r) { return r.op == e.op; });
    if (routine != kRoutines.end()) {
        helpers.insert(routine->helper);
        if (routine->helper == Helper::Divide || routine->helper == Helper::Remainder)
            helpers.insert(Helper::Stop);
        text = std::string(routine->name) + "(" + left + ", " + right + ")";
    } else {
        text = left + " " + op_text(e.op) + " " + right;
    }
    return ordered ? "(" + prefix + text + ")" : text;
}

std::string FlowWriter::call(const Expr& e) {
    const MacroInfo& m = p_.macros.at(e.ref);
    std::size_t effects = 0;
    for (ExprId a : e.args)
        effects += has_effect(a) ? 1 : 0;
    std::string prefix, args;
    for (ExprId a : e.args) {
        std::string value = expr(a);
        if (effects > 1) {
            const std::string t = temporary();
            prefix += t + " = " + value + ", ";
            value = t;
        }
        args += (args.empty() ? "" : ", ") + value;
    }
    std::string text = m.name + "(" + args + ")";
    // char and int results need no cast: both reach int as the interpreter reads them.
    if (m.is_function && m.returns != "char" && m.returns != "int") text = "((int)" + text + ")";
    return prefix.empty() ? text : "(" + prefix + text + ")";
}

void FlowWriter::block(const std::vector<Stmt>& body, int depth, int repeats) {
    for (const Stmt& s : body) {
        temporaries_now_ = 0;
        statement(s, depth, repeats);
        temporaries = std::max(temporaries, temporaries_now_);
    }
}

void FlowWriter::statement(const Stmt& s, int depth, int repeats) {
    switch (s.kind) {
        case StmtKind::Declare:
            if (s.expr != kNoExpr)
                line(depth, kVariablePrefix + s.name + " = " + expr(s.expr) + ";", s.at.line);
            return;
        case StmtKind::Assign:
            line(depth, kVariablePrefix + s.name + " = " + expr(s.expr) + ";", s.at.line);
            return;
        case StmtKind::Call:
            line(depth, expr(s.expr) + ";", s.at.line);
            return;
        case StmtKind::Delay:
            helpers.insert(Helper::Delay);
            line(depth, "kf_delay_ms((unsigned int)" + operand(s.expr) + ");", s.at.line);
            return;
        case StmtKind::Stop:
            helpers.insert(Helper::Stop);
            line(depth, "kf_stop();", s.at.line);
            return;
        case StmtKind::Repeat: {
            const std::string n = "kfr" + std::to_string(repeats);
            counters = std::max(counters, repeats + 1);
            line(depth,
                 "for (" + n + " = (unsigned int)" + operand(s.expr) + "; " + n + " != 0; " + n +
                     "--) {",
                 s.at.line);
            block(s.body, depth + 1, repeats + 1);
            return close(depth);
        }
        case StmtKind::While:
            line(depth, "while (" + expr(s.expr) + ") {", s.at.line);
            block(s.body, depth + 1, repeats);
            return close(depth);
        case StmtKind::Forever:
            line(depth, "for (;;) {", s.at.line);
            block(s.body, depth + 1, repeats);
            return close(depth);
        case StmtKind::If:
            for (const Branch& b : s.branches) {
                const bool first = &b == &s.branches.front();
                const std::string head = b.condition == kNoExpr ? "} else {"
                                         : first                ? "if (" + expr(b.condition) + ") {"
                                                 : "} else if (" + expr(b.condition) + ") {";
                line(depth, head, b.at.line);
                block(b.body, depth + 1, repeats);
            }
            return close(depth);
    }
}

}  // namespace

CFlow write_flow(const Program& program, unsigned long clock_hz) {
    FlowWriter w(program);
    w.block(program.tree.statements, 1, 0);
    CFlow out;
    // The program's variables are global, so that a debugger or a simulator finds them by name.
    for (const Variable& v : program.variables)
        out.declarations +=
            std::string(v.is_byte ? "unsigned char " : "int ") + kVariablePrefix + v.name + ";\n";
    for (int i = 0; i < w.counters; ++i)
        out.declarations +=
            "static unsigned int kfr" + std::to_string(i) + ";  /* repeat count */\n";
    for (int i = 0; i < w.temporaries; ++i)
        out.declarations +=
            "static int kft" + std::to_string(i) + ";  /* a value held in order */\n";
    if (w.helpers.count(Helper::Delay))
        out.helpers += "#define KF_CLOCK_HZ " + std::to_string(clock_hz) + "UL\n";
    for (const HelperText& h : kHelpers)
        if (w.helpers.count(h.helper)) out.helpers += std::string(h.text) + "\n";
    // Every variable starts at 0, whatever the chip's start-up leaves in its memory.
    for (const Variable& v : program.variables)
        out.body += "    " + std::string(kVariablePrefix) + v.name + " = 0;\n";
    out.body += w.out;
    return out;
}

}  // namespace kflow
