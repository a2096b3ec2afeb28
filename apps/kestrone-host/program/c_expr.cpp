#include "c_expr.h"

#include <algorithm>
#include <array>
#include <vector>

#include "pic_int.h"

namespace kflow {

namespace {

constexpr std::int16_t kLowest = -32768, kHighest = 32767;

bool constant(const CValue& v) {
    return v.known && !v.effect;
}

CValue known_value(std::int16_t v) {
    return {c_literal(v), v, false, false};
}

bool comparison(Op op) {
    return op >= Op::Less && op <= Op::NotEqual;
}

// The result that a known right operand `k` gives whatever the left: x * 0, x & 0 and the
// comparisons with the ends of the int range.
std::optional<std::int16_t> decided_by_right(Op op, std::int16_t k) {
    if ((op == Op::Multiply || op == Op::BitAnd) && k == 0) return 0;
    if (k == kLowest && (op == Op::Less || op == Op::GreaterEqual)) return op == Op::GreaterEqual;
    if (k == kHighest && (op == Op::Greater || op == Op::LessEqual)) return op == Op::LessEqual;
    return std::nullopt;
}

// The same with the operands swapped: k < x reads as x > k.
Op mirrored(Op op) {
    switch (op) {
        case Op::Less:
            return Op::Greater;
        case Op::LessEqual:
            return Op::GreaterEqual;
        case Op::Greater:
            return Op::Less;
        case Op::GreaterEqual:
            return Op::LessEqual;
        default:
            return op;
    }
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

}  // namespace

std::string c_literal(std::int16_t v) {
    if (v == kLowest) return "(-32767 - 1)";
    if (v < 0) return "(" + std::to_string(v) + ")";
    return std::to_string(v);
}

// The port drops the left side of (x, 1) where it narrows the pair to a char (a byte, a char
// argument): the constant goes through a temporary.
CValue CExprWriter::after(const CValue& side, std::int16_t v) {
    if (!side.effect) return known_value(v);
    const std::string t = temporary();
    return {"(" + t + " = (" + side.text + ", " + c_literal(v) + "), " + t + ")", v, true, false};
}

CValue CExprWriter::widened(const std::string& narrow, bool effect, const std::string& prefix) {
    if (!prefix.empty())
        return {"(" + prefix + "(int)" + narrow + ")", std::nullopt, effect, false};
    return {"(int)" + narrow, std::nullopt, effect, false, narrow};
}

CValue CExprWriter::truth(const CValue& v) {
    if (v.known) return after(v, *v.known != 0);
    return widened("(" + operand(v) + " != 0)", v.effect);
}

std::string CExprWriter::temporary() {
    temporaries = std::max(temporaries, now_ + 1);
    return "kft" + std::to_string(now_++);
}

CValue CExprWriter::value(ExprId id) {
    const Expr& e = p_.expr(id);
    switch (e.kind) {
        case ExprKind::Literal: {
            CValue v = known_value(e.value);
            if (e.character && e.value >= 0x20 && e.value < 0x7F && e.value != '\'' &&
                e.value != '\\')
                v.text = std::string("'") + static_cast<char>(e.value) + "'";
            return v;
        }
        case ExprKind::Variable: {
            const Variable& var = p_.variables[static_cast<std::size_t>(e.ref)];
            const std::string name = kVariablePrefix + var.name;
            return var.is_byte ? widened(name, false) : CValue{name, std::nullopt, false, false};
        }
        case ExprKind::Call:
            return call(e);
        case ExprKind::Unary:
            return unary(e);
        case ExprKind::Binary:
            return e.op == Op::And || e.op == Op::Or ? logical(e) : binary(e);
    }
    return known_value(0);
}

CValue CExprWriter::unary(const Expr& e) {
    const CValue v = value(e.lhs);
    if (v.known) return after(v, pic::unary(e.op, *v.known));
    // Not as !x: the port has read !b wrongly where b was set from && just before.
    if (e.op == Op::Not) return widened("(" + operand(v) + " == 0)", v.effect);
    return {op_text(e.op) + operand(v), std::nullopt, v.effect, true};
}

std::optional<CValue> CExprWriter::decided(const Expr& e, const CValue& l, const CValue& r) {
    if (constant(r))
        if (const auto k = decided_by_right(e.op, *r.known)) return after(l, *k);
    if (constant(l))
        if (const auto k = decided_by_right(mirrored(e.op), *l.known)) return after(r, *k);
    return std::nullopt;
}

CValue CExprWriter::binary(const Expr& e) {
    const CValue l = value(e.lhs), r = value(e.rhs);
    const bool divides = e.op == Op::Divide || e.op == Op::Remainder;
    // A divisor other than 0 never stops the program: one of 0 is left to stop it at run time.
    const bool safe = !divides || (constant(r) && *r.known != 0);
    if (constant(l) && constant(r) && safe)
        return known_value(pic::apply(e.op, *l.known, *r.known));
    if (const auto d = decided(e, l, r)) return *d;
    std::string left = operand(l), right = operand(r), prefix;
    const bool ordered = l.effect && r.effect;
    if (ordered) {
        const std::string a = temporary(), b = temporary();
        prefix = a + " = " + left + ", " + b + " = " + right + ", ";
        left = a;
        right = b;
    }
    const auto routine = std::find_if(kRoutines.begin(), kRoutines.end(),
                                      [&](const Routine& x) { return x.op == e.op; });
    std::string text;
    if (routine != kRoutines.end()) {
        helpers.insert(routine->helper);
        if (divides) helpers.insert(Helper::Stop);
        text = std::string(routine->name) + "(" + left + ", " + right + ")";
    } else {
        text = left + " " + op_text(e.op) + " " + right;
        if (comparison(e.op)) return widened("(" + text + ")", l.effect || r.effect, prefix);
        if (e.op == Op::Add && !ordered && !l.narrow.empty() && !r.narrow.empty())
            text = "(int)((unsigned int)" + l.narrow + " + (unsigned int)" + r.narrow + ")";
    }
    const bool effect = l.effect || r.effect || !safe;
    // The port folds x ^ x to a 0 that a comparison then reads as unsigned (-1 > (x ^ x) holds
    // there): an exclusive or is held in a temporary, which it reads as the int it is.
    if (e.op == Op::BitXor) {
        const std::string t = temporary();
        text = t + " = " + (ordered ? "(" + prefix + text + ")" : text);
        return {"(" + text + ", " + t + ")", std::nullopt, effect, false};
    }
    if (ordered) return {"(" + prefix + text + ")", std::nullopt, effect, false};
    return {text, std::nullopt, effect, routine == kRoutines.end() && !comparison(e.op)};
}

CValue CExprWriter::logical(const Expr& e) {
    const bool is_and = e.op == Op::And;
    const CValue l = value(e.lhs);
    if (l.known) {
        // The left side decides, or leaves the truth of the right.
        if ((*l.known != 0) != is_and) return after(l, is_and ? 0 : 1);
        const CValue t = truth(value(e.rhs));
        if (!l.effect) return t;
        return {"(" + l.text + ", " + t.text + ")", t.known, true, false};
    }
    const CValue r = value(e.rhs);
    if (constant(r)) return (*r.known != 0) != is_and ? after(l, is_and ? 0 : 1) : truth(l);
    // As a choice of 1 or 0, not a cast: the port has multiplied by a cast && wrongly
    // ((1 + b) * (int)(b && b) made 4 of b = 1).
    return {"(" + operand(l) + " " + op_text(e.op) + " " + operand(r) + " ? 1 : 0)", std::nullopt,
            l.effect || r.effect, false};
}

CValue CExprWriter::call(const Expr& e) {
    const MacroInfo& m = p_.macros.at(e.ref);
    std::vector<CValue> args;
    std::size_t effects = 0;
    for (ExprId a : e.args) {
        args.push_back(value(a));
        effects += args.back().effect ? 1 : 0;
    }
    std::string prefix, list;
    for (std::size_t k = 0; k < args.size(); ++k) {
        std::string text = args[k].text;
        // A byte parameter given a constant takes it as the macro will hold it.
        const CType type = ctype_of(m.params[k].type);
        if (constant(args[k]) && narrow_to(type, *args[k].known) != *args[k].known)
            text = c_literal(narrow_to(type, *args[k].known));
        if (effects > 1 && args[k].effect) {
            const std::string t = temporary();
            prefix += t + " = " + text + ", ";
            text = t;
        }
        list += (list.empty() ? "" : ", ") + text;
    }
    const std::string text = m.name + "(" + list + ")";
    if (m.is_function && m.returns != "int") return widened(text, true, prefix);
    return {prefix.empty() ? text : "(" + prefix + text + ")", std::nullopt, true, false};
}

}  // namespace kflow
