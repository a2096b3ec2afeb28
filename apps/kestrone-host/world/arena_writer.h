// The `.world` text of an arena document: the opened file's lines as they stood where nothing was
// edited, an edited item's line rewritten with its comment kept, a deleted item's line dropped and
// the new items at the end.
#pragma once

#include <string>

#include "arena_document.h"

namespace world {

// A number as short as reads back to the same double.
std::string number_text(double value);
// One item's line, without comment or newline.
std::string item_text(const Shape& shape);
std::string write_arena(const ArenaDocument& document);
// Why the reader would refuse the document's text ("LINE: TEXT"), or empty when it would not.
std::string arena_problem(const ArenaDocument& document);

}  // namespace world
