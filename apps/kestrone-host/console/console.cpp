#include "console.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "console_interrupt.h"
#include "object_commands.h"
#include "value_syntax.h"

namespace console {

void ConsoleServices::ShowMessage(const std::string& text) noexcept {
    out_ << "message " << quote(text) << '\n' << std::flush;
}

void ConsoleServices::PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept {
    out_ << "tone " << hertz << ' ' << milliseconds << '\n' << std::flush;
}

Console::Console(std::ostream& out, host::ProjectCodec codec)
    : out_(out), services_(out), stage_(services_, std::move(codec)) {
    context_.notice = [this](const std::string& line) { out_ << line << '\n' << std::flush; };
}

void Console::answer(const commands::Reply& reply) {
    out_ << reply.line() << '\n' << std::flush;
}

void Console::start() {
    answer(commands::make_object(context_));
}

bool Console::execute(std::string_view line) {
    if (is_skipped_line(line)) return true;
    commands::Parsed parsed = commands::parse_command(line);
    take_interrupt();  // one made while nothing ran stops nothing
    if (!parsed.command) {
        // A check that can't even be read is a check that failed.
        const auto words = split_command(line);
        if (words && words->words.front() == "expect") context_.expectations_met = false;
        answer(commands::Reply::fail(parsed.error));
        return true;
    }
    const auto words = split_command(line);
    command_word_ = words ? words->words.front() : std::string();
    command_started_ = std::chrono::steady_clock::now();
    set_busy(true);
    const commands::Reply reply = parsed.command->execute(context_);
    set_busy(false);
    if (progress_shown_) *progress_ << "\r\033[K" << std::flush;
    progress_shown_ = false;
    // `quit` ends the console without a word.
    if (context_.quit) return false;
    answer(reply);
    return true;
}

std::string progress_text(std::string_view command, std::int64_t done, std::int64_t total) {
    // In floating point: a count of milliseconds times 100 may not fit.
    const auto percent = static_cast<int>(100.0 * static_cast<double>(done) /
                                          static_cast<double>(std::max<std::int64_t>(total, 1)));
    return std::string(command) + ": " + std::to_string(done) + " of " + std::to_string(total) +
           " ms on the clock (" + std::to_string(percent) + "%), Ctrl-C stops";
}

void Console::watch_long_work(std::ostream* progress) {
    progress_ = progress;
    stage_.set_progress_check([this](std::int64_t done, std::int64_t total) {
        if (take_interrupt()) return false;
        if (progress_ &&
            std::chrono::steady_clock::now() - command_started_ > std::chrono::seconds(1)) {
            *progress_ << "\r" << progress_text(command_word_, done, total) << std::flush;
            progress_shown_ = true;
        }
        return true;
    });
}

void Console::run(std::istream& in) {
    std::string line;
    while (!context_.quit && std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        execute(line);
    }
}

}  // namespace console
