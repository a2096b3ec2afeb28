#include "icon_line.h"

#include <array>

#include "diagnostic.h"
#include "lexer.h"

namespace chart {

namespace {

struct KindWords {
    IconKind kind;
    const char* label;    // in the palette
    const char* keyword;  // the word the line starts with; "" for none
    const char* field;    // the one field's name; nullptr for none
    const char* start;    // the field's value to start with
};
// Calls and declarations are written apart: their words come from the macro or the type.
constexpr std::array<KindWords, 7> kKinds{{
    {IconKind::Assign, "assignment", "", "value", "0"},
    {IconKind::Delay, "delay", "delay", "milliseconds", "100"},
    {IconKind::Decision, "decision", "if", "condition", "1"},
    {IconKind::Repeat, "repeat", "repeat", "count", "2"},
    {IconKind::While, "while", "while", "condition", "1"},
    {IconKind::Forever, "forever", "forever", nullptr, ""},
    {IconKind::Stop, "stop", "stop", nullptr, ""},
}};

const KindWords* words_of(IconKind k) {
    for (const KindWords& w : kKinds)
        if (w.kind == k) return &w;
    return nullptr;
}

// Appends a field's text to `out.code`, remembering where it lies.
void put_field(WrittenLine& out, const std::vector<std::string>& fields, std::size_t k) {
    const std::size_t begin = out.code.size();
    if (k < fields.size()) out.code += fields[k];
    out.fields.emplace_back(begin, out.code.size());
}

}  // namespace

std::vector<std::string> field_names(const kflow::MacroTable& macros, const IconForm& form) {
    if (form.kind == IconKind::Call) {
        std::vector<std::string> names;
        if (const kflow::MacroInfo* m = macros.find(form.word))
            for (const kflow::MacroParam& p : m->params)
                names.push_back(p.name);
        return names;
    }
    if (form.kind == IconKind::Declare || form.kind == IconKind::Assign)
        return {"variable", "value"};
    const KindWords* w = words_of(form.kind);
    return w && w->field ? std::vector<std::string>{w->field} : std::vector<std::string>{};
}

std::vector<PaletteIcon> palette(const Chart& chart) {
    std::vector<PaletteIcon> out;
    for (const kflow::MacroInfo& m : chart.macros().macros()) {
        if (m.is_private) continue;
        IconForm form{IconKind::Call, m.name, std::vector<std::string>(m.params.size(), "0")};
        out.push_back({m.name, form, field_names(chart.macros(), form)});
    }
    const std::string first = chart.variables().empty() ? "" : chart.variables().front();
    for (const KindWords& w : kKinds) {
        IconForm form{w.kind, "", {}};
        if (w.kind == IconKind::Assign) form.fields.push_back(first);
        if (w.field) form.fields.emplace_back(w.start);
        out.push_back({w.label, form, field_names(chart.macros(), form)});
    }
    return out;
}

WrittenLine write_line(const IconForm& form) {
    WrittenLine out;
    if (form.kind == IconKind::Call) {
        out.code = form.word + "(";
        const std::size_t count = form.fields.size();
        for (std::size_t k = 0; k < count; ++k) {
            if (k) out.code += ", ";
            put_field(out, form.fields, k);
        }
        out.code += ")";
        return out;
    }
    if (form.kind == IconKind::Declare) out.code = form.word + " ";
    if (form.kind == IconKind::Declare || form.kind == IconKind::Assign) {
        put_field(out, form.fields, 0);
        const bool valued =
            form.kind == IconKind::Assign || (form.fields.size() > 1 && !form.fields[1].empty());
        if (valued) out.code += " = ";
        put_field(out, form.fields, 1);
        return out;
    }
    const KindWords* w = words_of(form.kind);
    out.code = w->keyword;
    if (w->field) {
        out.code += " ";
        put_field(out, form.fields, 0);
    }
    return out;
}

std::optional<IconForm> form_at(const Chart& chart, int line) {
    const Node* n = chart.node_at(line);
    if (!n) return std::nullopt;
    const std::string& text = chart.lines().at(line);
    kflow::Diagnostics ignored;
    const auto lexed = kflow::lex(text, ignored);
    const std::vector<kflow::Token>& t = lexed.front().tokens;
    // The text from token `from` to the last before `to`, as written.
    const auto span = [&](std::size_t from, std::size_t to) {
        if (from >= to) return std::string();
        const auto begin = static_cast<std::size_t>(t[from].at.column - 1);
        const auto end = static_cast<std::size_t>(t[to - 1].at.column - 1) + t[to - 1].text.size();
        return text.substr(begin, end - begin);
    };
    IconForm form{n->kind, "", {}};
    if (line != n->line) {  // an `else if`, or an `else`, which has no icon
        if (t.size() < 2 || t[1].text != "if") return std::nullopt;
        form.fields.push_back(span(2, t.size()));
        return form;
    }
    switch (n->kind) {
        case IconKind::Call: {
            form.word = t[0].text;
            int depth = 0;
            std::size_t from = 2;
            for (std::size_t k = 1; k < t.size(); ++k) {
                const kflow::Tok kind = t[k].kind;
                if (kind == kflow::Tok::LParen) ++depth;
                if (kind == kflow::Tok::RParen) --depth;
                if ((depth == 1 && kind == kflow::Tok::Comma) || (depth == 0 && from < k)) {
                    form.fields.push_back(span(from, k));
                    from = k + 1;
                }
            }
            return form;
        }
        case IconKind::Declare:
            form.word = t[0].text;
            form.fields = {t[1].text, span(3, t.size())};
            return form;
        case IconKind::Assign:
            form.fields = {t[0].text, span(2, t.size())};
            return form;
        case IconKind::Forever:
        case IconKind::Stop:
            return form;
        default:
            form.fields.push_back(span(1, t.size()));
            return form;
    }
}

}  // namespace chart
