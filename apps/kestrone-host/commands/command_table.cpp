// The table of commands, the reading of a line against it, and `help`, which lists it.
#include <array>

#include "debug_commands.h"
#include "error_text.h"
#include "log_commands.h"
#include "object_commands.h"
#include "panel_commands.h"
#include "program_commands.h"
#include "store_commands.h"
#include "value_syntax.h"
#include "world_commands.h"

namespace commands {

using console::CommandLine;

namespace {

// In the order `help` lists them; an operation of the component is what no word here names.
constexpr std::array kTable{
    CommandEntry{"get", "get ELEMENT.PROPERTY",
                 "a property of a panel element: get WheelLine(5).Top", &parse_get},
    CommandEntry{"put", "put ELEMENT.PROPERTY = VALUE",
                 "writes a panel element's property as a program would", &parse_put},
    CommandEntry{"click", "click ELEMENT", "a user's click on a check box", &parse_click},
    CommandEntry{"arrow", "arrow ELEMENT up|down",
                 "a user's click on an arrow of a sensor's UpDown", &parse_arrow},
    CommandEntry{"mouse", "mouse down|move|up B X Y",
                 "the pointer at X, Y in panel pixels with buttons B", &parse_mouse},
    CommandEntry{"event", "event HANDLER ARG ...",
                 "raises an event handler directly: event Timer1_Timer 1", &parse_event},
    CommandEntry{"tick", "tick I", "one tick of Timer1(I)", &parse_tick},
    CommandEntry{"advance", "advance MS",
                 "moves the clock on by MS milliseconds; answers the ticks", &parse_advance},
    CommandEntry{"snapshot", "snapshot FILE", "writes the panel as it stands to a PNG file",
                 &parse_snapshot},
    CommandEntry{"field", "field NAME[(I)][.MEMBER]", "a field of the component: field lADCVal(2)",
                 &parse_field},
    CommandEntry{"store", "store [KEY = VALUE | clear | save FILE | load FILE]",
                 "the host's store: its entries, one set, emptied, or to and from a project file "
                 "(store save FILE, store load FILE)",
                 &parse_store},
    CommandEntry{"writeprops", "writeprops", "the component's save into the store",
                 &parse_writeprops},
    CommandEntry{"readprops", "readprops", "the component's load from the store", &parse_readprops},
    CommandEntry{"page", "page open|get|put|click|apply",
                 "the property page, as the host's property frame shows it", &parse_page},
    CommandEntry{"run", "run FILE [MS]",
                 "runs a robot program (.kflow) on the clock: to its end, or stopped at MS",
                 &parse_run},
    CommandEntry{"var", "var NAME", "a variable of the last program run", &parse_var},
    CommandEntry{"expect", "expect COMMAND == VALUE",
                 "checks a command's value; a failed check makes the exit status 1", &parse_expect},
    CommandEntry{"debug", "debug FILE", "a program stopped before its first statement, to debug",
                 &parse_debug},
    CommandEntry{"break", "break LINE, break clear [LINE]",
                 "a breakpoint on the statement at LINE (or the next), or none", &parse_break},
    CommandEntry{"step", "step", "the debugged program to the next statement that starts",
                 &parse_step},
    CommandEntry{"continue", "continue [MS]",
                 "the debugged program on, to a breakpoint, its end, or for MS ms",
                 &parse_continue},
    CommandEntry{"where", "where", "the line the debugged program stands at", &parse_where},
    CommandEntry{"vars", "vars", "every variable of the program, as var writes it", &parse_vars},
    CommandEntry{"undebug", "undebug", "the debugged program stopped, and the simulation",
                 &parse_undebug},
    CommandEntry{"world", "world load|reset|x|y|heading|in|unload", "the arena the robot drives in",
                 &parse_world},
    CommandEntry{"log", "log start FILE, log stop",
                 "a log of the signals into a CSV or VCD file, written when stopped", &parse_log},
    CommandEntry{"new", "new", "a new object through the class factory", &parse_new},
    CommandEntry{"help", "help [NAME]", "this list, or the parameters of operation NAME",
                 &parse_help},
    CommandEntry{"quit", "quit", "ends the console", &parse_quit},
};

}  // namespace

std::span<const CommandEntry> command_table() {
    return kTable;
}

Parsed parse_command(std::string_view text) {
    std::string error;
    const auto line = console::split_command(text, &error);
    if (!line) return refused(error);
    for (const CommandEntry& entry : kTable)
        if (entry.word == line->words.front()) return entry.parse(*line);
    return parse_operation(*line);
}

Reply Reply::error(kestrone::HRESULT status) {
    const int number = kestrone::basic_error_number(status);
    if (number == 0)
        return fail("the component answered with status " + console::status_text(status));
    Reply r{Kind::Error, std::to_string(number) + " " + console::error_text(number)};
    r.status = status;
    return r;
}

std::string Reply::line() const {
    switch (kind) {
        case Kind::Ok:
            return text.empty() ? "ok" : "ok " + text;
        case Kind::Error:
            return "error " + text;
        case Kind::Fail:
            break;
    }
    return "fail " + console::escape_text(text);
}

}  // namespace commands
