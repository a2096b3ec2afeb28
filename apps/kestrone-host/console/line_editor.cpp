#include "line_editor.h"

#include <editline/readline.h>
#include <sys/stat.h>

#include <cstdlib>

namespace host {

namespace {
constexpr int kHistoryLines = 1000;
}

LineEditor::LineEditor(std::string history_file) : history_file_(std::move(history_file)) {
    using_history();
    stifle_history(kHistoryLines);
    if (!history_file_.empty()) read_history(history_file_.c_str());
}

LineEditor::~LineEditor() {
    if (history_file_.empty()) return;
    // The folder may not exist yet; a history that can't be kept is no reason to complain.
    const std::size_t slash = history_file_.rfind('/');
    if (slash != std::string::npos) {
        const std::string folder = history_file_.substr(0, slash);
        const std::size_t parent = folder.rfind('/');
        if (parent != std::string::npos && parent > 0)
            ::mkdir(folder.substr(0, parent).c_str(), 0700);
        ::mkdir(folder.c_str(), 0700);
    }
    write_history(history_file_.c_str());
}

bool LineEditor::read(std::string& line) {
    char* text = readline("> ");
    if (!text) return false;
    line = text;
    std::free(text);
    // Blank lines and repeats stay out of the history.
    if (line.find_first_not_of(" \t") != std::string::npos) {
        const HIST_ENTRY* last =
            history_length > 0 ? history_get(history_base + history_length - 1) : nullptr;
        if (!last || line != last->line) add_history(line.c_str());
    }
    return true;
}

std::string LineEditor::default_history_file() {
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state && state[0] == '/') return std::string(state) + "/kestrone/console_history";
    const char* home = std::getenv("HOME");
    if (home && home[0] == '/') return std::string(home) + "/.local/state/kestrone/console_history";
    return {};
}

}  // namespace host
