// kestrone-host chart PROGRAM.kflow -o FILE.svg|FILE.png [--zoom N]
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "macro_table.h"

namespace chartqt {

struct ChartOptions {
    std::string program;  // the .kflow file
    std::string output;   // the .svg or .png to write
    int zoom = 1;
};

// The component's macro table, which the program is checked against; nullopt when the module or
// its object failed, having said why on `err`.
using MacroReader = std::function<std::optional<kflow::MacroTable>(std::ostream& err)>;

enum ChartStatus : int {
    kChartWritten = 0,
    kChartProgramFaulty = 1,  // every fault listed, FILE:LINE:COLUMN: TEXT
    kChartCannotWrite = 2,    // a file cannot be read or written, or the module failed
};

// Faults and failures go to `err`. A PNG makes a GUI application on the offscreen platform when
// the program has none.
int run_chart_command(const ChartOptions& options, const MacroReader& read_macros,
                      std::ostream& err);

}  // namespace chartqt
