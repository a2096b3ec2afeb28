// The world's commands: an arena loaded from a file, the robot's pose in it and its zones.
#pragma once

#include <string>

#include "command.h"

namespace commands {

struct WorldLoad {  // world load FILE
    std::string path;
    bool operator==(const WorldLoad&) const = default;
};
struct WorldReset {  // world reset
    bool operator==(const WorldReset&) const = default;
};
struct WorldUnload {  // world unload
    bool operator==(const WorldUnload&) const = default;
};
struct WorldPose {  // world x, world y, world heading
    std::string part;
    bool operator==(const WorldPose&) const = default;
};
struct WorldIn {  // world in NAME
    std::string zone;
    bool operator==(const WorldIn&) const = default;
};

std::string format(const WorldLoad& c);
std::string format(const WorldReset& c);
std::string format(const WorldUnload& c);
std::string format(const WorldPose& c);
std::string format(const WorldIn& c);

Reply execute(const WorldLoad& c, Context& context);
Reply execute(const WorldReset& c, Context& context);
Reply execute(const WorldUnload& c, Context& context);
Reply execute(const WorldPose& c, Context& context);
Reply execute(const WorldIn& c, Context& context);

Parsed parse_world(const console::CommandLine& line);

}  // namespace commands
