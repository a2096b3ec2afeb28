#include "action_recorder.h"

#include <algorithm>
#include <fstream>

#include "panel_commands.h"

namespace window {

ActionRecorder::ActionRecorder(std::function<std::int64_t()> now) : now_(std::move(now)) {}

void ActionRecorder::add(const std::string& line) {
    const std::int64_t at = now_();
    if (at > last_) lines_.push_back(commands::format(commands::Advance{at - last_}));
    last_ = std::max(last_, at);
    lines_.push_back(line);
}

void ActionRecorder::note(const commands::Command& command) {
    add(command.format());
}

void ActionRecorder::note_comment(const std::string& text) {
    add("# " + text);
}

void ActionRecorder::restart(std::int64_t origin) {
    lines_.clear();
    last_ = origin;
}

std::string ActionRecorder::script() const {
    std::string text =
        "# Recorded in kestrone-host window; replay with: kestrone-host console < FILE\n";
    for (const auto& l : lines_)
        text += l + "\n";
    return text;
}

bool ActionRecorder::save(const std::string& path, std::string* error) const {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << script();
    out.close();
    if (out) return true;
    if (error) *error = "cannot write the recording " + path;
    return false;
}

}  // namespace window
