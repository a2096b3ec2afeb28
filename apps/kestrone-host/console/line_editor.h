// The console's lines from a person at a terminal: a prompt, line editing and a history that
// lasts from one session to the next.
#pragma once

#include <string>

namespace host {

class LineEditor {
  public:
    // `history_file` keeps the lines typed; empty for none.
    explicit LineEditor(std::string history_file);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // The next line, without its end; false at the end of input (Ctrl-D).
    bool read(std::string& line);

    // $XDG_STATE_HOME/kestrone/console_history, or ~/.local/state/...; empty without a home.
    static std::string default_history_file();

  private:
    std::string history_file_;
};

}  // namespace host
