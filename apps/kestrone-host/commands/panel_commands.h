// The panel's commands: element properties, the user's clicks, arrows and pointer, events raised
// by name, the timers, the clock, and the panel's picture.
#pragma once

#include <string>
#include <vector>

#include "command.h"
#include "command_support.h"
#include "kestrone/variant.h"

namespace commands {

struct GetProperty {  // get ELEMENT.PROPERTY
    ElementRef element;
    std::string property;
    bool operator==(const GetProperty&) const = default;
};
struct PutProperty {  // put ELEMENT.PROPERTY = VALUE
    ElementRef element;
    std::string property;
    kestrone::Variant value;
    bool operator==(const PutProperty&) const = default;
};
struct Click {  // click ELEMENT
    ElementRef element;
    bool operator==(const Click&) const = default;
};
struct Arrow {  // arrow ELEMENT up|down
    ElementRef element;
    bool up = true;
    bool operator==(const Arrow&) const = default;
};
struct Mouse {  // mouse down|move|up B X Y [SHIFT]
    kestrone::PointerAction action = kestrone::PointerAction::Move;
    std::int32_t buttons = 0;
    float x = 0, y = 0;
    std::int32_t shift = 0;  // the keys held: 1 Shift, 2 Ctrl, 4 Alt; written only when held
    bool operator==(const Mouse&) const = default;
};
struct RaiseEvent {  // event HANDLER ARG ...
    std::string handler;
    std::vector<kestrone::Variant> args;
    bool operator==(const RaiseEvent&) const = default;
};
struct Tick {  // tick I
    std::int32_t timer = 0;
    bool operator==(const Tick&) const = default;
};
struct Advance {  // advance MS
    std::int64_t ms = 0;
    bool operator==(const Advance&) const = default;
};
struct Snapshot {  // snapshot FILE
    std::string path;
    bool operator==(const Snapshot&) const = default;
};

std::string format(const GetProperty& c);
std::string format(const PutProperty& c);
std::string format(const Click& c);
std::string format(const Arrow& c);
std::string format(const Mouse& c);
std::string format(const RaiseEvent& c);
std::string format(const Tick& c);
std::string format(const Advance& c);
std::string format(const Snapshot& c);

Reply execute(const GetProperty& c, Context& context);
Reply execute(const PutProperty& c, Context& context);
Reply execute(const Click& c, Context& context);
Reply execute(const Arrow& c, Context& context);
Reply execute(const Mouse& c, Context& context);
Reply execute(const RaiseEvent& c, Context& context);
Reply execute(const Tick& c, Context& context);
Reply execute(const Advance& c, Context& context);
Reply execute(const Snapshot& c, Context& context);

Parsed parse_get(const console::CommandLine& line);
Parsed parse_put(const console::CommandLine& line);
Parsed parse_click(const console::CommandLine& line);
Parsed parse_arrow(const console::CommandLine& line);
Parsed parse_mouse(const console::CommandLine& line);
Parsed parse_event(const console::CommandLine& line);
Parsed parse_tick(const console::CommandLine& line);
Parsed parse_advance(const console::CommandLine& line);
Parsed parse_snapshot(const console::CommandLine& line);

// The answer of `advance`: its count of ticks, without loss.
kestrone::Variant tick_count(std::int64_t ticks);
// A pointer coordinate as the console reads it back to the same float.
std::string coordinate_text(float value);

}  // namespace commands
