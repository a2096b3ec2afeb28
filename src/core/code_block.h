// Cutting a named block out of the code file's text: the lines between a line that is exactly
// the start marker and a line that is exactly the end marker, each line ended by a line feed
// whatever ended it in the file. The whole text is gone through: a second pair of markers
// continues the block, and a block left open runs to the end of the text.
#pragma once

#include <string>
#include <string_view>

namespace rovanta {

struct CutBlock {
    std::string text;
    bool start_seen = false;
    bool end_seen = false;
};

// The markers are whole lines; the search looks for them as text, so the lines between them are
// only copied, not compared one by one.
CutBlock cut_block(std::string_view file, std::string_view start_marker,
                   std::string_view end_marker);

}  // namespace rovanta
