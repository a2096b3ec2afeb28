#include "action_recorder.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace window {

ActionRecorder::ActionRecorder(std::function<std::int64_t()> now) : now_(std::move(now)) {}

void ActionRecorder::note(const std::string& line) {
    const std::int64_t at = now_();
    if (at > last_) lines_.push_back("advance " + std::to_string(at - last_));
    last_ = std::max(last_, at);
    lines_.push_back(line);
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

std::string coordinate_text(float value) {
    char buffer[32];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    // The shortest text that reads back to the same float: the console reads it as a double,
    // which narrows to this float again.
    return std::string(buffer, r.ptr);
}

}  // namespace window
