#include "world_commands.h"

#include "command_support.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::Variant;

namespace {
std::optional<Reply> lacks_world(Context& context) {
    if (context.stage.world().loaded()) return std::nullopt;
    return Reply::fail("no world is loaded");
}
}  // namespace

std::string format(const WorldLoad& c) {
    return "world load " + path_for(c.path);
}

Reply execute(const WorldLoad& c, Context& context) {
    std::string error;
    if (!context.stage.world_driver().load_file(context.file(c.path), &error))
        return Reply::fail(error);
    return Reply::ok();
}

std::string format(const WorldReset&) {
    return "world reset";
}

Reply execute(const WorldReset&, Context& context) {
    if (auto no = lacks_world(context)) return *no;
    context.stage.world_driver().reset();
    return Reply::ok();
}

std::string format(const WorldUnload&) {
    return "world unload";
}

Reply execute(const WorldUnload&, Context& context) {
    if (auto no = lacks_world(context)) return *no;
    context.stage.world().unload();
    return Reply::ok();
}

std::string format(const WorldPose& c) {
    return "world " + c.part;
}

Reply execute(const WorldPose& c, Context& context) {
    if (auto no = lacks_world(context)) return *no;
    const world::WholePose p = world::whole_pose(context.stage.world().pose());
    const std::int32_t value = c.part == "x" ? p.x : c.part == "y" ? p.y : p.heading;
    return Reply::ok(console::format_value(Variant::long_(value)));
}

std::string format(const WorldIn& c) {
    return "world in " + word_for(c.zone);
}

Reply execute(const WorldIn& c, Context& context) {
    if (auto no = lacks_world(context)) return *no;
    const world::World& w = context.stage.world();
    const world::Zone* zone = w.arena().zone(c.zone);
    if (!zone) return Reply::fail("the world has no zone " + word_for(c.zone));
    return Reply::ok(console::format_value(Variant::boolean(zone->contains(w.pose().centre))));
}

Parsed parse_world(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() < 2 || line.equals)
        return refused("world takes load FILE, reset, x, y, heading, in NAME or unload");
    const std::string& what = w[1];
    if (what == "load") {
        if (w.size() != 3) return refused("world load takes a file: world load FILE");
        const auto path = console::word_text(w[2]);
        if (!path) return refused("not a file name: " + w[2]);
        return parsed(WorldLoad{*path});
    }
    if (what == "in") {
        if (w.size() != 3) return refused("world in takes a zone's name: world in NAME");
        const auto name = console::word_text(w[2]);
        if (!name) return refused("the world has no zone " + w[2]);
        return parsed(WorldIn{*name});
    }
    if (what != "reset" && what != "unload" && what != "x" && what != "y" && what != "heading")
        return refused("world has no command " + what);
    if (w.size() != 2) return refused("world " + what + " takes nothing more");
    if (what == "reset") return parsed(WorldReset{});
    if (what == "unload") return parsed(WorldUnload{});
    return parsed(WorldPose{what});
}

}  // namespace commands
