#include "program_commands.h"

#include <algorithm>
#include <cmath>

#include "command_support.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::Variant;

std::string format(const Run& c) {
    std::string text = "run " + path_for(c.path);
    if (c.stop_at) text += " " + std::to_string(*c.stop_at);
    return text;
}

// With MS the program is stopped once MS milliseconds have passed on its clock, so that the
// panel can be read as the program left it at that moment.
Reply execute(const Run& c, Context& context) {
    if (auto no = load_program(context, c.path)) return *no;
    stage::Stage& stage = context.stage;
    kflow::RunLimits limits;
    if (c.stop_at) limits.clock_ms = *c.stop_at;
    const kflow::RunOutcome outcome = stage.run_program(limits);
    const bool stopped_in_time = c.stop_at && outcome.end == kflow::RunOutcome::End::OutOfTime;
    if (outcome.end != kflow::RunOutcome::End::Finished && !stopped_in_time)
        return Reply::fail(outcome.message);
    // The limits keep a run far below a 32-bit count of milliseconds.
    return Reply::ok(
        console::format_value(Variant::long_(static_cast<std::int32_t>(outcome.elapsed_ms))));
}

Parsed parse_run(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() < 2 || w.size() > 3 || line.equals)
        return refused("run takes a program and a time to stop at: run FILE [MS]");
    const auto path = console::word_text(w[1]);
    if (!path) return refused("not a file name: " + w[1]);
    Run c{*path, std::nullopt};
    if (w.size() == 3) {
        const std::int64_t most = kflow::RunLimits{}.clock_ms;
        const auto ms = number_of(w[2]);
        if (!ms || *ms != std::floor(*ms) || *ms < 0 || *ms > static_cast<double>(most))
            return refused("run stops at a whole number of milliseconds, 0 to " +
                           std::to_string(most));
        c.stop_at = static_cast<std::int64_t>(*ms);
    }
    return parsed(std::move(c));
}

std::string format(const Var& c) {
    return "var " + c.name;
}

Reply execute(const Var& c, Context& context) {
    const stage::ProgramRun& program = context.stage.program();
    if (!program.has_run()) return Reply::fail("no program has run");
    const auto value = program.variable(c.name);
    if (!value) return Reply::fail("the program has no variable " + c.name);
    return Reply::ok(console::format_value(Variant::integer(*value)));
}

Parsed parse_var(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("var takes a variable's name");
    return parsed(Var{line.words[1]});
}

std::string format(const Expect& c) {
    return "expect " + c.command->format() + " == " + c.written;
}

// The command's own notices go out as it runs; its final line is compared. Any `expect` that
// does not end in `ok` marks the context as failed.
Reply execute(const Expect& c, Context& context) {
    const Reply answer = c.command->execute(context);
    const bool has_value = answer.is_ok() && !answer.text.empty();
    const std::string expected = console::format_value(c.expected);
    if (has_value && answer.text == expected) return Reply::ok();
    context.expectations_met = false;
    const std::string got = has_value ? answer.text : answer.line();
    return Reply::fail("expected " + c.written + ", got " + got);
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

Parsed parse_expect(const CommandLine& line) {
    const auto& w = line.words;
    const auto last = std::find(w.rbegin(), w.rend(), "==");
    const std::size_t split = last == w.rend() ? 0 : static_cast<std::size_t>(w.rend() - last) - 1;
    if (split < 2 || split + 2 != w.size()) return refused("expect takes COMMAND == VALUE");
    if (w[1] == "expect" || w[1] == "quit") return refused("expect cannot check " + w[1]);
    std::string error;
    auto expected = console::parse_value(w[split + 1], &error);
    if (!expected) return refused(console::unreadable(w[split + 1], error));
    const std::string checked = joined(w, 1, split);
    Parsed inner = parse_command(checked);
    // A command that can't be read is checked all the same: its `fail` is what it got.
    if (!inner.command) inner.command = make(Refused{checked, inner.error});
    return parsed(Expect{std::move(inner.command), std::move(*expected), w[split + 1]});
}

}  // namespace commands
