// The editor checks what is typed into it: programs made of good lines with a few lines naming
// unknown variables, typed key by key; each fault must be underlined where it was put and listed.
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <numeric>
#include <random>
#include <set>

#include "kflow_lexer.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

using Place = std::pair<int, int>;  // line, column, from 1

// Lines that check clean after the declarations of `a` and `k`.
const char* const kGoodLines[] = {"a = k + 1", "delay 10", "LedOn(1)", "a = a * 3 - k",
                                  "LedOff(1)"};

struct Typed {
    std::vector<std::string> lines;
    std::vector<Place> faults;
};

// Declarations, then good lines with faults at `count` lines chosen by `rng`: each names an unknown
// variable after a run of terms long enough to put it at a column of its own.
Typed generate(std::mt19937& rng, int count) {
    Typed t{{"int a = 0", "int k = 1"}, {}};
    const int body = 7;
    std::vector<int> at(body);
    std::iota(at.begin(), at.end(), 0);
    std::shuffle(at.begin(), at.end(), rng);
    const std::set<int> faulty(at.begin(), at.begin() + count);
    for (int i = 0; i < body; ++i) {
        if (!faulty.count(i)) {
            t.lines.push_back(kGoodLines[rng() % std::size(kGoodLines)]);
            continue;
        }
        std::string line = "a =";
        for (unsigned terms = rng() % 4; terms > 0; --terms)
            line += " k +";
        line += " ";
        t.faults.push_back(
            {static_cast<int>(t.lines.size()) + 1, static_cast<int>(line.size()) + 1});
        t.lines.push_back(line + "zq" + std::to_string(i));
    }
    return t;
}

class ProgramEditorTest : public WindowTest {
  protected:
    void type(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) {
            QTest::keyClicks(window_->editor(), QString::fromStdString(line));
            QTest::keyClick(window_->editor(), Qt::Key_Return);
        }
    }
    // Once the checker has told the problems of the text as it stands.
    void checked() {
        QSignalSpy told(&window_->checker(), &window::ProgramChecker::checked);
        ASSERT_TRUE(told.wait(5000));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window_->checker().busy(); }, 5000));
    }
    std::vector<Place> marks() const {
        std::vector<Place> out;
        for (const auto& m : window_->editor()->marks())
            out.push_back({m.line, m.column});
        return out;
    }
    std::vector<Place> listed() const {
        std::vector<Place> out;
        for (const kflow::Diagnostic& d : window_->editor()->problems())
            out.push_back({d.at.line, d.at.column});
        return out;
    }
};

TEST_F(ProgramEditorTest, FaultsTypedAreMarkedAndListedAtTheirPlacesUntilMended) {
    std::mt19937 rng(20261124);
    for (int round = 0; round < 3; ++round) {
        window_->set_confirm_program_discard([] { return true; });
        ASSERT_TRUE(window_->new_program());
        const Typed t = generate(rng, 3);
        type(t.lines);
        checked();
        EXPECT_EQ(marks(), t.faults);
        EXPECT_EQ(listed(), t.faults);
        EXPECT_EQ(window_->problems()->program_problem_count(), 3);
        // The pointer resting on the last letter of an underline tells its problem.
        const auto [hover_line, hover_column] = t.faults[1];
        QToolTip::hideText();
        emit window_->editor()->SCN_DWELLSTART(
            window_->editor()->positionFromLineIndex(hover_line - 1, hover_column + 1), 1, 1);
        EXPECT_TRUE(QToolTip::text().contains("zq")) << QToolTip::text().toStdString();
        // A click on the last problem takes the caret to its line.
        QTreeWidgetItem* last = window_->problems()->topLevelItem(2);
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->toolTip(1), last->text(1));  // a message too long for its column
        emit window_->problems()->itemClicked(last, 0);
        EXPECT_EQ(window_->editor()->caret_line(), t.faults[2].first);
        // The unknown name (two letters and a digit) of one fault mended into a known one.
        const auto [line, column] = t.faults[round];
        window_->editor()->setSelection(line - 1, column - 1, line - 1, column + 2);
        QTest::keyClicks(window_->editor(), "k");
        checked();
        std::vector<Place> left = t.faults;
        left.erase(left.begin() + round);
        EXPECT_EQ(marks(), left);
        EXPECT_EQ(window_->problems()->program_problem_count(), 2);
    }
}

// A fault at the very first character is marked from it and cleared with it; a click in the
// margin sets and clears a breakpoint on its own line; the running line is brought into view.
TEST_F(ProgramEditorTest, TheFirstCharacterTheMarginAndTheRunningLine) {
    window::ProgramEditor& editor = *window_->editor();
    // A stray character is marked alone; a name whole; what is missing at the end of a line, on
    // its last character.
    editor.setText("LedOn($(1))\n");
    checked();
    ASSERT_EQ(editor.marks().size(), 1u);
    EXPECT_EQ(editor.marks()[0].length, 1);
    editor.setText("LedOn(1\n");
    checked();
    EXPECT_EQ(marks(), (std::vector<Place>{{1, 7}}));
    editor.setText("LedOn(1, 2)\n");
    checked();
    EXPECT_EQ(marks(), (std::vector<Place>{{1, 1}}));
    EXPECT_EQ(editor.marks()[0].length, 5);
    // Mended after the mark: the mark's own letters stay, the mark goes.
    editor.setSelection(0, 7, 0, 10);
    QTest::keyClick(&editor, Qt::Key_Delete);
    checked();
    EXPECT_EQ(marks(), std::vector<Place>{});
    QString tall;
    for (int i = 0; i < 200; ++i)
        tall += "LedOn(1)\n";
    editor.setText(tall);
    checked();
    EXPECT_EQ(marks(), std::vector<Place>{});
    for (const std::set<int>& want : {std::set<int>{4}, std::set<int>{}}) {
        emit editor.marginClicked(1, 3, Qt::NoModifier);
        EXPECT_EQ(editor.breakpoints(), want);
    }
    // From far below, the view goes up as far as the editor's own scrolling to that line goes.
    editor.setFirstVisibleLine(150);
    editor.ensureLineVisible(9);
    const int model = editor.firstVisibleLine();
    editor.setFirstVisibleLine(150);
    editor.show_line(10);
    EXPECT_EQ(editor.firstVisibleLine(), model);
}

// Every kind of colour in one line: keyword, plain names and blanks, operators, a macro, a number,
// a character and a comment.
TEST(KflowColours, EachSpanHasItsColour) {
    using window::Colour;
    using Spans = std::vector<std::pair<std::size_t, Colour>>;
    const Spans want = {{2, Colour::Keyword},  {2, Colour::Plain},    {1, Colour::Operator},
                        {5, Colour::Macro},    {1, Colour::Operator}, {4, Colour::Number},
                        {1, Colour::Operator}, {1, Colour::Operator}, {3, Colour::Character},
                        {1, Colour::Plain},    {3, Colour::Comment}};
    Spans spans;
    for (const window::ColourSpan& s : window::colour_spans("if x=LedOn(0x1F)+'c' # n", {"LedOn"}))
        spans.emplace_back(s.length, s.colour);
    EXPECT_EQ(spans, want);
}

}  // namespace
}  // namespace window_testing
