// The object's commands: a new object, its fields, its operations by name, help, and the end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command.h"
#include "kestrone/variant.h"

namespace commands {

struct NewObject {  // new
    bool operator==(const NewObject&) const = default;
};
struct Quit {  // quit
    bool operator==(const Quit&) const = default;
};
struct Field {  // field NAME, NAME(I), NAME(I).MEMBER
    std::string name;
    std::optional<std::int32_t> index;
    std::string member;
    bool operator==(const Field&) const = default;
};
// NAME ARG ... calls an operation of the component; NAME ARG ... = VALUE writes a property (the
// value last among `args`).
struct Operation {
    std::string name;
    bool write = false;
    std::vector<kestrone::Variant> args;
    bool operator==(const Operation&) const = default;
};
struct Help {  // help [NAME]
    std::string name;
    bool operator==(const Help&) const = default;
};

std::string format(const NewObject& c);
std::string format(const Quit& c);
std::string format(const Field& c);
std::string format(const Operation& c);
std::string format(const Help& c);

Reply execute(const NewObject& c, Context& context);
Reply execute(const Quit& c, Context& context);
Reply execute(const Field& c, Context& context);
Reply execute(const Operation& c, Context& context);
Reply execute(const Help& c, Context& context);

Parsed parse_new(const console::CommandLine& line);
Parsed parse_quit(const console::CommandLine& line);
Parsed parse_field(const console::CommandLine& line);
Parsed parse_operation(const console::CommandLine& line);
Parsed parse_help(const console::CommandLine& line);

// The object made anew through the class factory: `ok`, or why not. Its creation's messages go
// to the services.
Reply make_object(Context& context);

}  // namespace commands
