#include "arena_writer.h"

#include <charconv>
#include <map>

namespace world {

namespace {

// After an item on its line: the blanks and comment that follow it, and a carriage return.
std::string tail_of(std::string_view line) {
    std::size_t end = std::min(line.find('#'), line.size());
    while (end > 0 && std::string_view(" \t\r\f\v").find(line[end - 1]) != line.npos)
        --end;
    return std::string(line.substr(end));
}

std::string points_text(const std::vector<Vec>& points) {
    std::string text;
    for (const Vec& p : points)
        text += "  " + number_text(p.x) + " " + number_text(p.y);
    return text;
}

std::string size_text(const ArenaDocument& d) {
    return "size " + number_text(d.width()) + " " + number_text(d.height());
}

std::string start_text(const Start& s) {
    return "robot " + number_text(s.at.x) + " " + number_text(s.at.y) + " " +
           number_text(s.degrees);
}

}  // namespace

std::string number_text(double value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

std::string item_text(const Shape& shape) {
    if (const auto* l = std::get_if<Line>(&shape))
        return "line " + number_text(l->width) + points_text(l->points);
    if (const auto* s = std::get_if<Segment>(&shape))
        return "wall" + points_text({s->a, s->b}).substr(1);
    if (const auto* l = std::get_if<Light>(&shape))
        return "light " + number_text(l->at.x) + " " + number_text(l->at.y) + " " +
               number_text(l->intensity);
    const Zone& z = std::get<Zone>(shape);
    return "zone " + z.name + " " + number_text(z.corner.x) + " " + number_text(z.corner.y) + " " +
           number_text(z.width) + " " + number_text(z.height);
}

std::string write_arena(const ArenaDocument& d) {
    const std::vector<std::string>& source = d.source_lines();
    std::map<int, const DocumentItem*> kept;
    for (const DocumentItem& item : d.items())
        if (item.source >= 0) kept[item.source] = &item;
    bool crlf = false;
    std::vector<std::string> out;
    for (int i = 0; i < static_cast<int>(source.size()); ++i) {
        const std::string& line = source[i];
        crlf = crlf || (!line.empty() && line.back() == '\r');
        if (i == d.start_source() && d.start_changed())
            out.push_back(start_text(d.start()) + tail_of(line));
        else if (i == d.size_source() || i == d.start_source() || first_word(line).empty())
            out.push_back(line);
        else if (const auto it = kept.find(i); it != kept.end())
            out.push_back(it->second->changed ? item_text(it->second->shape) + tail_of(line)
                                              : line);
    }
    // New items go before the empty rest after the last newline, and end with one.
    if (source.empty()) out = {size_text(d), start_text(d.start())};
    std::vector<std::string> added;
    for (const DocumentItem& item : d.items())
        if (item.source < 0) added.push_back(item_text(item.shape) + (crlf ? "\r" : ""));
    if (!added.empty() || source.empty()) {
        if (!source.empty() && !out.empty() && out.back().empty()) out.pop_back();
        out.insert(out.end(), added.begin(), added.end());
        out.emplace_back();
    }
    std::string text;
    for (std::size_t i = 0; i < out.size(); ++i)
        text += (i ? "\n" : "") + out[i];
    return text;
}

std::string arena_problem(const ArenaDocument& d) {
    const ArenaReading r = read_arena(write_arena(d));
    return r.arena ? std::string() : std::to_string(r.error.line) + ": " + r.error.text;
}

}  // namespace world
