// From lines of tokens to the program's tree. Every line is parsed on its own, so a fault on one
// line does not hide those on the next; blocks are matched with their `end`.
#pragma once

#include <string_view>
#include <vector>

#include "diagnostic.h"
#include "lexer.h"
#include "syntax.h"

namespace kflow {

// The words of the language, which no variable may take.
bool is_keyword(std::string_view word);

SyntaxTree parse(const std::vector<SourceLine>& lines, Diagnostics& faults);

}  // namespace kflow
