#include "arena_document.h"

#include <charconv>

namespace world {

namespace {
constexpr std::string_view kBlanks = " \t\r\f\v";

std::vector<std::string> split_lines(std::string_view text) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (true) {
        const std::size_t end = text.find('\n', at);
        lines.emplace_back(text.substr(at, end == std::string_view::npos ? end : end - at));
        if (end == std::string_view::npos) return lines;
        at = end + 1;
    }
}

// The heading as the file writes it: the reader keeps it only in radians, brought into a turn.
double written_degrees(std::string_view line) {
    std::size_t at = line.find_first_not_of(kBlanks);  // at `robot`; x, y and the heading follow
    for (int word = 0; word < 3; ++word)
        at = line.find_first_not_of(kBlanks, line.find_first_of(kBlanks, at));
    if (line[at] == '+') ++at;
    double value = 0;
    std::from_chars(line.data() + at, line.data() + line.size(), value);
    return value;
}
}  // namespace

std::string_view first_word(std::string_view line) {
    line = line.substr(0, line.find('#'));
    const std::size_t at = line.find_first_not_of(kBlanks);
    if (at == std::string_view::npos) return {};
    const std::size_t end = line.find_first_of(kBlanks, at);
    return line.substr(at, end == std::string_view::npos ? end : end - at);
}

ArenaDocument ArenaDocument::blank(double width, double height) {
    ArenaDocument d;
    d.width_ = width;
    d.height_ = height;
    d.start_ = {{width / 2, height / 2}, 0};
    return d;
}

std::optional<ArenaDocument> ArenaDocument::read(std::string_view text, ArenaError* error) {
    ArenaReading r = read_arena(text);
    if (!r.arena) {
        if (error) *error = r.error;
        return std::nullopt;
    }
    const Arena& a = *r.arena;
    ArenaDocument d;
    d.width_ = a.width;
    d.height_ = a.height;
    d.lines_ = split_lines(text);
    // The reader keeps each kind in the file's order: the n-th of a kind is the n-th line of it.
    std::size_t line = 0, wall = 4, light = 0, zone = 0;
    for (int i = 0; i < static_cast<int>(d.lines_.size()); ++i) {
        const std::string_view word = first_word(d.lines_[i]);
        if (word == "size") d.size_source_ = i;
        if (word == "robot") {
            d.start_source_ = i;
            d.start_ = {a.start.centre, written_degrees(d.lines_[i])};
        }
        if (word == "line") d.items_.push_back({a.lines[line++], i});
        if (word == "wall") d.items_.push_back({a.walls[wall++], i});
        if (word == "light") d.items_.push_back({a.lights[light++], i});
        if (word == "zone") d.items_.push_back({a.zones[zone++], i});
    }
    return d;
}

void ArenaDocument::set_start(const Start& start) {
    start_ = start;
    start_changed_ = true;
}

std::size_t ArenaDocument::add(Shape shape) {
    items_.push_back({std::move(shape), -1, true});
    return items_.size() - 1;
}

void ArenaDocument::replace(std::size_t index, Shape shape) {
    items_.at(index).shape = std::move(shape);
    items_[index].changed = true;
}

void ArenaDocument::remove(std::size_t index) {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
}

Arena ArenaDocument::arena() const {
    Arena a;
    a.width = width_;
    a.height = height_;
    a.start = {start_.at, wrap_angle(radians(start_.degrees))};
    const double W = width_, H = height_;
    a.walls = {Segment{{0, 0}, {W, 0}}, Segment{{W, 0}, {W, H}}, Segment{{W, H}, {0, H}},
               Segment{{0, H}, {0, 0}}};
    for (const DocumentItem& item : items_) {
        if (const auto* l = std::get_if<Line>(&item.shape)) a.lines.push_back(*l);
        if (const auto* s = std::get_if<Segment>(&item.shape)) a.walls.push_back(*s);
        if (const auto* l = std::get_if<Light>(&item.shape)) a.lights.push_back(*l);
        if (const auto* z = std::get_if<Zone>(&item.shape)) a.zones.push_back(*z);
    }
    return a;
}

}  // namespace world
