#include "c_flow.h"

#include <algorithm>
#include <array>
#include <span>

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

bool constant(const CValue& v) {
    return v.known && !v.effect;
}

// A rough measure of a statement's code on the chip: its expressions' operands and operators.
int weight(const Program& p, ExprId id) {
    if (id == kNoExpr) return 0;
    const Expr& e = p.expr(id);
    int w = 1 + weight(p, e.lhs) + weight(p, e.rhs);
    for (ExprId a : e.args)
        w += weight(p, a);
    return w;
}
int weight(const Program& p, std::span<const Stmt> body);
int weight(const Program& p, const Stmt& s) {
    int w = 1 + weight(p, s.expr);
    w += weight(p, std::span<const Stmt>(s.body));
    for (const Branch& b : s.branches)
        w += weight(p, b.condition) + weight(p, std::span<const Stmt>(b.body));
    return w;
}

int weight(const Program& p, std::span<const Stmt> body) {
    int w = 0;
    for (const Stmt& s : body)
        w += weight(p, s);
    return w;
}

// The chip's compiler keeps each function within one page of program memory (2048 words): a
// flow heavier than this goes into functions of about this weight, which main() calls in turn,
// and so do the bodies of a statement heavier than it. (Each is a call deeper, and the chip's
// return stack holds eight: only heavy statements nested in heavy statements go deeper.)
constexpr int kPartWeight = 150;

class FlowWriter {
  public:
    explicit FlowWriter(const Program& p) : p_(p), x_(p) {}

    // Whether the flow can get past the block's end: statements after one that never ends (a
    // stop, an endless loop) never run, and are left out, since the compiler calls them
    // unreachable.
    bool block(std::span<const Stmt> body, int depth, int repeats);
    // Runs `body` in a function of its own when it is heavy: the call is written in its place.
    bool part(std::span<const Stmt> body, int depth, int repeats, bool heavy);
    std::string out;
    std::string functions;  // the parts, each before the one that calls it
    int counters = 0;
    const CExprWriter& expressions() const { return x_; }
    int parts = 0;

  private:
    std::string pad(int depth) const {
        return std::string(static_cast<std::size_t>(depth) * 4, ' ');
    }
    void line(int depth, const std::string& text, int source_line) {
        out += pad(depth) + text + "  /* line " + std::to_string(source_line) + " */\n";
    }
    void close(int depth) { out += pad(depth) + "}\n"; }
    bool statement(const Stmt& s, int depth, int repeats);
    // A body of a heavy statement goes into a function of its own unless it is light.
    bool body(const Stmt& s, std::span<const Stmt> b, int depth, int repeats) {
        return part(b, depth, repeats,
                    weight(p_, s) > kPartWeight && weight(p_, b) > kPartWeight / 4);
    }
    void set(const Stmt& s, int depth);
    bool if_statement(const Stmt& s, int depth, int repeats);
    bool loop(const Stmt& s, int depth, int repeats);

    const Program& p_;
    CExprWriter x_;
};

bool FlowWriter::block(std::span<const Stmt> body, int depth, int repeats) {
    for (const Stmt& s : body) {
        x_.new_statement();
        if (!statement(s, depth, repeats)) return false;
    }
    return true;
}

bool FlowWriter::part(std::span<const Stmt> body, int depth, int repeats, bool heavy) {
    if (!heavy) return block(body, depth, repeats);
    std::string caller;
    std::swap(caller, out);
    const bool through = block(body, 1, repeats);
    const std::string name = "kf_part" + std::to_string(++parts);
    // Not static: the compiler would put a static function called once back into its caller.
    functions += "void " + name + "(void)\n{\n" + out + "}\n\n";
    out = std::move(caller) + pad(depth) + name + "();\n";
    return through;
}

void FlowWriter::set(const Stmt& s, int depth) {
    const CValue v = x_.value(s.expr);
    const std::string target = kVariablePrefix + s.name;
    // A byte keeps the low 8 bits, said in so many words: the compiler warns of a constant
    // that does not fit.
    if (!p_.variables[static_cast<std::size_t>(s.ref)].is_byte)
        line(depth, target + " = " + v.text + ";", s.at.line);
    else if (constant(v))
        line(depth, target + " = " + std::to_string(*v.known & 0xFF) + ";", s.at.line);
    else if (!v.effect)
        line(depth, target + " = (unsigned char)" + CExprWriter::operand(v) + ";", s.at.line);
    else {
        // The port loses its way narrowing a sum that holds a call's result straight to a char
        // (it writes without end, or fails): the int is held whole first, and narrowed from
        // unsigned.
        const std::string t = x_.temporary();
        line(depth,
             t + " = " + v.text + "; " + target + " = (unsigned char)(unsigned int)" + t + ";",
             s.at.line);
    }
}

