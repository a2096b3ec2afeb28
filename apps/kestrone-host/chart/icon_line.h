// An icon as the line a user would type for it: `DriveForwards(200)`, `x = x + 1`, `delay 50`,
// `repeat 4`, `while ReadLdr() < 300`, `forever`, `if left`, `stop`; and back, an icon's line as
// the fields of its form (one per macro parameter, by name).
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "chart.h"

namespace chart {

struct IconForm {
    IconKind kind = IconKind::Call;
    std::string word;                 // the macro a call calls; the type word of a declaration
    std::vector<std::string> fields;  // in the order of field_names
};

// The names of an icon's fields: a macro's parameters; "variable" and "value"; "milliseconds";
// "count"; "condition"; none for `forever` and `stop`.
std::vector<std::string> field_names(const kflow::MacroTable& macros, const IconForm& form);

struct PaletteIcon {
    std::string label;  // the macro's name, or the icon's: "assignment", "delay", "decision" ...
    IconForm form;      // with a value in each field to start the form with
    std::vector<std::string> field_names;
};

// The component's public macros in the order of its table, then assignment, delay, decision,
// the three loops and stop.
std::vector<PaletteIcon> palette(const Chart& chart);

// The code of the line, and where each field's text lies in it.
struct WrittenLine {
    std::string code;
    std::vector<std::pair<std::size_t, std::size_t>> fields;  // [begin, end) in `code`
};
WrittenLine write_line(const IconForm& form);

// The icon whose line is `line` as a form, its fields as written there; an `else if` is a
// decision. Nothing for a line without an icon or for an `else`.
std::optional<IconForm> form_at(const Chart& chart, int line);

}  // namespace chart
