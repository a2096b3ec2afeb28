// Random robot programs that pass the checker, written as people write them: comments above and
// beside lines, blank lines, indentation by spaces or tabs and sometimes off, CRLF line ends, no
// last line end, and every block nested up to three deep. Each knows its lines of code.
#pragma once

#include <string>
#include <vector>

#include "macro_table.h"

namespace chart_testing {

struct CorpusProgram {
    std::string source;
    std::vector<int> code_lines;    // the lines that each have an icon: statements and `else if`s
    std::vector<std::string> code;  // their code, without indentation or comment
};

CorpusProgram generate_program(unsigned seed);

// The robot's macro table, through the program tests' fake component.
const kflow::MacroTable& robot_table();

}  // namespace chart_testing
