// The robot program's editor: line numbers, the language's colours, undo, a margin of
// breakpoints, the line the program stands at, and every problem the checker found underlined at
// its place (errors and warnings in two colours), told when the pointer rests on it.
#pragma once

#include <Qsci/qsciscintilla.h>

#include <set>
#include <vector>

#include "diagnostic.h"
#include "kflow_lexer.h"

namespace window {

class ProgramEditor : public QsciScintilla {
    Q_OBJECT
  public:
    // An underline as the editor holds it: line and column from 1, its length in characters.
    struct Mark {
        int line = 0;
        int column = 0;
        int length = 0;
        kflow::Diagnostic::Severity severity = kflow::Diagnostic::Severity::Error;
        bool operator==(const Mark&) const = default;
    };

    explicit ProgramEditor(QWidget* parent = nullptr);

    void set_macro_names(NameSet names) { lexer_->set_macro_names(std::move(names)); }
    // Underlines each at its place, replacing those before.
    void show_problems(std::vector<kflow::Diagnostic> problems);
    const std::vector<kflow::Diagnostic>& problems() const { return problems_; }
    // The underlines, read back from the text (they move with edits until the next check).
    std::vector<Mark> marks() const;
    // The problems whose underline covers the character at `line`, `column` (from 1), one a line.
    QString problems_at(int line, int column) const;

    // The line the program stands at (from 1) marked; 0 for none.
    void show_line(int line);
    int shown_line() const { return shown_line_; }
    // Breakpoints by line from 1; they move with the text as it is edited.
    std::set<int> breakpoints() const;
    void set_breakpoints(const std::set<int>& lines);
    void toggle_breakpoint(int line);
    // The caret to a place (from 1), in view.
    void go_to(int line, int column);
    int caret_line() const;
    // The text larger at zoom 2 and 3.
    void set_text_zoom(int zoom);

  signals:
    // The user set or cleared a breakpoint by the margin.
    void breakpoints_changed();
    // The breakpoints shown changed, however that came about.
    void breakpoint_marks_changed();

  private:
    void dwell(int position, int x, int y);
    // The characters a problem at `d` underlines: its word, or one character.
    std::pair<int, int> extent(const kflow::Diagnostic& d) const;

    KflowLexer* lexer_;
    std::vector<kflow::Diagnostic> problems_;
    int shown_line_ = 0;
};

}  // namespace window
