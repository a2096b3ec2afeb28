#include "chart_edit.h"

#include "program.h"

namespace chart {

namespace {

// Where new lines go on a way: after line `after` (0: at the top), indented as `indent`; when
// the way is a decision's "no" way without an `else`, an `else` indented as `else_indent` first.
struct Spot {
    int after = 0;
    std::string indent;
    bool add_else = false;
    std::string else_indent;
};

// The last line of code of a block, or of its head when it has no icon.
int last_code_line(const Block& b, int head) {
    return b.nodes.empty() ? head : b.nodes.back().last_line();
}

std::optional<Spot> spot_of(const Chart& c, const Way& way) {
    bool absent_else = false;
    const Block* b = c.block_of(way, &absent_else);
    if (!b) return std::nullopt;
    const auto indent = [&c](int line) { return std::string(indent_of(c.lines().at(line))); };
    Spot s;
    const auto index = static_cast<std::size_t>(way.index);
    if (way.owner == 0 && way.index == 0) {
        // Below the program's opening comments: they belong to its first icon or to none.
        s.after = b->nodes.empty() ? c.lines().count() : b->nodes.front().line - 1;
    } else if (way.index > 0) {
        s.after = b->nodes[index - 1].last_line();
    } else {
        const Node& owner = *c.node_at(way.owner);
        s.after = absent_else ? last_code_line(owner.arms.back().body, owner.arms.back().line)
                              : owner.arms[static_cast<std::size_t>(way.arm)].line;
    }
    if (!b->nodes.empty()) {
        s.indent = indent(b->nodes[index > 0 ? index - 1 : 0].line);
    } else if (way.owner != 0) {
        const Node& owner = *c.node_at(way.owner);
        const int head =
            absent_else ? owner.line : owner.arms[static_cast<std::size_t>(way.arm)].line;
        s.indent = indent(head) + c.indent_unit();
        s.add_else = absent_else;
        s.else_indent = indent(head);
    }
    return s;
}

EditResult refusal(const Chart& c, std::string why) {
    EditResult r;
    r.text = c.text();
    r.refused = std::move(why);
    return r;
}

// The new lines for an icon at `spot`; `line` is set to the icon's place among them.
std::vector<std::string> lines_for(const Chart& c, const Spot& spot, const std::string& code,
                                   bool with_end, int* line) {
    const std::string end(c.lines().line_end());
    std::vector<std::string> out;
    if (spot.add_else) out.push_back(spot.else_indent + "else" + end);
    *line = spot.after + static_cast<int>(out.size()) + 1;
    out.push_back(spot.indent + code + end);
    if (with_end) out.push_back(spot.indent + "end" + end);
    return out;
}

// The byte of a line where a fault's column (in characters) falls.
std::size_t byte_of(const std::string& text, int column) {
    std::size_t i = 0;
    for (int c = 1; c < column && i < text.size(); ++c)
        do
            ++i;
        while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80);
    return i;
}

// Checks the new text and sorts the faults of the icon's line under its fields.
EditResult finish(const Chart& c, std::vector<std::string> lines, int line,
                  const WrittenLine* written, std::size_t code_at) {
    EditResult r;
    r.text = join_lines(lines, c.lines().final_newline());
    r.line = line;
    r.faults = kflow::check_program(r.text, c.file(), c.macros()).faults;
    if (!written) return r;
    r.field_faults.assign(written->fields.size(), "");
    const std::string& text = lines[static_cast<std::size_t>(line - 1)];
    for (const kflow::Diagnostic& d : r.faults) {
        std::string* to = &r.other_fault;
        std::size_t at = d.at.line == line ? byte_of(text, d.at.column) : 0;
        while (at < text.size() && (text[at] == ' ' || text[at] == '\t'))
            ++at;
        for (std::size_t k = 0; d.at.line == line && k < written->fields.size(); ++k) {
            const auto [begin, end] = written->fields[k];
            if (at >= code_at + begin && at <= code_at + end) to = &r.field_faults[k];
        }
        if (to->empty()) *to = d.text;
    }
    return r;
}

bool one_line_each(const std::vector<std::string>& fields) {
    for (const std::string& f : fields)
        if (f.find_first_of("\r\n") != std::string::npos) return false;
    return true;
}

}  // namespace

