// A new text put into the editor as an edit of its own: only the lines that differ from the
// editor's are replaced, in one step of its undo, so that the caret, the scroll and the marks on
// the other lines stay where they were.
#pragma once

#include <cstddef>
#include <string_view>

class QsciScintilla;

namespace window {

// The bytes where `before` and `after` differ, widened to whole lines: [begin, before_end) of
// `before` is [begin, after_end) of `after`, and what follows is the same in both.
struct Splice {
    std::size_t begin = 0;
    std::size_t before_end = 0;
    std::size_t after_end = 0;
    bool operator==(const Splice&) const = default;
};
Splice splice_of(std::string_view before, std::string_view after);

// Makes the editor's text `text`; false when it holds that already.
bool splice_into(QsciScintilla& editor, std::string_view text);

}  // namespace window
