#include "script_player.h"

#include <charconv>
#include <sstream>

#include "command_line.h"
#include "user_file.h"

namespace window {

ScriptPlayer::ScriptPlayer(console::ConsoleSession& console, std::ostringstream& answers,
                           ClockDriver& clock, ActionRecorder& recorder, QObject* parent)
    : QObject(parent), console_(console), answers_(answers), clock_(clock), recorder_(recorder) {
    connect(&clock_, &ClockDriver::advanced, this, [this] {
        if (playing_) step();
    });
}

bool ScriptPlayer::load(const std::string& path, std::string* error) {
    std::string text, why;
    if (!host::read_user_file(path, host::kLargestTextFile, "a console script", &text, &why)) {
        if (error) *error = "cannot read the script " + path + ": " + why;
        return false;
    }
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    set_lines(std::move(lines));
    return true;
}

void ScriptPlayer::set_lines(std::vector<std::string> lines) {
    lines_ = std::move(lines);
    next_ = 0;
    failures_.clear();
}

void ScriptPlayer::play() {
    playing_ = true;
    clock_.set_ceiling(clock_.target());
    step();
}

void ScriptPlayer::stop() {
    if (!playing_) return;
    finish();
}

void ScriptPlayer::finish() {
    playing_ = false;
    clock_.set_ceiling(std::nullopt);
    emit finished();
}

std::optional<std::int64_t> ScriptPlayer::advance_of(const std::string& line) {
    const auto command = console::split_command(line);
    if (!command || command->words.size() != 2 || command->words[0] != "advance" || command->equals)
        return std::nullopt;
    const std::string& word = command->words[1];
    std::int64_t ms = -1;
    const auto r = std::from_chars(word.data(), word.data() + word.size(), ms);
    if (r.ec != std::errc() || r.ptr != word.data() + word.size() || ms < 0) return std::nullopt;
    return ms;
}

// Runs lines until one asks for time to pass, or until the script ends.
void ScriptPlayer::step() {
    host::ComponentSession& session = console_.session();
    while (playing_) {
        // Still waiting for the clock to reach the moment of the next line.
        if (clock_.ceiling() && session.now() < *clock_.ceiling()) return;
        if (next_ >= lines_.size()) return finish();
        const std::string line = lines_[next_++];
        if (const auto ms = advance_of(line)) {
            clock_.set_ceiling(session.now() + *ms);
            continue;
        }
        run_line(line);
    }
}

void ScriptPlayer::run_line(const std::string& line) {
    if (console::is_skipped_line(line)) return;
    answers_.str({});
    const bool more = console_.execute(line);
    recorder_.note(line);
    std::istringstream answer(answers_.str());
    for (std::string out; std::getline(answer, out);)
        if (out.rfind("fail", 0) == 0 || out.rfind("error", 0) == 0)
            failures_.push_back(line + ": " + out);
    emit line_played(QString::fromStdString(line));
    if (!more) finish();
}

}  // namespace window
