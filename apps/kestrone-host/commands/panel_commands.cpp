#include "panel_commands.h"

#include <cfloat>
#include <charconv>
#include <cmath>

#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::HRESULT;
using kestrone::Variant;

namespace {

Reply element_status(HRESULT hr, const std::string& what) {
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return Reply::fail("the panel has no " + what);
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok();
}

// The element's id, or the reply that says why there is none.
std::variant<std::int32_t, Reply> element_id(Context& context, const ElementRef& e) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    std::int32_t id = -1;
    const HRESULT hr = context.stage.session().find_element(e.name, e.index, &id);
    if (kestrone::failed(hr)) return element_status(hr, "element " + e.text());
    return id;
}

// A pointer coordinate: as far out as a float reaches.
float coordinate(double d) {
    return static_cast<float>(
        std::clamp(d, -static_cast<double>(FLT_MAX), static_cast<double>(FLT_MAX)));
}

constexpr const char* kPointerVerbs[] = {"down", "move", "up"};

}  // namespace

std::string coordinate_text(float value) {
    char buffer[32];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    // The shortest text that reads back to the same float: the console reads it as a double,
    // which narrows to this float again.
    return std::string(buffer, r.ptr);
}

Variant tick_count(std::int64_t ticks) {
    // A 32-bit integer, as the protocol has it; a count beyond (two timers at 1 ms for 25 days
    // of the clock) as a 64-bit float, exact to 2^53, rather than a wrong or capped number.
    if (ticks <= INT32_MAX) return Variant::long_(static_cast<std::int32_t>(ticks));
    return Variant::double_(static_cast<double>(ticks));
}

// ---- get, put

std::string format(const GetProperty& c) {
    return "get " + c.element.text() + "." + c.property;
}

Reply execute(const GetProperty& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    Variant value;
    const HRESULT hr = context.stage.session().element_property(c.element.name, c.element.index,
                                                                c.property, &value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME)
        return Reply::fail("the panel has no " + c.element.text() + "." + c.property);
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok(console::format_value(value));
}

Parsed parse_get(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("get takes ELEMENT.PROPERTY");
    std::string property;
    const auto e = parse_element(line.words[1], true, &property);
    if (!e) return refused("not an element's property: " + line.words[1]);
    return parsed(GetProperty{*e, property});
}

std::string format(const PutProperty& c) {
    return "put " + c.element.text() + "." + c.property + " = " + console::format_value(c.value);
}

Reply execute(const PutProperty& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    return element_status(context.stage.session().put_element_property(
                              c.element.name, c.element.index, c.property, c.value),
                          c.element.text() + "." + c.property);
}

Parsed parse_put(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() != 4 || line.equals != std::size_t{2})
        return refused("put takes ELEMENT.PROPERTY = VALUE");
    std::string property, error;
    const auto e = parse_element(w[1], true, &property);
    if (!e) return refused("not an element's property: " + w[1]);
    auto value = console::parse_value(w[3], &error);
    if (!value) return refused(console::unreadable(w[3], error));
    return parsed(PutProperty{*e, property, std::move(*value)});
}

// ---- click, arrow, mouse

std::string format(const Click& c) {
    return "click " + c.element.text();
}

Reply execute(const Click& c, Context& context) {
    const auto id = element_id(context, c.element);
    if (const Reply* no = std::get_if<Reply>(&id)) return *no;
    return element_status(context.stage.session().click(std::get<std::int32_t>(id)),
                          c.element.text());
}

Parsed parse_click(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("click takes ELEMENT");
    const auto e = parse_element(line.words[1], false);
    if (!e) return refused("not an element: " + line.words[1]);
    return parsed(Click{*e});
}

std::string format(const Arrow& c) {
    return "arrow " + c.element.text() + (c.up ? " up" : " down");
}

Reply execute(const Arrow& c, Context& context) {
    const auto id = element_id(context, c.element);
    if (const Reply* no = std::get_if<Reply>(&id)) return *no;
    return element_status(context.stage.session().arrow(std::get<std::int32_t>(id), c.up),
                          c.element.text());
}

Parsed parse_arrow(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() != 3 || line.equals || (w[2] != "up" && w[2] != "down"))
        return refused("arrow takes ELEMENT up or ELEMENT down");
    const auto e = parse_element(w[1], false);
    if (!e) return refused("not an element: " + w[1]);
    return parsed(Arrow{*e, w[2] == "up"});
}

std::string format(const Mouse& c) {
    return std::string("mouse ") + kPointerVerbs[static_cast<int>(c.action)] + " " +
           std::to_string(c.buttons) + " " + coordinate_text(c.x) + " " + coordinate_text(c.y) +
           (c.shift ? " " + std::to_string(c.shift) : "");
}

