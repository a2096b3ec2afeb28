// The C of a program's expressions for SDCC's pic14 port, written so that the port computes what
// the interpreter computes and finds nothing to warn of:
// - every value is an int. A byte variable, a char result of a macro and the 0 or 1 of a
//   comparison, `!`, `&&` or `||` are cast to int where they are read or made: the port misreads
//   them otherwise (it ors and xors an unsigned char with a negative constant in 8 bits, so
//   1 | -2 gives 255; it compares such a 0 or 1 with an unsigned char as signed chars, so
//   1 > 128 holds; it takes 1 > (a && a) for always true; and b = b == 0 stops it with an
//   internal error);
// - an operation on constants alone is done here by the chip's rules and written as its value,
//   so the port never folds (and warns of overflow in) 300 * 300; a division by 0 is left to stop
//   the program;
// - an operand that decides the result alone (0 && x, x * 0, x <= 32767) makes the result a
//   constant, written after the other side where that side calls a macro or may stop: the port
//   warns when it finds a constant condition itself;
// - literals are the 16-bit values they stand for, so that no constant becomes long or unsigned;
// - division and remainder go through helpers that stop the program on a 0 divisor, as the
//   interpreter does, and give -32768 / -1 = -32768 and -32768 % -1 = 0; shifts go through
//   helpers: an arithmetic right shift, and counts from 16 up shift all out;
// - where two operands of one operator (or two arguments of one call) each call a macro or may
//   stop the program, they are evaluated left to right through temporaries, since C leaves that
//   order open;
// - the sum of two such chars is made in unsigned int and cast back: the port, given
//   i = (int)b + (int)c, writes messages without end where i is later narrowed to a char.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "program.h"

namespace kflow {

// Names in the C program: kept apart from the component's own by their prefixes.
inline constexpr const char* kVariablePrefix = "kfv_";

enum class Helper { Stop, Delay, Divide, Remainder, ShiftLeft, ShiftRight };

// An expression as C of type int.
struct CValue {
    CValue() = default;
    CValue(std::string t, std::optional<std::int16_t> k, bool e, bool c, std::string n = {})
        : text(std::move(t)), known(k), effect(e), compound(c), narrow(std::move(n)) {}

    std::string text;
    std::optional<std::int16_t> known;  // the value it has on every run
    bool effect = false;                // it calls a macro or may stop the program
    bool compound = false;              // an operation: bracketed where it is an operand
    // The char the int was cast from (a byte variable, a 0 or 1, a macro's char), bracketed;
    // empty for a value that is an int itself.
    std::string narrow;
};

// A literal's C: the 16-bit value, negative ones in brackets.
std::string c_literal(std::int16_t v);

class CExprWriter {
  public:
    explicit CExprWriter(const Program& program) : p_(program) {}

    CValue value(ExprId id);
    // The value bracketed where it is an operation, for use as an operand.
    static std::string operand(const CValue& v) { return v.compound ? "(" + v.text + ")" : v.text; }
    // Temporaries are numbered afresh for every statement.
    void new_statement() { now_ = 0; }
    // A temporary of this statement: an int at file scope.
    std::string temporary();

    std::set<Helper> helpers;
    int temporaries = 0;  // the most that one statement took

  private:
    CValue call(const Expr& e);
    CValue unary(const Expr& e);
    CValue binary(const Expr& e);
    CValue logical(const Expr& e);
    std::optional<CValue> decided(const Expr& e, const CValue& l, const CValue& r);
    // A known result once `side` has run for its effect.
    CValue after(const CValue& side, std::int16_t v);
    // A char read as an int; after `prefix`, the temporaries it needs, it is an int alone.
    static CValue widened(const std::string& narrow, bool effect, const std::string& prefix = "");
    // 1 when the value is not 0.
    CValue truth(const CValue& v);

    const Program& p_;
    int now_ = 0;
};

}  // namespace kflow
