// The log of the signals: started into a file, and written when stopped.
#pragma once

#include <string>

#include "command.h"

namespace commands {

struct LogStart {  // log start FILE
    std::string path;
    bool operator==(const LogStart&) const = default;
};
struct LogStop {  // log stop
    bool operator==(const LogStop&) const = default;
};

std::string format(const LogStart& c);
std::string format(const LogStop& c);

Reply execute(const LogStart& c, Context& context);
Reply execute(const LogStop& c, Context& context);

Parsed parse_log(const console::CommandLine& line);

}  // namespace commands
