#include "debug_commands.h"

#include <cmath>

#include "command_support.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::Variant;

namespace {

std::optional<Reply> lacks_debugging(Context& context) {
    if (context.stage.program().debugging()) return std::nullopt;
    return Reply::fail("no program is being debugged: debug FILE first");
}

// Where it stands: `ok LINE&`, or `ok end` after its end.
Reply place_of(const stage::ProgramRun& program) {
    const int line = program.where();
    if (line == 0) return Reply::ok("end");
    return Reply::ok(console::format_value(Variant::long_(line)));
}

// After the program was let run: where it stopped, its end, or why it ended otherwise.
Reply after_running(Context& context, const kflow::RunOutcome& outcome) {
    const stage::ProgramRun& program = context.stage.program();
    if (program.paused() || outcome.end == kflow::RunOutcome::End::Finished)
        return place_of(program);
    return Reply::fail(outcome.message);
}

Parsed takes_nothing(const CommandLine& line, CommandPtr command) {
    if (line.words.size() != 1 || line.equals)
        return refused(line.words.front() + " takes nothing more");
    return {std::move(command), {}};
}

}  // namespace

std::string format(const Debug& c) {
    return "debug " + path_for(c.path);
}

Reply execute(const Debug& c, Context& context) {
    if (auto no = load_program(context, c.path)) return *no;
    stage::Stage& stage = context.stage;
    const kestrone::HRESULT hr = stage.debug_program();
    if (kestrone::failed(hr)) return Reply::fail(stage.program().message());
    return place_of(stage.program());
}

Parsed parse_debug(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("debug takes a program: debug FILE");
    const auto path = console::word_text(line.words[1]);
    if (!path) return refused("not a file name: " + line.words[1]);
    return parsed(Debug{*path});
}

std::string format(const Break& c) {
    std::string text = c.clear ? "break clear" : "break";
    if (c.line) text += " " + std::to_string(*c.line);
    return text;
}

Reply execute(const Break& c, Context& context) {
    if (auto no = lacks_debugging(context)) return *no;
    stage::ProgramRun& program = context.stage.program();
    if (c.clear) {
        if (c.line)
            program.clear_breakpoint(*c.line);
        else
            program.clear_breakpoints();
        return Reply::ok();
    }
    const auto at = program.set_breakpoint(*c.line);
    if (!at)
        return Reply::fail("line " + std::to_string(*c.line) +
                           " comes after the program's last statement");
    return Reply::ok(console::format_value(Variant::long_(*at)));
}

Parsed parse_break(const CommandLine& line) {
    const auto& w = line.words;
    const bool clear = w.size() >= 2 && w[1] == "clear";
    const std::size_t at = clear ? 2 : 1;
    if (line.equals || w.size() > at + 1 || (!clear && w.size() != 2))
        return refused("break LINE, break clear LINE or break clear");
    if (w.size() == at) return parsed(Break{true, std::nullopt});
    const auto number = whole_number(w[at]);
    if (!number || *number < 1) return refused("not a line of the program: " + w[at]);
    return parsed(Break{clear, *number});
}

std::string format(const Step&) {
    return "step";
}

Reply execute(const Step&, Context& context) {
    if (auto no = lacks_debugging(context)) return *no;
    stage::Stage& stage = context.stage;
    stage.program().step(stage.now());
    return after_running(context, stage.drive_debugged({}));
}

Parsed parse_step(const CommandLine& line) {
    return takes_nothing(line, make(Step{}));
}

std::string format(const Continue& c) {
    return c.ms ? "continue " + std::to_string(*c.ms) : "continue";
}

Reply execute(const Continue& c, Context& context) {
    if (auto no = lacks_debugging(context)) return *no;
    stage::Stage& stage = context.stage;
    const std::optional<std::int64_t> until =
        c.ms ? std::optional<std::int64_t>(stage.now() + *c.ms) : std::nullopt;
    stage.program().go_on(stage.now());
    return after_running(context, stage.drive_debugged({}, until));
}

Parsed parse_continue(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() > 2 || line.equals) return refused("continue takes at most MS: continue [MS]");
    if (w.size() == 1) return parsed(Continue{});
    const std::int64_t most = kflow::RunLimits{}.clock_ms;
    const auto ms = number_of(w[1]);
    if (!ms || *ms != std::floor(*ms) || *ms < 0 || *ms > static_cast<double>(most))
        return refused("continue goes on for a whole number of milliseconds, 0 to " +
                       std::to_string(most));
    return parsed(Continue{static_cast<std::int64_t>(*ms)});
}

std::string format(const Where&) {
    return "where";
}

Reply execute(const Where&, Context& context) {
    if (!context.stage.program().loaded()) return lacks_debugging(context).value();
    return place_of(context.stage.program());
}

Parsed parse_where(const CommandLine& line) {
    return takes_nothing(line, make(Where{}));
}

std::string format(const Vars&) {
    return "vars";
}

Reply execute(const Vars&, Context& context) {
    const stage::ProgramRun& program = context.stage.program();
    if (!program.has_run()) return Reply::fail("no program has run");
    std::string answer;
    for (const auto& [name, value] : program.variables())
        answer += (answer.empty() ? "" : " ") + name + "=" +
                  console::format_value(Variant::integer(value));
    return Reply::ok(answer);
}

Parsed parse_vars(const CommandLine& line) {
    return takes_nothing(line, make(Vars{}));
}

std::string format(const Undebug&) {
    return "undebug";
}

// After the program's end there is nothing left to stop: that is no fault.
Reply execute(const Undebug&, Context& context) {
    stage::ProgramRun& program = context.stage.program();
    if (!program.loaded()) return lacks_debugging(context).value();
    program.stop("stopped by the debugger");
    return Reply::ok();
}

Parsed parse_undebug(const CommandLine& line) {
    return takes_nothing(line, make(Undebug{}));
}

}  // namespace commands
