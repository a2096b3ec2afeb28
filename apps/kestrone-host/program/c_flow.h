// The program's flow as C for the robot's compiler: statements for main() and the declarations
// and helpers they need. The C does what the interpreter does, to the bit (c_expr.h says how its
// expressions are written for the compiler).
#pragma once

#include <string>

#include "c_expr.h"
#include "program.h"

namespace kflow {

struct CFlow {
    std::string declarations;  // the variables, counters and temporaries, at file scope
    std::string helpers;       // the helper routines that the flow calls
    std::string parts;         // functions that hold a long flow in parts, for main() to call
    std::string body;          // statements, indented for main()
    bool ends = false;         // the flow never gets past its end (a stop, an endless loop)
};

// `clock_hz` is the chip's clock, for the delay routine.
CFlow write_flow(const Program& program, unsigned long clock_hz);

}  // namespace kflow
