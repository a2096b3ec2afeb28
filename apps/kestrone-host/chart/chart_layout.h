// Where each icon, way and note of a chart lies, in whole units at a zoom of 1: top to bottom,
// the ways of a decision side by side, a loop's way back round its body. The same chart is
// always laid out the same; a zoom only multiplies.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chart.h"

namespace chart {

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    int right() const { return x + w; }
    int bottom() const { return y + h; }
    bool contains(Point p) const {
        return p.x >= x && p.x <= right() && p.y >= y && p.y <= bottom();
    }
};

enum class Shape : std::uint8_t {
    Start,
    Finish,
    Box,  // a macro call, an assignment or a declaration
    Delay,
    Decision,  // an `if` or an `else if`
    LoopHead,
    LoopEnd,
    Join,  // where the ways of a decision meet again
    Stop,
};

struct Icon {
    Shape shape = Shape::Box;
    Rect rect;
    int line = 0;      // the line it stands for (an `end` for a loop's end or a join); 0: none
    std::string text;  // as shown, shortened when long
    // Only the icons of lines of code carry their line: not start, finish, loop end or join.
    bool of_code() const {
        return shape != Shape::Start && shape != Shape::Finish && shape != Shape::LoopEnd &&
               shape != Shape::Join;
    }
};

// A comment shown beside its icon.
struct Note {
    Rect rect;
    int icon = 0;
    std::vector<std::string> text;  // one entry a comment, shortened when long
};

enum class WayLabel : std::uint8_t { None, Yes, No };

// A way from one icon to another, as straight runs between its points; `place` says where an
// icon dropped on it goes (none for a decision's way on to its next condition or a loop's way
// back).
struct Path {
    std::vector<Point> points;
    int from = 0;
    int to = 0;
    WayLabel label = WayLabel::None;
    std::optional<Way> place;
};

struct Layout {
    int width = 0;
    int height = 0;
    std::vector<Icon> icons;  // in the order of their lines, start first and finish last
    std::vector<Path> ways;
    std::vector<Note> notes;
    std::vector<std::pair<int, int>> by_line;  // (line, icon), sorted by line

    // The icon at `p`, or -1.
    int icon_at(Point p) const;
    // The icon that stands for line `line`: its own, the decision an `else` belongs to, the end
    // of a loop or decision for its `end`; -1 for a line without one (blanks, comments).
    int icon_of_line(int line) const;
    // The way within `reach` of `p` that an icon can be dropped on.
    std::optional<Way> way_at(Point p, int reach) const;
};

// The sizes the layout counts in: an icon's text is measured as `kCharWidth` for each
// character, and the pictures draw it in a fixed-width font that fits.
inline constexpr int kCharWidth = 7;
inline constexpr int kLineHeight = 14;
inline constexpr int kFontSize = 11;
// Longer texts are shortened to this many characters, the last an ellipsis; a comment is folded
// into lines of at most `kNoteWidth` characters, between words where it can be.
inline constexpr int kLongestText = 48;
inline constexpr int kNoteWidth = 32;

Layout lay_out(const Chart& chart);

// The text as shown: at most `longest` characters, tabs and control characters as blanks, bytes
// that are not UTF-8 as U+FFFD.
std::string shown_text(std::string_view text, int longest = kLongestText);
// A shown text folded into lines of at most `width` characters.
std::vector<std::string> folded(std::string_view shown, int width);
// Its length in characters.
int char_count(std::string_view shown);

}  // namespace chart
