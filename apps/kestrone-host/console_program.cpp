// The console's programs and checks: a robot program run to its end on the console's clock, its
// variables, and `expect`, which makes a script of actions a test.
#include <algorithm>
#include <cmath>

#include "console_session.h"
#include "value_syntax.h"

namespace console {

using kestrone::Variant;

// run FILE [MS]: with MS, the program is stopped once MS milliseconds have passed on its clock,
// so the panel can be read as the program left it at that moment.
void ConsoleSession::cmd_run(const CommandLine& c) {
    if (c.words.size() < 2 || c.words.size() > 3 || c.equals)
        return out_.fail("run takes a program and a time to stop at: run FILE [MS]");
    const auto path = word_text(c.words[1]);
    if (!path) return out_.fail("not a file name: " + c.words[1]);
    kflow::RunLimits limits;
    const bool timed = c.words.size() == 3;
    if (timed) {
        const auto ms = number_of(c.words[2]);
        if (!ms || *ms != std::floor(*ms) || *ms < 0 || *ms > static_cast<double>(limits.clock_ms))
            return out_.fail("run stops at a whole number of milliseconds, 0 to " +
                             std::to_string(limits.clock_ms));
        limits.clock_ms = static_cast<std::int64_t>(*ms);
    }
    if (!have_object()) return;
    if (!session_.offers(host::Facet::Host) || !session_.offers(host::Facet::Panel))
        return out_.fail("the component offers no host interface and panel to run a program on");
    std::string error;
    if (!session_.load_program(*path, &error)) return out_.fail(error);
    const kflow::RunOutcome outcome = session_.run_program(limits);
    const bool stopped_in_time = timed && outcome.end == kflow::RunOutcome::End::OutOfTime;
    if (outcome.end != kflow::RunOutcome::End::Finished && !stopped_in_time)
        return out_.fail(outcome.message);
    // The limits keep a run far below a 32-bit count of milliseconds.
    out_.ok(format_value(Variant::long_(static_cast<std::int32_t>(outcome.elapsed_ms))));
}

void ConsoleSession::cmd_var(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("var takes a variable's name");
    if (!session_.has_run()) return out_.fail("no program has run");
    const auto value = session_.variable(c.words[1]);
    if (!value) return out_.fail("the program has no variable " + c.words[1]);
    out_.ok(format_value(Variant::integer(*value)));
}

namespace {
// The command's words joined again: each word keeps its text, strings and arrays whole.
std::string joined(const std::vector<std::string>& words, std::size_t from, std::size_t to) {
    std::string line;
    for (std::size_t i = from; i < to; ++i)
        line += (i > from ? " " : "") + words[i];
    return line;
}
}  // namespace

// expect COMMAND == VALUE: the command's own notices go out as it runs; its final line is kept
// and compared. Any `expect` that does not end in `ok` marks the console as failed.
void ConsoleSession::cmd_expect(const CommandLine& c) {
    const auto& w = c.words;
    const auto last = std::find(w.rbegin(), w.rend(), "==");
    const std::size_t split = last == w.rend() ? 0 : static_cast<std::size_t>(w.rend() - last) - 1;
    const auto refuse = [this](const std::string& why) {
        expectations_met_ = false;
        out_.fail(why);
    };
    if (split < 2 || split + 2 != w.size()) return refuse("expect takes COMMAND == VALUE");
    if (w[1] == "expect" || w[1] == "quit") return refuse("expect cannot check " + w[1]);
    std::string error;
    const auto expected = parse_value(w[split + 1], &error);
    if (!expected) return refuse(unreadable(w[split + 1], error));
    std::string answer;
    out_.capture(&answer);
    execute(joined(w, 1, split));
    out_.capture(nullptr);
    const bool has_value = answer.rfind("ok ", 0) == 0;
    const std::string got = has_value ? answer.substr(3) : answer.empty() ? "nothing" : answer;
    if (has_value && got == format_value(*expected)) return out_.ok();
    refuse("expected " + w[split + 1] + ", got " + got);
}

}  // namespace console