EditResult insert_icon(const Chart& c, const Way& way, const IconForm& form) {
    const auto spot = spot_of(c, way);
    if (!spot) return refusal(c, "there is no such way in the chart");
    if (!one_line_each(form.fields)) return refusal(c, "a field holds one line");
    const WrittenLine written = write_line(form);
    int line = 0;
    auto added = lines_for(c, *spot, written.code, has_body(form.kind), &line);
    std::vector<std::string> lines = c.lines().all();
    lines.insert(lines.begin() + spot->after, added.begin(), added.end());
    return finish(c, std::move(lines), line, &written, spot->indent.size());
}

EditResult edit_icon(const Chart& c, int line, const std::vector<std::string>& fields) {
    auto form = form_at(c, line);
    if (!form) return refusal(c, "there is no icon to edit on line " + std::to_string(line));
    if (fields.size() != form->fields.size())
        return refusal(c, "the icon has " + std::to_string(form->fields.size()) + " fields, not " +
                              std::to_string(fields.size()));
    if (!one_line_each(fields)) return refusal(c, "a field holds one line");
    form->fields = fields;
    WrittenLine written = write_line(*form);
    if (c.node_at(line)->line != line) {  // an `else if`
        written.code = "else " + written.code;
        for (auto& [begin, end] : written.fields)
            begin += 5, end += 5;
    }
    std::vector<std::string> lines = c.lines().all();
    std::string& text = lines[static_cast<std::size_t>(line - 1)];
    const LineParts parts = parts_of(text);
    text = text.substr(0, parts.begin) + written.code + text.substr(parts.end);
    return finish(c, std::move(lines), line, &written, parts.begin);
}

EditResult remove_icon(const Chart& c, int line) {
    const Node* n = c.node_at(line);
    if (!n) return refusal(c, "there is no icon on line " + std::to_string(line));
    int last = n->last_line();
    for (const Arm& a : n->arms)
        if (a.line == line && line != n->line) last = last_code_line(a.body, a.line);
    std::vector<std::string> lines = c.lines().all();
    lines.erase(lines.begin() + (line - 1), lines.begin() + last);
    return finish(c, std::move(lines), 0, nullptr, 0);
}

EditResult move_icon(const Chart& c, int line, const Way& way) {
    const Node* n = c.node_at(line);
    if (!n) return refusal(c, "there is no icon on line " + std::to_string(line));
    if (n->line != line) return refusal(c, "a decision's way moves with its decision");
    const auto spot = spot_of(c, way);
    if (!spot) return refusal(c, "there is no such way in the chart");
    const int first = n->line, last = n->last_line();
    if (way.owner >= first && way.owner <= last)
        return refusal(c, "an icon cannot move into its own body");
    // Each moved line takes the new indentation in place of its head's.
    const std::string old_indent(indent_of(c.lines().at(first)));
    std::vector<std::string> moved;
    for (int l = first; l <= last; ++l) {
        const std::string& text = c.lines().at(l);
        moved.push_back(text.compare(0, old_indent.size(), old_indent) == 0
                            ? spot->indent + text.substr(old_indent.size())
                            : text);
    }
    std::vector<std::string> lines = c.lines().all();
    lines.erase(lines.begin() + (first - 1), lines.begin() + last);
    Spot at = *spot;
    if (at.after >= last) at.after -= last - first + 1;
    int head = 0;
    auto added = lines_for(c, at, "", false, &head);
    added.pop_back();  // only the `else`, if any: the moved lines are the icon's own
    added.insert(added.end(), moved.begin(), moved.end());
    lines.insert(lines.begin() + at.after, added.begin(), added.end());
    return finish(c, std::move(lines), head, nullptr, 0);
}

}  // namespace chart
