// Edits made on the chart, as text: each palette icon at each kind of place writes the line a
// user would have typed, with the program's own indentation and line ends; removals, moves and
// field edits over the corpus change only the lines they must, checked against a small model of
// blocks that reads the lines by their first words.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "chart_edit.h"
#include "chart_layout.h"
#include "chart_test_support.h"

namespace {

using chart::Way;
using chart_testing::chart_of;
using chart_testing::code_of;

// A program, a way in it, and the text an insertion there makes: '@' stands for the new line's
// code (a block's `end` follows it, indented alike).
struct InsertPlace {
    const char* what;
    const char* source;
    Way way;
    const char* want;
    bool assignment_faulty;  // the palette's assignment comes before any variable is declared
};
const InsertPlace kPlaces[] = {
    {"below the opening comments",
     "# header\nint a = 0\nLedOn(1)\n",
     {0, 0, 0},
     "# header\n@\nint a = 0\nLedOn(1)\n",
     true},
    {"between two icons, above the next one's comment",
     "int a = 0\nLedOn(1)\n# about the next\nLedOff(2)\n",
     {0, 0, 2},
     "int a = 0\nLedOn(1)\n@\n# about the next\nLedOff(2)\n",
     false},
    {"last, in a file without a last line end",
     "int a = 0\nLedOn(1)",
     {0, 0, 2},
     "int a = 0\nLedOn(1)\n@",
     false},
    {"first in a loop, above its comment",
     "int a = 0\nrepeat 3\n\t# blink\n\tLedOn(1)\nend\n",
     {2, 0, 0},
     "int a = 0\nrepeat 3\n\t@\n\t# blink\n\tLedOn(1)\nend\n",
     false},
    {"last in a loop, above the comment of its end",
     "int a = 0\nwhile a < 3\n  LedOn(1)\n  # done\nend\n",
     {2, 0, 1},
     "int a = 0\nwhile a < 3\n  LedOn(1)\n  @\n  # done\nend\n",
     false},
    {"an empty loop",
     "int a = 0\nforever\nend\nrepeat 2\n\tLedOn(1)\nend\n",
     {2, 0, 0},
     "int a = 0\nforever\n\t@\nend\nrepeat 2\n\tLedOn(1)\nend\n",
     false},
    {"an empty loop, indented as the program's other blocks are, not as its odd ones",
     "int a = 0\n\tif a\n   LedOn(1)\n\tend\n\tif a\n   LedOn(2)\n\tend\nrepeat 2\n        "
     "LedOn(3)\nend\nforever\nend\n",
     {11, 0, 0},
     "int a = 0\n\tif a\n   LedOn(1)\n\tend\n\tif a\n   LedOn(2)\n\tend\nrepeat 2\n        "
     "LedOn(3)\nend\nforever\n        @\nend\n",
     false},
    {"a decision's yes way",
     "int a = 0\nif a\n    LedOn(1)\nelse\n    LedOff(1)\nend\n",
     {2, 0, 1},
     "int a = 0\nif a\n    LedOn(1)\n    @\nelse\n    LedOff(1)\nend\n",
     false},
    {"an else way",
     "int a = 0\nif a\n    LedOn(1)\nelse\n    LedOff(1)\nend\n",
     {2, 1, 0},
     "int a = 0\nif a\n    LedOn(1)\nelse\n    @\n    LedOff(1)\nend\n",
     false},
    {"the no way of a decision without else",
     "int a = 0\nif a\n  LedOn(1)\nend\n",
     {2, 1, 0},
     "int a = 0\nif a\n  LedOn(1)\nelse\n  @\nend\n",
     false},
    {"an empty else if way",
     "int a = 0\nif a\n    LedOn(1)\nelse if a > 1\nend\n",
     {2, 1, 0},
     "int a = 0\nif a\n    LedOn(1)\nelse if a > 1\n    @\nend\n",
     false},
    {"three deep, with CRLF",
     "int a = 0\r\nrepeat 2\r\n   while a\r\n      if a\r\n         LedOn(1)   # on\r\n      "
     "end\r\n   end\r\nend\r\n",
     {4, 0, 1},
     "int a = 0\r\nrepeat 2\r\n   while a\r\n      if a\r\n         LedOn(1)   # on\r\n         "
     "@\r\n      end\r\n   end\r\nend\r\n",
     false},
    {"a program of comments only", "# only a comment\n", {0, 0, 0}, "# only a comment\n@\n", true},
};

// What a user types for each palette icon, its form as it starts (the first variable set to 0),
// and whether an `end` follows.
std::pair<std::string, bool> typed(const std::string& label, bool has_variable) {
    static const std::map<std::string, std::pair<std::string, bool>> kOthers{
        {"delay", {"delay 100", false}}, {"decision", {"if 1", true}},
        {"repeat", {"repeat 2", true}},  {"while", {"while 1", true}},
        {"forever", {"forever", true}},  {"stop", {"stop", false}}};
    if (label == "assignment") return {has_variable ? "a = 0" : " = 0", false};
    if (const auto it = kOthers.find(label); it != kOthers.end()) return it->second;
    const kflow::MacroInfo* m = chart_testing::robot_table().find(label);
    std::string call = label + "(";
    for (std::size_t k = 0; m && k < m->params.size(); ++k)
        call += k ? ", 0" : "0";
    return {call + ")", false};
}

TEST(ChartEdit, EveryPaletteIconAtEveryKindOfPlaceWritesTheLineAUserWouldType) {
    for (const InsertPlace& place : kPlaces) {
        SCOPED_TRACE(place.what);
        const auto c = chart_of(place.source);
        ASSERT_TRUE(c);
        const auto icons = chart::palette(*c);
        std::size_t macros = 0;
        for (const kflow::MacroInfo& m : chart_testing::robot_table().macros())
            macros += m.is_private ? 0 : 1;
        ASSERT_EQ(icons.size(), macros + 7);
        for (const chart::PaletteIcon& icon : icons) {
            ASSERT_EQ(icon.field_names.size(), icon.form.fields.size()) << icon.label;
            const auto [code, block] = typed(icon.label, !c->variables().empty());
            std::string want = place.want;
            const std::size_t at = want.find('@');
            const std::size_t start = want.rfind('\n', at) + 1;  // npos + 1 is 0
            const std::string indent = want.substr(start, at - start);
            const std::string cr = want[at + 1] == '\r' ? "\r" : "";
            want.replace(at, 1, code + (block ? cr + "\n" + indent + "end" : ""));
            const auto r = chart::insert_icon(*c, place.way, icon.form);
            EXPECT_EQ(r.text, want) << icon.label;
            EXPECT_EQ(r.line, std::count(want.begin(), want.begin() + at, '\n') + 1);
            EXPECT_EQ(r.faults.empty(),
                      !(place.assignment_faulty && icon.form.kind == chart::IconKind::Assign))
                << icon.label;
        }
    }
}

TEST(ChartEdit, NamesEachMacroParameterAsItsFieldAndSortsFaultsUnderTheirFields) {
    const auto c = chart_of("int a = 0\nPlayTone(44, 0, 200)   # tone\nif a\nelse if a > 2\nend\n");
    ASSERT_TRUE(c);
    const auto form = chart::form_at(*c, 2);
    ASSERT_TRUE(form);
    EXPECT_EQ(chart::field_names(c->macros(), *form), (std::vector<std::string>{"P1", "P2", "P3"}));
    EXPECT_EQ(form->fields, (std::vector<std::string>{"44", "0", "200"}));
    struct Case {
        int line;
        std::vector<std::string> fields;
        std::vector<bool> faulty;  // by field
        bool other;                // a fault in no field
    };
    const Case cases[] = {
        {2, {"44", "zz", "200"}, {false, true, false}, false},
        {2, {"44 +", "1", "ReadLdr()"}, {true, false, false}, false},
        {2, {"1", "DriveStop()", "2"}, {false, true, false}, false},
        {1, {"a", ""}, {false, false}, false},  // a declaration without a value
        {1, {"PlayTone", "1"}, {true, false}, true},
        {4, {"a >"}, {true}, false},
        {4, {"ReadLdr() > a"}, {false}, false},
    };
    for (const Case& k : cases) {
        const auto r = chart::edit_icon(*c, k.line, k.fields);
        ASSERT_TRUE(r.refused.empty()) << r.refused;
        ASSERT_EQ(r.field_faults.size(), k.faulty.size());
        for (std::size_t f = 0; f < k.faulty.size(); ++f)
            EXPECT_EQ(!r.field_faults[f].empty(), k.faulty[f]) << k.fields[f];
        EXPECT_EQ(!r.other_fault.empty(), k.other) << k.fields[0] << ": " << r.other_fault;
    }
}

TEST(ChartEdit, RefusesWhatCannotBeAndLeavesTheTextAsItWas) {
    const std::string source =
        "int a = 0\nrepeat 2\n    LedOn(1)\nend\nif a\nelse if a\nelse\nend\n";
    const auto c = chart_of(source);
    ASSERT_TRUE(c);
    const chart::IconForm stop{chart::IconKind::Stop, "", {}};
    const chart::EditResult refused[] = {
        chart::insert_icon(*c, {9, 0, 0}, stop),  // no block there
        chart::insert_icon(*c, {2, 1, 0}, stop),  // a loop has one way
        chart::insert_icon(*c, {2, 0, 2}, stop),  // past the body's end
        chart::insert_icon(*c, {5, 3, 0}, stop),  // a decision with an else has no way more
        chart::insert_icon(*c, {0, 0, 0}, {chart::IconKind::Delay, "", {"1\n2"}}),
        chart::edit_icon(*c, 4, {}),          // an end has no icon of its own
        chart::edit_icon(*c, 7, {}),          // nor has an else
        chart::edit_icon(*c, 3, {"1", "2"}),  // LedOn has one parameter
        chart::remove_icon(*c, 4),
        chart::move_icon(*c, 2, {2, 0, 1}),  // into its own body
        chart::move_icon(*c, 6, {0, 0, 0}),  // an else if moves with its decision
        chart::move_icon(*c, 3, {5, 1, 1}),
    };
    for (const auto& r : refused) {
        EXPECT_FALSE(r.refused.empty());
        EXPECT_FALSE(r.ok());
        EXPECT_EQ(r.text, source);
    }
}

// The corpus model: a line's first word, and the last line of a block opened on line `n`
// (1-based), found by counting openings and `end`s.
bool opens(const std::string& code) {
    const std::string first = code.substr(0, code.find(' '));
    return first == "repeat" || first == "while" || first == "forever" || first == "if";
}
int block_end(const std::vector<std::string>& lines, int n) {
    for (int depth = 0;; ++n) {
        const std::string code = code_of(lines[static_cast<std::size_t>(n - 1)]);
        depth += opens(code) ? 1 : code == "end" ? -1 : 0;
        if (depth == 0) return n;
    }
}
// The lines an `else if` on line `n` opens: up to its next `else` or `end`, its last code line.
int arm_end(const std::vector<std::string>& lines, int n) {
    int last = n;
    for (int k = n + 1, depth = 0;; ++k) {
        const std::string code = code_of(lines[static_cast<std::size_t>(k - 1)]);
        if (depth == 0 && (code == "end" || code.rfind("else", 0) == 0)) return last;
        depth += opens(code) ? 1 : code == "end" ? -1 : 0;
        if (!code.empty()) last = k;
    }
}
std::vector<std::string> without(std::vector<std::string> v, int first, int last) {
    v.erase(v.begin() + (first - 1), v.begin() + last);
    return v;
}

TEST(ChartEdit, RemovalsMovesAndFieldEditsOverTheCorpusTouchOnlyTheirLines) {
    std::mt19937 rng(7);
    const auto pick = [&rng](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
    };
    for (unsigned seed = 0; seed < chart_testing::kCorpusSize; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const auto p = chart_testing::generate_program(seed);
        const auto c = chart_of(p.source);
        ASSERT_TRUE(c);
        const std::vector<std::string>& lines = c->lines().all();
        const int n = p.code_lines[pick(p.code_lines.size())];
        const std::string code = code_of(lines[static_cast<std::size_t>(n - 1)]);
        const bool arm = code.rfind("else if", 0) == 0;
        const int last = arm ? arm_end(lines, n) : opens(code) ? block_end(lines, n) : n;

        const auto removed = chart::remove_icon(*c, n);
        EXPECT_EQ(removed.text,
                  chart::join_lines(without(lines, n, last), c->lines().final_newline()));

        const auto layout = chart::lay_out(*c);
        const auto& way = layout.ways[pick(layout.ways.size())];
        if (way.place) {
            const auto moved = chart::move_icon(*c, n, *way.place);
            const bool inside = way.place->owner >= n && way.place->owner <= last;
            ASSERT_EQ(moved.refused.empty(), !arm && !inside) << moved.refused;
            if (moved.refused.empty()) {
                const chart::ProgramLines after(moved.text);
                const int head = moved.line, count = last - n + 1;
                for (int k = 0; k < count; ++k)
                    EXPECT_EQ(code_of(after.at(head + k)),
                              code_of(lines[static_cast<std::size_t>(n - 1 + k)]));
                auto rest = without(after.all(), head, head + count - 1);
                if (rest.size() > lines.size() - static_cast<std::size_t>(count))
                    rest = without(rest, head - 1, head - 1);  // the `else` a move made
                // Compared as texts read back: a last line without its line end may go.
                const chart::ProgramLines kept(
                    chart::join_lines(without(lines, n, last), c->lines().final_newline()));
                EXPECT_EQ(rest, kept.all());
            }
        }

        auto form = chart::form_at(*c, n);
        ASSERT_TRUE(form);
        const bool named =
            form->kind == chart::IconKind::Assign || form->kind == chart::IconKind::Declare;
        for (std::size_t f = named ? 1 : 0; f < form->fields.size(); ++f)
            form->fields[f] = "1";
        const auto edited = chart::edit_icon(*c, n, form->fields);
        ASSERT_TRUE(edited.ok()) << edited.text;
        std::vector<std::string> now = chart::ProgramLines(edited.text).all();
        const std::string& old_line = lines[static_cast<std::size_t>(n - 1)];
        const std::string& new_line = now[static_cast<std::size_t>(n - 1)];
        const auto indent = old_line.find_first_not_of(" \t");
        EXPECT_EQ(new_line.substr(0, indent), old_line.substr(0, indent));
        const auto tail = old_line.substr(old_line.find(code) + code.size());
        EXPECT_EQ(new_line.substr(new_line.size() - tail.size()), tail);
        now[static_cast<std::size_t>(n - 1)] = old_line;
        EXPECT_EQ(now, lines);
        const auto again = chart_of(edited.text);
        ASSERT_TRUE(again);
        EXPECT_EQ(chart::form_at(*again, n)->fields, form->fields);
    }
}

}  // namespace
