// A robot program's text as its lines, kept byte for byte, so that a chart made of it writes the
// same text back and an edit changes only the lines it touches.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace chart {

class ProgramLines {
  public:
    explicit ProgramLines(std::string_view text);

    int count() const { return static_cast<int>(lines_.size()); }
    // Line `number` (from 1) without its '\n'; a '\r' before it stays part of the line.
    const std::string& at(int number) const { return lines_[static_cast<std::size_t>(number - 1)]; }
    const std::vector<std::string>& all() const { return lines_; }
    // Whether the last line ends with a '\n' (an empty text counts as ended).
    bool final_newline() const { return final_newline_; }
    // "\r" when most lines end with one, so that a new line ends as its neighbours do.
    std::string_view line_end() const { return crlf_ ? "\r" : ""; }

  private:
    std::vector<std::string> lines_;
    bool final_newline_ = true;
    bool crlf_ = false;
};

// Lines joined into a text, each ended with '\n' but the last when `final_newline` is false.
std::string join_lines(const std::vector<std::string>& lines, bool final_newline);

// Where a line's code lies: after its indentation, before the blanks and comment that follow it.
// A blank or comment line has empty code at the end of its indentation.
struct LineParts {
    std::size_t begin = 0;
    std::size_t end = 0;
};
LineParts parts_of(std::string_view line);

inline std::string_view code_of(std::string_view line) {
    const LineParts p = parts_of(line);
    return line.substr(p.begin, p.end - p.begin);
}
inline std::string_view indent_of(std::string_view line) {
    return line.substr(0, parts_of(line).begin);
}
// The text of the line's comment after its '#' and the blanks that follow it; empty when the
// line has none.
std::string comment_of(std::string_view line);

}  // namespace chart
