// The `.world` reader: one item a line, `#` to the end of a line a comment. `size` and `robot`
// come first, once each; lines, walls, lights and zones follow in any number. The first fault
// ends the reading and nothing of the file is kept.
#include <charconv>
#include <cmath>
#include <map>
#include <stdexcept>

#include "arena.h"
#include "motion.h"

namespace world {

const Zone* Arena::zone(std::string_view name) const {
    for (const Zone& z : zones)
        if (z.name == name) return &z;
    return nullptr;
}

namespace {

// A fault at the line being read; caught once, at the top of the reading.
struct Fault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A kilometre and more would be no classroom's floor; the bound keeps every pose a 32-bit number.
constexpr double kLargestFloor = 100000;

std::vector<std::string_view> words_of(std::string_view line) {
    if (const auto hash = line.find('#'); hash != std::string_view::npos)
        line = line.substr(0, hash);
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (true) {
        at = line.find_first_not_of(" \t\r\f\v", at);
        if (at == std::string_view::npos) break;
        const std::size_t end = std::min(line.find_first_of(" \t\r\f\v", at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

// A word of the file as a message repeats it: a long one only by its start.
std::string shown(std::string_view word) {
    constexpr std::size_t kShown = 40;
    if (word.size() <= kShown) return std::string(word);
    std::size_t cut = kShown;
    while (cut > 0 && (static_cast<unsigned char>(word[cut]) & 0xC0) == 0x80)
        --cut;  // not inside a character of several bytes
    return std::string(word.substr(0, cut)) + "...";
}

double number(std::string_view word, std::string_view what) {
    double value = 0;
    const char* first = word.data();
    if (!word.empty() && word.front() == '+') ++first;
    const auto [end, ec] = std::from_chars(first, word.data() + word.size(), value);
    if (ec != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
        throw Fault("'" + shown(word) + "' is not a number (" + std::string(what) + ")");
    return value;
}

class Reader {
  public:
    void item(const std::vector<std::string_view>& w, int line);
    // The line a fault belongs to: the item's own, else `read`, the last one read.
    int line(int read) const { return line_ ? line_ : read; }
    // The items that every file needs, then the start against the whole floor.
    void check_complete();
    Arena finish();

  private:
    using Handler = void (Reader::*)(const std::vector<std::string_view>&);
    static const std::map<std::string_view, Handler>& items();

    void size(const std::vector<std::string_view>& w);
    void robot(const std::vector<std::string_view>& w);
    void line(const std::vector<std::string_view>& w);
    void wall(const std::vector<std::string_view>& w);
    void light(const std::vector<std::string_view>& w);
    void zone(const std::vector<std::string_view>& w);

    void count(const std::vector<std::string_view>& w, std::size_t numbers,
               std::string_view form) const;
    Vec point(std::string_view x, std::string_view y, std::string_view what) const;

    Arena arena_;
    int line_ = 0;  // the line being read
    int size_line_ = 0, robot_line_ = 0;
    std::map<std::string, int, std::less<>> zone_lines_;
};

const std::map<std::string_view, Reader::Handler>& Reader::items() {
    static const std::map<std::string_view, Handler> table{
        {"size", &Reader::size}, {"robot", &Reader::robot}, {"line", &Reader::line},
        {"wall", &Reader::wall}, {"light", &Reader::light}, {"zone", &Reader::zone},
    };
    return table;
}

void Reader::item(const std::vector<std::string_view>& w, int at) {
    line_ = at;
    const auto it = items().find(w.front());
    if (it == items().end()) throw Fault("unknown item '" + shown(w.front()) + "'");
    const bool heading_item = w.front() == "size" || w.front() == "robot";
    if (!heading_item && (!size_line_ || !robot_line_))
        throw Fault(std::string(size_line_ ? "robot" : "size") + " must come before " +
                    std::string(w.front()));
    (this->*(it->second))(w);
    if (w.front() == "size") size_line_ = at;
    if (w.front() == "robot") robot_line_ = at;
}

void Reader::count(const std::vector<std::string_view>& w, std::size_t numbers,
                   std::string_view form) const {
    if (w.size() != numbers + 1)
        throw Fault(std::string(w.front()) + " takes " + std::to_string(numbers) + " numbers (" +
                    std::string(form) + "), not " + std::to_string(w.size() - 1));
}

Vec Reader::point(std::string_view x, std::string_view y, std::string_view what) const {
    const Vec p{number(x, "x"), number(y, "y")};
    if (p.x < 0 || p.y < 0 || p.x > arena_.width || p.y > arena_.height)
        throw Fault(std::string(what) + " lies outside the floor");
    return p;
}

void Reader::size(const std::vector<std::string_view>& w) {
    if (size_line_)
        throw Fault("size comes twice (first on line " + std::to_string(size_line_) + ")");
    count(w, 2, "width height");
    arena_.width = number(w[1], "width");
    arena_.height = number(w[2], "height");
    if (arena_.width <= 0 || arena_.height <= 0)
        throw Fault("the floor's width and height must be above 0");
    if (arena_.width > kLargestFloor || arena_.height > kLargestFloor)
        throw Fault("the floor may be at most 100000 wide and high");
    const double W = arena_.width, H = arena_.height;
    arena_.walls.insert(arena_.walls.begin(), {Segment{{0, 0}, {W, 0}}, Segment{{W, 0}, {W, H}},
                                               Segment{{W, H}, {0, H}}, Segment{{0, H}, {0, 0}}});
}

void Reader::robot(const std::vector<std::string_view>& w) {
    if (robot_line_)
        throw Fault("robot comes twice (first on line " + std::to_string(robot_line_) + ")");
    count(w, 3, "x y heading");
    // The place is checked against the floor once all of it is known.
    arena_.start.centre = {number(w[1], "x"), number(w[2], "y")};
    arena_.start.heading = wrap_angle(radians(number(w[3], "heading")));
}

void Reader::line(const std::vector<std::string_view>& w) {
    if (w.size() < 6 || w.size() % 2 != 0)
        throw Fault("line takes a width and the x y of two points or more, not " +
                    std::to_string(w.size() - 1) + " numbers");
    Line l;
    l.width = number(w[1], "width");
    if (l.width <= 0) throw Fault("a line's width must be above 0");
    for (std::size_t i = 2; i < w.size(); i += 2)
        l.points.push_back(point(w[i], w[i + 1], "a point of the line"));
    arena_.lines.push_back(std::move(l));
}

void Reader::wall(const std::vector<std::string_view>& w) {
    count(w, 4, "x1 y1 x2 y2");
    const Segment s{point(w[1], w[2], "the wall's first end"),
                    point(w[3], w[4], "the wall's second end")};
    if (s.a == s.b) throw Fault("the wall's two ends are the same point");
    arena_.walls.push_back(s);
}

void Reader::light(const std::vector<std::string_view>& w) {
    count(w, 3, "x y intensity");
    Light l{point(w[1], w[2], "the light"), number(w[3], "intensity")};
    if (l.intensity < 0 || l.intensity > 1) throw Fault("a light's intensity must be 0 to 1");
    arena_.lights.push_back(l);
}

void Reader::zone(const std::vector<std::string_view>& w) {
    if (w.size() != 6)
        throw Fault("zone takes a name and 4 numbers (x y width height), not " +
                    std::to_string(w.size() - 1) + " words");
    const std::string name(w[1]);
    if (const auto seen = zone_lines_.find(name); seen != zone_lines_.end())
        throw Fault("zone " + shown(name) + " comes twice (first on line " +
                    std::to_string(seen->second) + ")");
    Zone z{name, point(w[2], w[3], "the zone's corner"), number(w[4], "width"),
           number(w[5], "height")};
    if (z.width <= 0 || z.height <= 0) throw Fault("a zone's width and height must be above 0");
    if (z.corner.x + z.width > arena_.width || z.corner.y + z.height > arena_.height)
        throw Fault("the zone reaches outside the floor");
    zone_lines_.emplace(name, line_);
    arena_.zones.push_back(std::move(z));
}

void Reader::check_complete() {
    line_ = 0;
    if (!size_line_) throw Fault("the file gives no size");
    if (!robot_line_) throw Fault("the file gives no robot");
}

Arena Reader::finish() {
    line_ = robot_line_;
    const Vec c = arena_.start.centre;
    if (c.x < 0 || c.y < 0 || c.x > arena_.width || c.y > arena_.height)
        throw Fault("the robot's start lies outside the floor");
    if (!clear_of_walls(arena_, c)) throw Fault("the robot's start is closer than 60 to a wall");
    return std::move(arena_);
}

}  // namespace

ArenaReading read_arena(std::string_view text) {
    Reader reader;
    int line = 0;
    try {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            ++line;
            const auto words = words_of(text.substr(at, end - at));
            if (!words.empty()) reader.item(words, line);
            at = end + 1;
        }
        line = std::max(line, 1);  // what is missing is missing at the end
        reader.check_complete();
        return {reader.finish(), {}};
    } catch (const Fault& f) {
        return {std::nullopt, {reader.line(line), f.what()}};
    }
}

}  // namespace world
