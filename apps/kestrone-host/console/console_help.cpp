// The console's `help`: its commands one line each, and an operation's parameters as the type
// library declares them.
#include "console_session.h"
#include "value_syntax.h"

namespace console {

namespace {

struct CommandHelp {
    std::string_view usage;
    std::string_view what;
};

constexpr CommandHelp kCommands[] = {
    {"NAME ARG ...", "calls an operation of the component (help NAME shows its parameters)"},
    {"NAME ARG ... = VALUE", "writes a property of the component"},
    {"get ELEMENT.PROPERTY", "a property of a panel element: get WheelLine(5).Top"},
    {"put ELEMENT.PROPERTY = VALUE", "writes a panel element's property as a program would"},
    {"click ELEMENT", "a user's click on a check box"},
    {"arrow ELEMENT up|down", "a user's click on an arrow of a sensor's UpDown"},
    {"mouse down|move|up B X Y", "the pointer at X, Y in panel pixels with buttons B"},
    {"event HANDLER ARG ...", "raises an event handler directly: event Timer1_Timer 1"},
    {"tick I", "one tick of Timer1(I)"},
    {"advance MS", "moves the clock on by MS milliseconds; answers the ticks raised"},
    {"snapshot FILE", "writes the panel as it stands to a PNG file"},
    {"field NAME[(I)][.MEMBER]", "a field of the component: field lADCVal(2)"},
    {"store", "lists the host's store; store KEY = VALUE, store clear"},
    {"store save FILE, store load FILE", "the store to a project file, or from one"},
    {"writeprops, readprops", "the component's save into the store, its load from it"},
    {"page open|get|put|click|apply", "the property page, as the host's property frame shows it"},
    {"run FILE [MS]", "runs a robot program (.kflow) on the clock: to its end, or stopped at MS"},
    {"var NAME", "a variable of the last program run"},
    {"expect COMMAND == VALUE", "checks a command's value; a failed check makes the exit status 1"},
    {"world load|reset|x|y|heading|in|unload", "the arena the robot drives in"},
    {"new", "a new object through the class factory"},
    {"help [NAME]", "this list, or the parameters of operation NAME"},
    {"quit", "ends the console"},
};

std::string parameter_list(const kestrone::MemberInfo& m, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
        const kestrone::ParamInfo& p = m.params[i];
        out += (i ? ", " : " ") + std::string(p.name) + " " + std::string(type_name(p.type)) +
               (p.by_ref ? " (by reference, reported after the call)" : "");
    }
    return out;
}

}  // namespace

void ConsoleSession::cmd_help(const CommandLine& c) {
    if (c.words.size() == 1) {
        for (const CommandHelp& h : kCommands)
            out_.notice(std::string(h.usage) +
                        std::string(h.usage.size() < 34 ? 34 - h.usage.size() : 1, ' ') +
                        std::string(h.what));
        return out_.ok();
    }
    if (c.words.size() != 2) return out_.fail("help takes at most one name: help NAME");
    const std::string& name = c.words[1];
    const auto call = host::ComponentSession::find_operation(name, false);
    const auto write = host::ComponentSession::find_operation(name, true);
    if (!call && !write) return out_.fail("the component has no operation " + name);
    if (call) {
        const kestrone::MemberInfo& m = *call->info;
        const bool returns = m.result != kestrone::VarType::Empty;
        out_.notice(name + parameter_list(m, m.param_count) +
                    (returns ? " -> " + std::string(type_name(m.result)) : ""));
    }
    if (write) {
        const kestrone::MemberInfo& m = *write->info;
        const std::size_t args = m.param_count - 1u;  // the written value is last
        out_.notice(name + parameter_list(m, args) + " = " + std::string(m.params[args].name) +
                    " " + std::string(type_name(m.params[args].type)));
    }
    out_.ok();
}

}  // namespace console
