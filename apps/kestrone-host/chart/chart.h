// The flowchart of a robot program: one icon for each line of code, in the structure of its
// blocks, with every other line (blanks, comments, `else`, `end`) kept where it stands, so that
// the chart writes back the very text it was made of.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "macro_table.h"
#include "program.h"
#include "program_lines.h"

namespace chart {

// What an icon does; a decision is an `if` with its `else if` and `else` ways.
enum class IconKind : std::uint8_t {
    Declare,
    Assign,
    Call,
    Delay,
    Decision,
    Repeat,
    While,
    Forever,
    Stop
};

inline bool is_loop(IconKind k) {
    return k == IconKind::Repeat || k == IconKind::While || k == IconKind::Forever;
}
inline bool has_body(IconKind k) {
    return is_loop(k) || k == IconKind::Decision;
}

struct Node;

// The icons of one way through the program, top to bottom: the outermost level, a loop's body or
// one way of a decision.
struct Block {
    std::vector<Node> nodes;
    std::vector<int> trailing;  // blank and comment lines after its last icon
};

// One way of a node: a loop's body, or a decision's way (its `if`, an `else if` or the `else`).
struct Arm {
    int line = 0;  // the line that opens it: the loop's or decision's own for the first
    bool has_condition = true;
    Block body;
};

struct Node {
    IconKind kind = IconKind::Stop;
    int line = 0;
    std::vector<int> above;  // blank and comment lines between the line of code before and this
    std::vector<Arm> arms;   // none for an icon without a body
    int end_line = 0;        // the `end` of a loop or decision; 0 for others
    int last_line() const { return end_line ? end_line : line; }
};

// Where an icon can go: before the `index`-th icon of a block. `owner` is the line of the loop
// or decision whose block it is (0: the outermost level) and `arm` its way. A decision without an
// `else` has one more way than arms: its "no" way, where an `else` is written on insertion.
struct Way {
    int owner = 0;
    int arm = 0;
    int index = 0;
    bool operator==(const Way&) const = default;
};

class Chart {
  public:
    // The chart of `source`, of which `program` is the checked form.
    Chart(std::string_view source, const kflow::Program& program);

    // The text the chart stands for, line by line from the blocks.
    std::string text() const;

    const Block& top() const { return top_; }
    const ProgramLines& lines() const { return lines_; }
    const kflow::MacroTable& macros() const { return macros_; }
    const std::string& file() const { return file_; }
    // The program's variables, in the order of their declarations.
    const std::vector<std::string>& variables() const { return variables_; }

    // The node whose own line or whose arm's line is `line`, or nullptr.
    const Node* node_at(int line) const;
    // The block a way lies in, or nullptr for a way that is not there. `absent_else` is set for
    // the "no" way of a decision without an `else`.
    const Block* block_of(const Way& way, bool* absent_else = nullptr) const;
    // How the program indents a block one level deeper than its head ("    " when it never does).
    std::string indent_unit() const;

  private:
    ProgramLines lines_;
    kflow::MacroTable macros_;
    std::string file_;
    std::vector<std::string> variables_;
    Block top_;
};

// The line numbers of a block in the order of the text.
void lines_in_order(const Block& block, std::vector<int>& out);
void lines_in_order(const Node& node, std::vector<int>& out);

}  // namespace chart
