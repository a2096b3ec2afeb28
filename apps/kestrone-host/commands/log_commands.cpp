#include "log_commands.h"

#include "command_support.h"
#include "log_file.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;

std::string format(const LogStart& c) {
    return "log start " + path_for(c.path);
}

Reply execute(const LogStart& c, Context& context) {
    if (context.log)
        return Reply::fail("a log into " + context.log->path() + " is running: log stop first");
    std::string why;
    context.log = signal_log::LogFile::start(context.stage, c.path, &why);
    return context.log ? Reply::ok() : Reply::fail(why);
}

std::string format(const LogStop&) {
    return "log stop";
}

Reply execute(const LogStop&, Context& context) {
    if (!context.log) return Reply::fail("no log is running: log start FILE first");
    std::string why;
    const auto changes = context.log->finish(&why);
    context.log.reset();
    if (!changes) return Reply::fail(why);
    return Reply::ok(console::format_value(kestrone::Variant::long_(
        static_cast<std::int32_t>(std::min<std::size_t>(*changes, 0x7FFFFFFF)))));
}

Parsed parse_log(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() == 3 && w[1] == "start" && !line.equals) {
        const auto path = console::word_text(w[2]);
        if (!path) return refused("not a file name: " + w[2]);
        return parsed(LogStart{*path});
    }
    if (w.size() == 2 && w[1] == "stop" && !line.equals) return parsed(LogStop{});
    return refused("log takes start FILE or stop");
}

}  // namespace commands
