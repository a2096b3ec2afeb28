#include "panel/pictures/pixel_map.h"

#include <array>
#include <charconv>
#include <map>
#include <optional>

namespace picture_compiler {

namespace {

// Large enough for any panel picture, small enough that a typo in the header cannot ask for
// gigabytes.
constexpr int kMaxSide = 4096;
constexpr int kMaxColours = 1024;

struct Entry {
    int line;
    std::string_view text;  // between the quotes
};

struct Failure {
    int line;
    std::string what;
};

constexpr std::string_view kSpaces = " \t\r";

std::string_view trim(std::string_view s) {
    const std::size_t first = s.find_first_not_of(kSpaces);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(kSpaces) - first + 1);
}

bool is_comment(std::string_view s) {
    return s.size() >= 4 && s.starts_with("/*") && s.ends_with("*/");
}

std::vector<std::string_view> split_words(std::string_view s) {
    std::vector<std::string_view> words;
    std::size_t from = s.find_first_not_of(kSpaces);
    while (from != std::string_view::npos) {
        const std::size_t end = s.find_first_of(kSpaces, from);
        words.push_back(s.substr(from, end - from));  // to the end of s when end is npos
        from = s.find_first_not_of(kSpaces, end);
    }
    return words;
}

std::optional<int> to_int(std::string_view s) {
    int value = 0;
    auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec != std::errc{} || end != s.data() + s.size()) return std::nullopt;
    return value;
}

// A quoted row: `"text"`, then at most a comma and a comment.
std::optional<Failure> read_entry(std::string_view s, int line, std::vector<Entry>& entries) {
    std::size_t close = s.find('"', 1);
    if (close == std::string_view::npos) return Failure{line, "the row has no closing quote"};
    std::string_view text = s.substr(1, close - 1);
    if (text.find('\\') != std::string_view::npos)
        return Failure{line, "escapes are not allowed in a row"};
    std::string_view rest = trim(s.substr(close + 1));
    if (rest.starts_with(",")) rest = trim(rest.substr(1));
    if (!rest.empty() && !is_comment(rest))
        return Failure{line, "unexpected text after the row: " + std::string(rest)};
    entries.push_back({line, text});
    return std::nullopt;
}

constexpr const char* kExpectedOpening = "expected the \"static const char* name[] = {\" line";

// The quoted rows between the `static ... = {` line and `};`; comments and blank lines between.
std::optional<Failure> collect_entries(std::string_view text, std::vector<Entry>& entries) {
    enum class Place { Before, Inside, After } place = Place::Before;
    int line = 0;  // the last line read
    for (; !text.empty(); ++line) {
        std::size_t eol = text.find('\n');
        std::string_view raw = text.substr(0, eol);
        text.remove_prefix(eol == std::string_view::npos ? text.size() : eol + 1);
        std::string_view s = trim(raw);
        if (s.empty() || is_comment(s)) continue;
        const int number = line + 1;
        if (place == Place::Before && s.starts_with("static ") && s.ends_with("{")) {
            place = Place::Inside;
        } else if (place == Place::Inside && s == "};") {
            place = Place::After;
        } else if (place == Place::Inside && s.starts_with("\"")) {
            if (auto failure = read_entry(s, number, entries)) return failure;
        } else if (place == Place::Before) {
            return Failure{number, kExpectedOpening};
        } else {
            return Failure{number, "unexpected text: " + std::string(s)};
        }
    }
    if (place == Place::Before) return Failure{line, kExpectedOpening};
    if (place == Place::Inside) return Failure{line, "the map is not closed by \"};\""};
    return std::nullopt;
}

std::optional<Failure> read_header(const Entry& e, PixelMap& map, int& colours, int& chars) {
    auto words = split_words(e.text);
    std::array<std::optional<int>, 4> v;
    if (words.size() == v.size())
        for (std::size_t i = 0; i < v.size(); ++i)
            v[i] = to_int(words[i]);
    for (const auto& x : v)
        if (!x || *x < 1)
            return Failure{e.line, "the header must read \"width height colours chars-per-pixel\""};
    if (*v[0] > kMaxSide || *v[1] > kMaxSide || *v[2] > kMaxColours || *v[3] > 4)
        return Failure{e.line, "the header asks for more than a picture may have"};
    map.width = *v[0];
    map.height = *v[1];
    map.header_line = e.line;
    colours = *v[2];
    chars = *v[3];
    return std::nullopt;
}

