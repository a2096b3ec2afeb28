// A new text spliced into the editor: against random edits of whole lines (the model), the span
// replaced is no more than the lines the edit changed, starts on a line, and makes the new text;
// in the editor it is one step of undo and leaves a caret after it on its line.
#include <Qsci/qsciscintilla.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "editor_splice.h"

namespace {

TEST(EditorSplice, ReplacesOnlyTheLinesAnEditChangedAsOneStepOfUndo) {
    std::mt19937 random(20);
    // Few distinct lines, so that the lines beside an edit often match what it put in.
    const std::vector<std::string> words{"a", "ab", "b", "    a", "", "é #x"};
    const auto some_lines = [&](int most) {
        std::string out;
        for (int n = std::uniform_int_distribution<int>(0, most)(random); n > 0; --n)
            out += words[random() % words.size()] + "\n";
        return out;
    };
    const auto lines = [](const std::string& t) {
        return static_cast<int>(std::count(t.begin(), t.end(), '\n'));
    };
    QsciScintilla editor;
    editor.setUtf8(true);
    for (int round = 0; round < 300; ++round) {
        const std::string head = some_lines(3), cut = some_lines(2), put = some_lines(2),
                          tail = some_lines(3);
        const std::string before = head + cut + tail, after = head + put + tail;
        const window::Splice s = window::splice_of(before, after);
        ASSERT_EQ(before.substr(0, s.begin) + after.substr(s.begin, s.after_end - s.begin) +
                      before.substr(s.before_end),
                  after);
        // Where the lines around the edit repeat, the span may lie a little elsewhere.
        EXPECT_LE(s.before_end - s.begin, cut.size()) << round;
        EXPECT_LE(s.after_end - s.begin, put.size()) << round;
        for (const std::size_t edge : {s.begin, s.before_end})
            EXPECT_TRUE(edge == 0 || before[edge - 1] == '\n') << round;

        editor.setText(QString::fromStdString(before));
        editor.setCursorPosition(lines(before), 0);
        EXPECT_EQ(window::splice_into(editor, after), before != after);
        EXPECT_EQ(editor.text().toStdString(), after);
        int line = 0, index = 0;
        editor.getCursorPosition(&line, &index);
        // A caret where the span ends stays before the new text.
        if (s.before_end < before.size()) {
            EXPECT_EQ(line, lines(after)) << round;
        }
        editor.undo();
        EXPECT_EQ(editor.text().toStdString(), before) << round;
    }
}

}  // namespace
