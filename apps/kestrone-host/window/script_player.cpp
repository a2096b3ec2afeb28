#include "script_player.h"

#include <sstream>

#include "command_line.h"
#include "panel_commands.h"
#include "user_file.h"

namespace window {

ScriptPlayer::ScriptPlayer(ActionRunner& runner, RealTimeClock& clock, QObject* parent)
    : QObject(parent), runner_(runner), clock_(clock) {
    connect(&clock_, &RealTimeClock::advanced, this, [this] {
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
    set_lines(std::move(lines), path);
    return true;
}

void ScriptPlayer::set_lines(std::vector<std::string> lines, std::string name) {
    lines_ = std::move(lines);
    name_ = std::move(name);
    next_ = 0;
    failures_.clear();
}

void ScriptPlayer::play() {
    playing_ = true;
    runner_.context().quit = false;
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

// Runs lines until one asks for time to pass, or until the script ends.
void ScriptPlayer::step() {
    stage::Stage& stage = runner_.context().stage;
    // A line runs neither inside another (a tone of a line played) nor while a box or a tone
    // holds the thread: it waits for the next pulse.
    if (stepping_ || stage.session().in_call()) return;
    stepping_ = true;
    while (playing_) {
        // Still waiting for the clock to reach the moment of the next line.
        if (clock_.ceiling() && stage.now() < *clock_.ceiling()) break;
        if (next_ >= lines_.size()) {
            finish();
            break;
        }
        const std::size_t index = next_++;
        commands::Parsed parsed = commands::parse_command(lines_[index]);
        const auto* advance =
            parsed.command
                ? dynamic_cast<const commands::CommandOf<commands::Advance>*>(parsed.command.get())
                : nullptr;
        // A played advance waits in real time: one longer than a run may take is refused, so
        // that an unattended window always comes to its script's end.
        if (advance && advance->data().ms > kflow::RunLimits{}.clock_ms) {
            failures_.push_back(name_ + ":" + std::to_string(index + 1) + ": " + lines_[index] +
                                ": fail a played script waits at most " +
                                std::to_string(kflow::RunLimits{}.clock_ms) + " ms at a line");
            continue;
        }
        if (advance) {
            clock_.set_ceiling(stage.now() + advance->data().ms);
            continue;
        }
        run_line(index);
    }
    stepping_ = false;
}

void ScriptPlayer::run_line(std::size_t index) {
    const std::string& line = lines_[index];
    if (console::is_skipped_line(line)) return;
    commands::Parsed parsed = commands::parse_command(line);
    const commands::Reply reply =
        parsed.command ? runner_.perform(*parsed.command) : commands::Reply::fail(parsed.error);
    if (!reply.is_ok())
        failures_.push_back(name_ + ":" + std::to_string(index + 1) + ": " + line + ": " +
                            reply.line());
    emit line_played(QString::fromStdString(line));
    if (runner_.context().quit) finish();
}

}  // namespace window
