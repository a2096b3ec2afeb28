#include "editor_splice.h"

#include <Qsci/qsciscintilla.h>

#include <algorithm>
#include <string>

namespace window {

namespace {
// A tail starts a line when it is empty, the whole text, or follows a line's end.
bool line_starts_at(std::string_view text, std::size_t at) {
    return at == 0 || at == text.size() || text[at - 1] == '\n';
}
}  // namespace

Splice splice_of(std::string_view before, std::string_view after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t begin = 0;
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    while (begin > 0 && before[begin - 1] != '\n')
        --begin;
    // The common tail, kept clear of the common head, from the start of a line in both.
    std::size_t tail = 0;
    while (tail < shorter - begin &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    while (!(line_starts_at(before, before.size() - tail) &&
             line_starts_at(after, after.size() - tail)))
        --tail;
    return {begin, before.size() - tail, after.size() - tail};
}

bool splice_into(QsciScintilla& editor, std::string_view text) {
    const std::string before = editor.text().toStdString();
    if (before == text) return false;
    const Splice s = splice_of(before, text);
    const std::string put(text.substr(s.begin, s.after_end - s.begin));
    editor.beginUndoAction();
    editor.SendScintilla(QsciScintilla::SCI_SETTARGETSTART, static_cast<unsigned long>(s.begin));
    editor.SendScintilla(QsciScintilla::SCI_SETTARGETEND, static_cast<unsigned long>(s.before_end));
    editor.SendScintilla(QsciScintilla::SCI_REPLACETARGET, put.size(), put.c_str());
    editor.endUndoAction();
    return true;
}

}  // namespace window
