// A new text spliced into the editor: against random edits of whole lines (the model), the span
// replaced is no more than the lines the edit changed, starts on a line, and makes the new text; in
// the editor it is one step of undo and leaves a caret after it on its line.
#include <Qsci/qsciscintilla.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "editor_splice.h"

namespace {

std::string joined(const std::vector<std::string>& lines, std::size_t from, std::size_t to) {
    std::string out;
    for (std::size_t k = from; k < to; ++k)
        out += lines[k] + "\n";
    return out;
}

TEST(EditorSplice, ReplacesOnlyTheLinesAnEditChangedAsOneStepOfUndo) {
    std::mt19937 random(20);
    // Few distinct lines, so that the lines beside an edit often match what it put in.
    const std::vector<std::string> words{"a", "ab", "b", "    a", "", "é #x"};
    const auto pick = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n)(random);
    };
    QsciScintilla editor;
    editor.setUtf8(true);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> lines(pick(6));
        for (std::string& l : lines)
            l = words[pick(words.size() - 1)];
        const std::size_t at = pick(lines.size()), cut = pick(lines.size() - at);
        std::vector<std::string> put(pick(3));
        for (std::string& l : put)
            l = words[pick(words.size() - 1)];
        const std::string before = joined(lines, 0, lines.size());
        const std::string head = joined(lines, 0, at), tail = joined(lines, at + cut, lines.size());
        const std::string after = head + joined(put, 0, put.size()) + tail;

        const window::Splice s = window::splice_of(before, after);
        ASSERT_EQ(before.substr(0, s.begin) + after.substr(s.begin, s.after_end - s.begin) +
                      before.substr(s.before_end),
                  after);
        // No more replaced than the edit changed: where the lines around it repeat, it may lie
        // a little elsewhere.
        EXPECT_LE(s.before_end - s.begin, before.size() - tail.size() - head.size()) << round;
        EXPECT_LE(s.after_end - s.begin, after.size() - tail.size() - head.size()) << round;
        for (const std::size_t edge : {s.begin, s.before_end})
            EXPECT_TRUE(edge == 0 || before[edge - 1] == '\n') << round;

        editor.setText(QString::fromStdString(before));
        const int caret = static_cast<int>(lines.size());
        editor.setCursorPosition(caret, 0);
        EXPECT_EQ(window::splice_into(editor, after), before != after);
        EXPECT_EQ(editor.text().toStdString(), after);
        int line = 0, index = 0;
        editor.getCursorPosition(&line, &index);
        // A caret after the span keeps its line; one where the span ends stays before the new text.
        if (s.before_end < before.size()) {
            EXPECT_EQ(line, caret + static_cast<int>(put.size()) - static_cast<int>(cut)) << round;
        }
        editor.undo();
        EXPECT_EQ(editor.text().toStdString(), before) << round;
    }
}

}  // namespace
