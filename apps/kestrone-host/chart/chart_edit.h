// Edits of a program made on its chart, each written into the text as a user would have written
// it: only the lines it touches change, with the indentation and line ends the program already
// uses; comments and every other line stay byte for byte. An edit answers with the new text for
// the window to take (as one step of the editor's undo), and the faults the checker finds in it.
#pragma once

#include <string>
#include <vector>

#include "chart.h"
#include "diagnostic.h"
#include "icon_line.h"

namespace chart {

struct EditResult {
    std::string text;     // the new text; the chart's own when the edit was refused
    int line = 0;         // the line of the icon inserted, edited or moved, in the new text
    std::string refused;  // why the edit cannot be made; empty when it was made
    std::vector<kflow::Diagnostic> faults;  // of the new text; it does not run while there are any
    // The faults on the icon's own line, one entry per field ("" for a field without one), and
    // those that fall in no field, so that a form can show each under its field as it is typed.
    std::vector<std::string> field_faults;
    std::string other_fault;
    bool ok() const { return refused.empty() && faults.empty(); }
};

// An icon from the palette on a way: a loop or decision comes with its `end`, and a decision's
// "no" way without an `else` gets one.
EditResult insert_icon(const Chart& chart, const Way& way, const IconForm& form);
// The icon of `line` (a decision's `else if` too) with new values in its fields.
EditResult edit_icon(const Chart& chart, int line, const std::vector<std::string>& fields);
// The icon of `line` and, for a loop or decision, its body; an `else if` or `else` takes its way.
EditResult remove_icon(const Chart& chart, int line);
// The icon of `line`, with its body, to another way.
EditResult move_icon(const Chart& chart, int line, const Way& way);

}  // namespace chart
