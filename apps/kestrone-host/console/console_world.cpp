// The console's world: an arena loaded from a file, the robot's pose in it and its zones.
#include <map>

#include "console_session.h"
#include "value_syntax.h"

namespace console {

using kestrone::Variant;

void ConsoleSession::cmd_world(const CommandLine& c) {
    const auto& w = c.words;
    if (w.size() < 2 || c.equals)
        return out_.fail("world takes load FILE, reset, x, y, heading, in NAME or unload");
    const std::string& what = w[1];
    if (what == "load") {
        if (w.size() != 3) return out_.fail("world load takes a file: world load FILE");
        const auto path = word_text(w[2]);
        if (!path) return out_.fail("not a file name: " + w[2]);
        std::string error;
        if (!world_driver_.load_file(*path, &error)) return out_.fail(error);
        return out_.ok();
    }
    if (what == "in") return world_in(c);
    if (what == "x" || what == "y" || what == "heading") return world_pose(c);
    if (what != "reset" && what != "unload") return out_.fail("world has no command " + what);
    if (w.size() != 2) return out_.fail("world " + what + " takes nothing more");
    if (!world_.loaded()) return out_.fail("no world is loaded");
    if (what == "reset")
        world_driver_.reset();
    else
        world_.unload();
    out_.ok();
}

void ConsoleSession::world_pose(const CommandLine& c) {
    if (c.words.size() != 2) return out_.fail("world " + c.words[1] + " takes nothing more");
    if (!world_.loaded()) return out_.fail("no world is loaded");
    const world::WholePose p = world::whole_pose(world_.pose());
    const std::map<std::string, std::int32_t> parts{{"x", p.x}, {"y", p.y}, {"heading", p.heading}};
    out_.ok(format_value(Variant::long_(parts.at(c.words[1]))));
}

void ConsoleSession::world_in(const CommandLine& c) {
    if (c.words.size() != 3) return out_.fail("world in takes a zone's name: world in NAME");
    if (!world_.loaded()) return out_.fail("no world is loaded");
    const auto name = word_text(c.words[2]);
    const world::Zone* zone = name ? world_.arena().zone(*name) : nullptr;
    if (!zone) return out_.fail("the world has no zone " + c.words[2]);
    out_.ok(format_value(Variant::boolean(zone->contains(world_.pose().centre))));
}

}  // namespace console
