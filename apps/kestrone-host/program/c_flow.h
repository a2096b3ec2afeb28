// The program's flow as C for the robot's compiler: statements for main() and the declarations
// and helpers they need. The C does what the interpreter does, to the bit:
// - literals are written as the 16-bit values they stand for, so no constant becomes long or
//   unsigned in C;
// - division and remainder go through helpers that stop the program on a 0 divisor, as the
//   interpreter does, and give -32768 / -1 = -32768 and -32768 % -1 = 0;
// - shifts go through helpers: an arithmetic right shift, and counts from 16 up shift all out;
// - where two operands of one operator (or two arguments of one call) each call a macro or may
//   stop the program, they are evaluated left to right through temporaries, since C leaves that
//   order open.
#pragma once

#include <set>
#include <string>

#include "program.h"

namespace kflow {

// Names in the C program: kept apart from the component's own by their prefixes.
inline constexpr const char* kVariablePrefix = "kfv_";

enum class Helper { Stop, Delay, Divide, Remainder, ShiftLeft, ShiftRight };

struct CFlow {
    std::string declarations;  // the variables, counters and temporaries, at file scope
    std::string helpers;       // the helper routines that the flow calls
    std::string body;          // statements, indented for main()
};

// `clock_hz` is the chip's clock, for the delay routine.
CFlow write_flow(const Program& program, unsigned long clock_hz);

}  // namespace kflow
