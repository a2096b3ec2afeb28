// The console's panel commands: element properties, the user's clicks, arrows and pointer, events
// raised by name, and the timers on the console's clock.
#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <optional>

#include "console_session.h"
#include "value_syntax.h"

namespace console {

using kestrone::HRESULT;
using kestrone::Variant;

namespace {

// ELEMENT or ELEMENT(I), then .PROPERTY when `with_property`.
struct ElementPath {
    std::string element;
    std::optional<std::int32_t> index;
    std::string property;
};

std::optional<ElementPath> parse_element_path(std::string_view text, bool with_property) {
    const auto path = parse_name_path(text);
    if (!path || path->member.empty() == with_property) return std::nullopt;
    return ElementPath{path->name, index_of(*path), path->member};
}

std::string element_text(const ElementPath& p) {
    return p.index ? p.element + "(" + std::to_string(*p.index) + ")" : p.element;
}

std::optional<std::int32_t> whole_number(std::string_view text) {
    const auto d = number_of(text);
    if (!d || *d != std::floor(*d) || *d < INT32_MIN || *d > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(*d);
}

// A pointer coordinate: as far out as a float reaches.
float coordinate(double d) {
    return static_cast<float>(
        std::clamp(d, -static_cast<double>(FLT_MAX), static_cast<double>(FLT_MAX)));
}

}  // namespace

// A number as written in the console: any numeric kind.
std::optional<double> number_of(std::string_view text) {
    const auto v = parse_value(text);
    if (!v || v->is_array()) return std::nullopt;
    switch (v->type()) {
        case kestrone::VarType::Integer:
            return v->as_integer();
        case kestrone::VarType::Long:
            return v->as_long();
        case kestrone::VarType::Single:
            return v->as_single();
        case kestrone::VarType::Double:
            return v->as_double();
        case kestrone::VarType::Byte:
            return v->as_byte();
        default:
            return std::nullopt;
    }
}

bool ConsoleSession::have_panel() {
    if (!have_object()) return false;
    if (!session_.offers(host::Facet::Panel)) {
        out_.fail("the component offers no panel");
        return false;
    }
    return true;
}

void ConsoleSession::answer_element_status(HRESULT hr, const std::string& what) {
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the panel has no " + what);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

void ConsoleSession::cmd_get(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("get takes ELEMENT.PROPERTY");
    const auto path = parse_element_path(c.words[1], true);
    if (!path) return out_.fail("not an element's property: " + c.words[1]);
    if (!have_panel()) return;
    Variant value;
    const HRESULT hr =
        session_.element_property(path->element, path->index, path->property, &value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the panel has no " + c.words[1]);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok(format_value(value));
}

void ConsoleSession::cmd_put(const CommandLine& c) {
    if (c.words.size() != 4 || c.equals != std::size_t{2})
        return out_.fail("put takes ELEMENT.PROPERTY = VALUE");
    const auto path = parse_element_path(c.words[1], true);
    if (!path) return out_.fail("not an element's property: " + c.words[1]);
    std::string error;
    const auto value = parse_value(c.words[3], &error);
    if (!value) return out_.fail(unreadable(c.words[3], error));
    if (!have_panel()) return;
    const HRESULT hr =
        session_.put_element_property(path->element, path->index, path->property, *value);
    answer_element_status(hr, c.words[1]);
}

bool ConsoleSession::find_element(const std::string& text, std::int32_t* id) {
    const auto path = parse_element_path(text, false);
    if (!path) {
        out_.fail("not an element: " + text);
        return false;
    }
    if (!have_panel()) return false;
    const HRESULT hr = session_.find_element(path->element, path->index, id);
    if (kestrone::failed(hr)) {
        answer_element_status(hr, "element " + element_text(*path));
        return false;
    }
    return true;
}

void ConsoleSession::cmd_click(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("click takes ELEMENT");
    std::int32_t id = -1;
    if (!find_element(c.words[1], &id)) return;
    answer_element_status(session_.click(id), c.words[1]);
}

void ConsoleSession::cmd_arrow(const CommandLine& c) {
    if (c.words.size() != 3 || c.equals || (c.words[2] != "up" && c.words[2] != "down"))
        return out_.fail("arrow takes ELEMENT up or ELEMENT down");
    std::int32_t id = -1;
    if (!find_element(c.words[1], &id)) return;
    answer_element_status(session_.arrow(id, c.words[2] == "up"), c.words[1]);
}

void ConsoleSession::cmd_mouse(const CommandLine& c) {
    using kestrone::PointerAction;
    if (c.words.size() != 5 || c.equals) return out_.fail("mouse takes down|move|up B X Y");
    std::optional<PointerAction> action;
    if (c.words[1] == "down") action = PointerAction::Down;
    if (c.words[1] == "move") action = PointerAction::Move;
    if (c.words[1] == "up") action = PointerAction::Up;
    if (!action) return out_.fail("mouse takes down, move or up, not " + c.words[1]);
    const auto buttons = whole_number(c.words[2]);
    const auto x = number_of(c.words[3]), y = number_of(c.words[4]);
    if (!buttons) return out_.fail("not a button number: " + c.words[2]);
    if (!x || !y) return out_.fail("mouse takes X and Y as numbers");
    if (!have_panel()) return;
    answer_element_status(session_.pointer(*action, *buttons, 0, coordinate(*x), coordinate(*y)),
                          "such element");
}

void ConsoleSession::cmd_event(const CommandLine& c) {
    if (c.words.size() < 2 || c.equals) return out_.fail("event takes HANDLER ARG ...");
    std::vector<Variant> args;
    for (std::size_t i = 2; i < c.words.size(); ++i) {
        std::string error;
        auto v = parse_value(c.words[i], &error);
        if (!v) return out_.fail(unreadable(c.words[i], error));
        args.push_back(std::move(*v));
    }
    if (!have_panel()) return;
    const HRESULT hr = session_.raise_event(c.words[1], args);
    if (hr == kestrone::DISP_E_UNKNOWNNAME)
        return out_.fail("the panel has no event handler " + c.words[1]);
    if (hr == kestrone::DISP_E_BADPARAMCOUNT)
        return out_.fail(c.words[1] + " does not take " + std::to_string(args.size()) +
                         " argument(s)");
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

void ConsoleSession::cmd_tick(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("tick takes the timer's index");
    const auto index = whole_number(c.words[1]);
    if (!index) return out_.fail("not a timer index: " + c.words[1]);
    if (!have_panel()) return;
    const HRESULT hr = session_.tick(*index);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

void ConsoleSession::cmd_advance(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("advance takes MS");
    const auto ms = number_of(c.words[1]);
    if (!ms || *ms != std::floor(*ms) || *ms < 0 || *ms > 9.2e18)
        return out_.fail("advance takes a whole number of milliseconds, 0 or more");
    if (!have_panel()) return;
    std::int64_t ticks = 0;
    const std::int64_t from = session_.now();
    const HRESULT hr = session_.advance(static_cast<std::int64_t>(*ms), &ticks);
    if (hr == host::kInterrupted)
        return out_.fail("interrupted after " + std::to_string(session_.now() - from) + " of " +
                         std::to_string(static_cast<std::int64_t>(*ms)) + " ms, " +
                         std::to_string(ticks) + " ticks raised");
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok(format_value(tick_count(ticks)));
}

// A 32-bit integer, as the protocol has it; a count beyond (two timers at 1 ms for 25 days of
// the clock) as a 64-bit float, exact to 2^53, rather than a wrong or capped number.
Variant tick_count(std::int64_t ticks) {
    if (ticks <= INT32_MAX) return Variant::long_(static_cast<std::int32_t>(ticks));
    return Variant::double_(static_cast<double>(ticks));
}

void ConsoleSession::cmd_snapshot(const CommandLine& c) {
    if (c.words.size() != 2 || c.equals) return out_.fail("snapshot takes a file: snapshot FILE");
    const auto path = word_text(c.words[1]);
    if (!path) return out_.fail("not a file name: " + c.words[1]);
    if (!snapshot_) return out_.fail("no view built");
    if (!have_panel()) return;
    const std::string why = snapshot_(*session_.panel(), *path);
    if (!why.empty()) return out_.fail(why);
    out_.ok();
}

}  // namespace console
