// The debugger's commands: a program checked, loaded and stopped before its first statement,
// breakpoints, a step, going on, where it stands, its variables, and the end of it. The same
// debugger as the window's, on the console's clock.
#pragma once

#include <optional>
#include <string>

#include "command.h"

namespace commands {

struct Debug {  // debug FILE
    std::string path;
    bool operator==(const Debug&) const = default;
};
// break LINE, break clear LINE, break clear (no line)
struct Break {
    bool clear = false;
    std::optional<int> line;
    bool operator==(const Break&) const = default;
};
struct Step {  // step
    bool operator==(const Step&) const = default;
};
struct Continue {  // continue [MS]
    std::optional<std::int64_t> ms;
    bool operator==(const Continue&) const = default;
};
struct Where {  // where
    bool operator==(const Where&) const = default;
};
struct Vars {  // vars
    bool operator==(const Vars&) const = default;
};
struct Undebug {  // undebug
    bool operator==(const Undebug&) const = default;
};

std::string format(const Debug& c);
std::string format(const Break& c);
std::string format(const Step& c);
std::string format(const Continue& c);
std::string format(const Where& c);
std::string format(const Vars& c);
std::string format(const Undebug& c);

Reply execute(const Debug& c, Context& context);
Reply execute(const Break& c, Context& context);
Reply execute(const Step& c, Context& context);
Reply execute(const Continue& c, Context& context);
Reply execute(const Where& c, Context& context);
Reply execute(const Vars& c, Context& context);
Reply execute(const Undebug& c, Context& context);

Parsed parse_debug(const console::CommandLine& line);
Parsed parse_break(const console::CommandLine& line);
Parsed parse_step(const console::CommandLine& line);
Parsed parse_continue(const console::CommandLine& line);
Parsed parse_where(const console::CommandLine& line);
Parsed parse_vars(const console::CommandLine& line);
Parsed parse_undebug(const console::CommandLine& line);

}  // namespace commands
