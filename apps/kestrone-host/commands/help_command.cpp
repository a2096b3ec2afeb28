// `help`: the command table one line each, and an operation's parameters as the type library
// declares them.
#include "command_support.h"
#include "object_commands.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;

namespace {

std::string parameter_list(const kestrone::MemberInfo& m, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
        const kestrone::ParamInfo& p = m.params[i];
        out += (i ? ", " : " ") + std::string(p.name) + " " +
               std::string(console::type_name(p.type)) +
               (p.by_ref ? " (by reference, reported after the call)" : "");
    }
    return out;
}

void list_line(Context& context, std::string_view usage, std::string_view what) {
    constexpr std::size_t kColumn = 34;
    context.notice(std::string(usage) +
                   std::string(usage.size() < kColumn ? kColumn - usage.size() : 1, ' ') +
                   std::string(what));
}

}  // namespace

std::string format(const Help& c) {
    return c.name.empty() ? "help" : "help " + c.name;
}

Reply execute(const Help& c, Context& context) {
    if (c.name.empty()) {
        list_line(context, "NAME ARG ...",
                  "calls an operation of the component (help NAME shows its parameters)");
        list_line(context, "NAME ARG ... = VALUE", "writes a property of the component");
        for (const CommandEntry& entry : command_table())
            list_line(context, entry.usage, entry.what);
        return Reply::ok();
    }
    const auto call = host::ComponentSession::find_operation(c.name, false);
    const auto write = host::ComponentSession::find_operation(c.name, true);
    if (!call && !write) return Reply::fail("the component has no operation " + c.name);
    if (call) {
        const kestrone::MemberInfo& m = *call->info;
        const bool returns = m.result != kestrone::VarType::Empty;
        context.notice(c.name + parameter_list(m, m.param_count) +
                       (returns ? " -> " + std::string(console::type_name(m.result)) : ""));
    }
    if (write) {
        const kestrone::MemberInfo& m = *write->info;
        const std::size_t args = m.param_count - 1u;  // the written value is last
        context.notice(c.name + parameter_list(m, args) + " = " + std::string(m.params[args].name) +
                       " " + std::string(console::type_name(m.params[args].type)));
    }
    return Reply::ok();
}

Parsed parse_help(const CommandLine& line) {
    if (line.words.size() > 2) return refused("help takes at most one name: help NAME");
    return parsed(Help{line.words.size() == 2 ? line.words[1] : std::string()});
}

}  // namespace commands