std::optional<unsigned> hex_byte(std::string_view two) {
    unsigned value = 0;  // unsigned: from_chars would take a sign for an int
    auto [end, ec] = std::from_chars(two.data(), two.data() + 2, value, 16);
    if (ec != std::errc{} || end != two.data() + 2) return std::nullopt;
    return value;
}

using Palette = std::map<std::string, std::array<std::uint8_t, 4>, std::less<>>;

std::optional<Failure> read_colour(const Entry& e, int chars, Palette& palette) {
    const Failure bad{e.line, "a colour must read \"<key> c #RRGGBB\""};
    // The key is the first `chars` characters, and a space follows it.
    if (e.text.find_first_of(kSpaces, chars) != static_cast<std::size_t>(chars)) return bad;
    std::string key(e.text.substr(0, chars));
    auto words = split_words(e.text.substr(chars));
    if (words.size() != 2 || words[0] != "c" || words[1].size() != 7 || words[1][0] != '#')
        return bad;
    std::array<std::uint8_t, 4> rgba{0, 0, 0, 255};
    for (int i = 0; i < 3; ++i) {
        auto byte = hex_byte(words[1].substr(1 + 2 * i, 2));
        if (!byte) return bad;
        rgba[i] = static_cast<std::uint8_t>(*byte);
    }
    if (!palette.emplace(key, rgba).second)
        return Failure{e.line, "colour key '" + key + "' is given twice"};
    return std::nullopt;
}

std::optional<Failure> read_row(const Entry& e, int chars, const Palette& palette, PixelMap& map) {
    const std::size_t expected = static_cast<std::size_t>(map.width) * chars;
    if (e.text.size() != expected)
        return Failure{e.line, "the row is " + std::to_string(e.text.size()) +
                                   " characters long, the width needs " + std::to_string(expected)};
    for (std::size_t i = 0; i < e.text.size(); i += chars) {
        auto it = palette.find(e.text.substr(i, chars));
        if (it == palette.end())
            return Failure{e.line, "unknown colour key '" + std::string(e.text.substr(i, chars)) +
                                       "' at column " + std::to_string(i + 1)};
        map.rgba.insert(map.rgba.end(), it->second.begin(), it->second.end());
    }
    return std::nullopt;
}

std::optional<Failure> read_map(std::string_view text, PixelMap& map) {
    std::vector<Entry> entries;
    if (auto failure = collect_entries(text, entries)) return failure;
    if (entries.empty()) return Failure{0, "the map has no header"};
    int colours = 0, chars = 0;
    if (auto failure = read_header(entries[0], map, colours, chars)) return failure;
    const std::size_t rows_from = 1 + static_cast<std::size_t>(colours);
    const int last_line = entries.back().line;
    if (entries.size() < rows_from)
        return Failure{last_line, "only " + std::to_string(entries.size() - 1) +
                                      " colours, the header says " + std::to_string(colours)};
    Palette palette;
    for (std::size_t i = 1; i < rows_from; ++i)
        if (auto failure = read_colour(entries[i], chars, palette)) return failure;
    const std::size_t rows = entries.size() - rows_from;
    if (rows > static_cast<std::size_t>(map.height))
        return Failure{entries[rows_from + map.height].line,
                       "more rows than the header's height of " + std::to_string(map.height)};
    if (rows < static_cast<std::size_t>(map.height))
        return Failure{last_line, "only " + std::to_string(rows) +
                                      " rows, the header's height is " +
                                      std::to_string(map.height)};
    map.rgba.reserve(static_cast<std::size_t>(map.width) * map.height * 4);
    for (std::size_t i = rows_from; i < entries.size(); ++i)
        if (auto failure = read_row(entries[i], chars, palette, map)) return failure;
    return std::nullopt;
}

}  // namespace

PixelMapResult parse_pixel_map(std::string_view text) {
    PixelMapResult result;
    if (auto failure = read_map(text, result.map)) {
        result.map = PixelMap{};
        result.error_line = failure->line;
        result.error = std::move(failure->what);
    }
    return result;
}

}  // namespace picture_compiler