Reply execute(const Mouse& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    return element_status(context.stage.session().pointer(c.action, c.buttons, c.shift, c.x, c.y),
                          "such element");
}

Parsed parse_mouse(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() < 5 || w.size() > 6 || line.equals)
        return refused("mouse takes down|move|up B X Y");
    int verb = 0;
    while (verb < 3 && w[1] != kPointerVerbs[verb])
        ++verb;
    if (verb == 3) return refused("mouse takes down, move or up, not " + w[1]);
    const auto buttons = whole_number(w[2]);
    const auto x = number_of(w[3]), y = number_of(w[4]);
    if (!buttons) return refused("not a button number: " + w[2]);
    if (!x || !y || !std::isfinite(*x) || !std::isfinite(*y))
        return refused("mouse takes X and Y as numbers");
    const auto shift = w.size() == 6 ? whole_number(w[5]) : std::optional<std::int32_t>(0);
    if (!shift || *shift < 0 || *shift > 7) return refused("not keys held (0 to 7): " + w[5]);
    return parsed(Mouse{static_cast<kestrone::PointerAction>(verb), *buttons, coordinate(*x),
                        coordinate(*y), *shift});
}

// ---- event, tick

std::string format(const RaiseEvent& c) {
    std::string line = "event " + c.handler;
    for (const Variant& v : c.args)
        line += " " + console::format_value(v);
    return line;
}

Reply execute(const RaiseEvent& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    std::vector<Variant> args = c.args;
    const HRESULT hr = context.stage.session().raise_event(c.handler, args);
    if (hr == kestrone::DISP_E_UNKNOWNNAME)
        return Reply::fail("the panel has no event handler " + c.handler);
    if (hr == kestrone::DISP_E_BADPARAMCOUNT)
        return Reply::fail(c.handler + " does not take " + std::to_string(args.size()) +
                           " argument(s)");
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok();
}

Parsed parse_event(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() < 2 || line.equals) return refused("event takes HANDLER ARG ...");
    RaiseEvent c{w[1], {}};
    for (std::size_t i = 2; i < w.size(); ++i) {
        std::string error;
        auto v = console::parse_value(w[i], &error);
        if (!v) return refused(console::unreadable(w[i], error));
        c.args.push_back(std::move(*v));
    }
    return parsed(std::move(c));
}

std::string format(const Tick& c) {
    return "tick " + std::to_string(c.timer);
}

Reply execute(const Tick& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    const HRESULT hr = context.stage.session().tick(c.timer);
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok();
}

Parsed parse_tick(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("tick takes the timer's index");
    const auto index = whole_number(line.words[1]);
    if (!index) return refused("not a timer index: " + line.words[1]);
    return parsed(Tick{*index});
}

// ---- advance, snapshot

std::string format(const Advance& c) {
    return "advance " + std::to_string(c.ms);
}

Reply execute(const Advance& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    stage::Stage& stage = context.stage;
    std::int64_t ticks = 0;
    const std::int64_t from = stage.now();
    const HRESULT hr = stage.advance(c.ms, &ticks);
    if (hr == stage::kInterrupted)
        return Reply::fail("interrupted after " + std::to_string(stage.now() - from) + " of " +
                           std::to_string(c.ms) + " ms, " + std::to_string(ticks) +
                           " ticks raised");
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok(console::format_value(tick_count(ticks)));
}

Parsed parse_advance(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals) return refused("advance takes MS");
    const auto ms = number_of(line.words[1]);
    if (!ms || *ms != std::floor(*ms) || *ms < 0 || *ms > 9.2e18)
        return refused("advance takes a whole number of milliseconds, 0 or more");
    return parsed(Advance{static_cast<std::int64_t>(*ms)});
}

std::string format(const Snapshot& c) {
    return "snapshot " + path_for(c.path);
}

Reply execute(const Snapshot& c, Context& context) {
    if (!context.snapshot) return Reply::fail("no view built");
    if (auto no = lacks(context, host::Facet::Panel)) return *no;
    const std::string why =
        context.snapshot(*context.stage.session().panel(), context.file(c.path));
    if (!why.empty()) return Reply::fail(why);
    return Reply::ok();
}

Parsed parse_snapshot(const CommandLine& line) {
    if (line.words.size() != 2 || line.equals)
        return refused("snapshot takes a file: snapshot FILE");
    const auto path = console::word_text(line.words[1]);
    if (!path) return refused("not a file name: " + line.words[1]);
    return parsed(Snapshot{*path});
}

}  // namespace commands
