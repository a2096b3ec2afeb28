#include "chart.h"

#include <map>

#include "diagnostic.h"
#include "lexer.h"

namespace chart {

namespace {

IconKind kind_of(kflow::StmtKind k) {
    switch (k) {
        case kflow::StmtKind::Declare:
            return IconKind::Declare;
        case kflow::StmtKind::Assign:
            return IconKind::Assign;
        case kflow::StmtKind::Call:
            return IconKind::Call;
        case kflow::StmtKind::Delay:
            return IconKind::Delay;
        case kflow::StmtKind::Repeat:
            return IconKind::Repeat;
        case kflow::StmtKind::While:
            return IconKind::While;
        case kflow::StmtKind::Forever:
            return IconKind::Forever;
        case kflow::StmtKind::If:
            return IconKind::Decision;
        case kflow::StmtKind::Stop:
            break;
    }
    return IconKind::Stop;
}

// Walks the checked tree and the lines together: every line the tree does not name (blanks,
// comments, `else`, `end`) is taken in where it stands.
class Builder {
  public:
    Builder(const ProgramLines& lines, std::string_view source) : count_(lines.count()) {
        kflow::Diagnostics ignored;
        code_.assign(static_cast<std::size_t>(count_) + 2, false);
        for (const kflow::SourceLine& l : kflow::lex(source, ignored))
            code_[static_cast<std::size_t>(l.number)] = true;
    }

    Block block(const std::vector<kflow::Stmt>& statements) {
        Block b;
        for (const kflow::Stmt& s : statements)
            b.nodes.push_back(node(s));
        while (next_ <= count_ && !code_[static_cast<std::size_t>(next_)])
            b.trailing.push_back(next_++);
        return b;
    }

  private:
    Node node(const kflow::Stmt& s) {
        Node n;
        n.kind = kind_of(s.kind);
        n.line = s.at.line;
        while (next_ < n.line)
            n.above.push_back(next_++);
        next_ = n.line + 1;
        if (is_loop(n.kind)) n.arms.push_back({n.line, n.kind != IconKind::Forever, block(s.body)});
        for (const kflow::Branch& b : s.branches) {
            if (b.at.line != n.line) next_ = b.at.line + 1;
            n.arms.push_back({b.at.line, b.condition != kflow::kNoExpr, block(b.body)});
        }
        if (has_body(n.kind)) n.end_line = next_++;
        return n;
    }

    int count_;
    std::vector<bool> code_;  // by line number: the line holds code
    int next_ = 1;            // the first line not yet taken
};

const Node* find_node(const Block& b, int line) {
    for (const Node& n : b.nodes) {
        if (line < n.line || line > n.last_line()) continue;
        for (const Arm& a : n.arms) {
            if (a.line == line) return &n;
            if (const Node* inner = find_node(a.body, line)) return inner;
        }
        return n.line == line ? &n : nullptr;
    }
    return nullptr;
}

// Counts the step from each head's indentation to its body's.
void count_units(const ProgramLines& lines, const Block& b, std::map<std::string, int>& counts,
                 std::vector<std::string>& order) {
    for (const Node& n : b.nodes)
        for (const Arm& a : n.arms) {
            if (!a.body.nodes.empty()) {
                const std::string_view head = indent_of(lines.at(a.line));
                const std::string_view body = indent_of(lines.at(a.body.nodes.front().line));
                if (body.size() > head.size() && body.substr(0, head.size()) == head) {
                    const std::string unit(body.substr(head.size()));
                    if (counts[unit]++ == 0) order.push_back(unit);
                }
            }
            count_units(lines, a.body, counts, order);
        }
}

}  // namespace

Chart::Chart(std::string_view source, const kflow::Program& program)
    : lines_(source), macros_(program.macros), file_(program.file) {
    for (const kflow::Variable& v : program.variables)
        variables_.push_back(v.name);
    Builder builder(lines_, source);
    top_ = builder.block(program.tree.statements);
}

void lines_in_order(const Node& n, std::vector<int>& out) {
    out.insert(out.end(), n.above.begin(), n.above.end());
    out.push_back(n.line);
    for (std::size_t i = 0; i < n.arms.size(); ++i) {
        if (i > 0) out.push_back(n.arms[i].line);
        lines_in_order(n.arms[i].body, out);
    }
    if (n.end_line) out.push_back(n.end_line);
}

void lines_in_order(const Block& b, std::vector<int>& out) {
    for (const Node& n : b.nodes)
        lines_in_order(n, out);
    out.insert(out.end(), b.trailing.begin(), b.trailing.end());
}

std::string Chart::text() const {
    std::vector<int> order;
    lines_in_order(top_, order);
    std::vector<std::string> lines;
    lines.reserve(order.size());
    for (int n : order)
        lines.push_back(lines_.at(n));
    return join_lines(lines, lines_.final_newline());
}

const Node* Chart::node_at(int line) const {
    return find_node(top_, line);
}

const Block* Chart::block_of(const Way& way, bool* absent_else) const {
    if (absent_else) *absent_else = false;
    const Block* block = &top_;
    if (way.owner != 0) {
        const Node* n = node_at(way.owner);
        if (!n || n->line != way.owner || way.arm < 0) return nullptr;
        const auto arms = static_cast<int>(n->arms.size());
        if (way.arm == arms && n->kind == IconKind::Decision && n->arms.back().has_condition) {
            if (way.index != 0) return nullptr;
            if (absent_else) *absent_else = true;
            static const Block kEmpty;
            return &kEmpty;
        }
        if (way.arm >= arms) return nullptr;
        block = &n->arms[static_cast<std::size_t>(way.arm)].body;
    }
    if (way.index < 0 || way.index > static_cast<int>(block->nodes.size())) return nullptr;
    return block;
}

std::string Chart::indent_unit() const {
    std::map<std::string, int> counts;
    std::vector<std::string> order;
    count_units(lines_, top_, counts, order);
    std::string best = "    ";
    int most = 0;
    for (const std::string& unit : order)
        if (counts[unit] > most) {
            most = counts[unit];
            best = unit;
        }
    return best;
}

}  // namespace chart