bool FlowWriter::statement(const Stmt& s, int depth, int repeats) {
    switch (s.kind) {
        case StmtKind::Declare:
            if (s.expr != kNoExpr) set(s, depth);
            return true;
        case StmtKind::Assign:
            set(s, depth);
            return true;
        case StmtKind::Call:
            line(depth, x_.value(s.expr).text + ";", s.at.line);
            return true;
        case StmtKind::Delay:
            x_.helpers.insert(Helper::Delay);
            line(depth,
                 "kf_delay_ms((unsigned int)" + CExprWriter::operand(x_.value(s.expr)) + ");",
                 s.at.line);
            return true;
        case StmtKind::Stop:
            x_.helpers.insert(Helper::Stop);
            line(depth, "kf_stop();", s.at.line);
            return false;
        case StmtKind::Repeat:
        case StmtKind::While:
        case StmtKind::Forever:
            return loop(s, depth, repeats);
        case StmtKind::If:
            return if_statement(s, depth, repeats);
    }
    return true;
}

// A loop whose body never ends runs that body at most once: it is written as an if (or a plain
// block), since the compiler would call the way back unreachable.
bool FlowWriter::loop(const Stmt& s, int depth, int repeats) {
    std::string head, once;
    bool ends = true;  // whatever its body does, the loop may end
    int inner = repeats;
    if (s.kind == StmtKind::Repeat) {
        const CValue n = x_.value(s.expr);
        if (constant(n) && *n.known == 0) return true;
        const std::string c = "kfr" + std::to_string(repeats);
        counters = std::max(counters, ++inner);
        head = "for (" + c + " = (unsigned int)" + CExprWriter::operand(n) + "; " + c + " != 0; " +
               c + "--) {";
        once = constant(n) ? "{" : "if (" + n.text + ") {";
        ends = !constant(n);
    } else if (s.kind == StmtKind::While) {
        const CValue c = x_.value(s.expr);
        if (constant(c) && *c.known == 0) return true;
        ends = !constant(c);
        head = ends ? "while (" + c.text + ") {" : "for (;;) {";
        once = ends ? "if (" + c.text + ") {" : "{";
    } else {
        head = "for (;;) {";
        once = "{";
        ends = false;
    }
    const std::size_t at = out.size();
    const bool through = body(s, s.body, depth + 1, inner);
    out.insert(at, pad(depth) + (through ? head : once) + "  /* line " + std::to_string(s.at.line) +
                       " */\n");
    close(depth);
    // A repeat of a known count ends when its body does; an endless loop never ends.
    return ends || (s.kind == StmtKind::Repeat && through);
}

// Arms whose condition is a constant are left out, or, when it holds, end the chain as its
// else: the compiler warns of a constant condition.
bool FlowWriter::if_statement(const Stmt& s, int depth, int repeats) {
    bool opened = false, through = false, decided = false;
    for (const Branch& b : s.branches) {
        std::string condition;
        if (b.condition != kNoExpr) {
            const CValue c = x_.value(b.condition);
            if (constant(c) && *c.known == 0) continue;
            if (!constant(c)) condition = c.text;
        }
        if (condition.empty()) {
            // This arm runs whenever the earlier ones do not.
            if (!opened) return body(s, b.body, depth, repeats);
            line(depth, "} else {", b.at.line);
            through |= body(s, b.body, depth + 1, repeats);
            decided = true;
            break;
        }
        line(depth, (opened ? "} else if (" : "if (") + condition + ") {", b.at.line);
        opened = true;
        through |= body(s, b.body, depth + 1, repeats);
    }
    if (opened) close(depth);
    return through || !decided;
}

}  // namespace

CFlow write_flow(const Program& program, unsigned long clock_hz) {
    FlowWriter w(program);
    CFlow out;
    const std::vector<Stmt>& top = program.tree.statements;
    const bool split = weight(program, std::span(top)) > kPartWeight;
    for (std::size_t from = 0; from < top.size() && !out.ends;) {
        std::size_t to = from + 1;
        for (int load = weight(program, top[from]);
             to < top.size() && (!split || load + weight(program, top[to]) <= kPartWeight); ++to)
            load += weight(program, top[to]);
        out.ends = !w.part(std::span(top).subspan(from, to - from), 1, 0, split);
        from = to;
    }
    out.parts = w.functions;
    const CExprWriter& x = w.expressions();
    // The program's variables are global, so that a debugger or a simulator finds them by name,
    // and volatile, so that the compiler carries no value of theirs from one statement to the
    // next: it has misread them there, and warns of what it then finds constant.
    for (const Variable& v : program.variables)
        out.declarations += std::string(v.is_byte ? "volatile unsigned char " : "volatile int ") +
                            kVariablePrefix + v.name + ";\n";
    for (int i = 0; i < w.counters; ++i)
        out.declarations +=
            "static unsigned int kfr" + std::to_string(i) + ";  /* repeat count */\n";
    for (int i = 0; i < x.temporaries; ++i)
        out.declarations +=
            "static int kft" + std::to_string(i) + ";  /* a value held in order */\n";
    if (x.helpers.count(Helper::Delay))
        out.helpers += "#define KF_CLOCK_HZ " + std::to_string(clock_hz) + "UL\n";
    for (const HelperText& h : kHelpers)
        if (x.helpers.count(h.helper)) out.helpers += std::string(h.text) + "\n";
    // Every variable starts at 0, whatever the chip's start-up leaves in its memory.
    for (const Variable& v : program.variables)
        out.body += "    " + std::string(kVariablePrefix) + v.name + " = 0;\n";
    out.body += w.out;
    return out;
}

}  // namespace kflow
