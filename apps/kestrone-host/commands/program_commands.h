// The commands of programs and checks: a robot program run to its end on the stage's clock, its
// variables, and `expect`, which makes a script of actions a test.
#pragma once

#include <optional>
#include <string>

#include "command.h"
#include "kestrone/variant.h"

namespace commands {

struct Run {  // run FILE [MS]
    std::string path;
    std::optional<std::int64_t> stop_at;  // MS: stopped once so much time has passed
    bool operator==(const Run&) const = default;
};
struct Var {  // var NAME
    std::string name;
    bool operator==(const Var&) const = default;
};
// expect COMMAND == VALUE. Held by pointer, so compared by the commands' own fields; the value
// is kept as written too, for the answer.
struct Expect {
    std::shared_ptr<const Command> command;
    kestrone::Variant expected;
    std::string written;
    bool operator==(const Expect& o) const {
        return command->equals(*o.command) && expected == o.expected && written == o.written;
    }
};

std::string format(const Run& c);
std::string format(const Var& c);
std::string format(const Expect& c);

Reply execute(const Run& c, Context& context);
Reply execute(const Var& c, Context& context);
Reply execute(const Expect& c, Context& context);

Parsed parse_run(const console::CommandLine& line);
Parsed parse_var(const console::CommandLine& line);
Parsed parse_expect(const console::CommandLine& line);

}  // namespace commands
