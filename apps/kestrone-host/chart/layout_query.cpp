#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "chart_layout.h"

namespace chart {

namespace {

// The code point that starts at `s[i]`, and its length; -1 for bytes that are not UTF-8.
std::pair<std::int32_t, std::size_t> decode(std::string_view s, std::size_t i) {
    const auto b = static_cast<unsigned char>(s[i]);
    if (b < 0x80) return {b, 1};
    const std::size_t n = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 ? 2 : 0;
    if (n == 0 || b > 0xF4 || i + n > s.size()) return {-1, 1};
    std::int32_t c = b & (0x7F >> n);
    for (std::size_t k = 1; k < n; ++k) {
        const auto more = static_cast<unsigned char>(s[i + k]);
        if ((more & 0xC0) != 0x80) return {-1, 1};
        c = (c << 6) | (more & 0x3F);
    }
    const std::int32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < least[n] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return {-1, 1};
    return {c, n};
}

// A character no picture should hold: a control, or one that XML refuses.
bool unshowable(std::int32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0xFFFE || c == 0xFFFF;
}

int distance(Point p, Point a, Point b) {
    const int x = std::clamp(p.x, std::min(a.x, b.x), std::max(a.x, b.x));
    const int y = std::clamp(p.y, std::min(a.y, b.y), std::max(a.y, b.y));
    return std::abs(p.x - x) + std::abs(p.y - y);
}

}  // namespace

std::string shown_text(std::string_view text, int longest) {
    std::string out;
    int count = 0;
    for (std::size_t i = 0; i < text.size();) {
        const auto [c, n] = decode(text, i);
        if (++count == longest && i + n < text.size()) {
            out += "\u2026";
            break;
        }
        if (c < 0)
            out += "\uFFFD";
        else if (unshowable(c))
            out += ' ';
        else
            out.append(text.substr(i, n));
        i += n;
    }
    return out;
}

std::vector<std::string> folded(std::string_view shown, int width) {
    std::vector<std::string> lines(1);
    std::size_t i = 0;
    while (i < shown.size()) {
        const std::size_t blank = std::min(shown.find(' ', i), shown.size());
        std::string_view word = shown.substr(i, blank - i);
        i = blank + 1;
        while (!word.empty()) {
            std::string& line = lines.back();
            if (char_count(line) + (line.empty() ? 0 : 1) + char_count(word) <= width) {
                line += (line.empty() ? "" : " ") + std::string(word);
                break;
            }
            if (!line.empty()) {
                lines.emplace_back();
                continue;
            }
            // A word longer than a line: as much as fits, cut between characters.
            std::size_t cut = 0;
            for (int taken = 0; taken < width; ++taken)
                do
                    ++cut;
                while (cut < word.size() && (static_cast<unsigned char>(word[cut]) & 0xC0) == 0x80);
            line = word.substr(0, cut);
            word.remove_prefix(cut);
            lines.emplace_back();
        }
    }
    if (lines.back().empty() && lines.size() > 1) lines.pop_back();
    return lines;
}

int char_count(std::string_view shown) {
    int count = 0;
    for (char c : shown)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
    return count;
}

int Layout::icon_at(Point p) const {
    for (std::size_t i = 0; i < icons.size(); ++i)
        if (icons[i].rect.contains(p)) return static_cast<int>(i);
    return -1;
}

int Layout::icon_of_line(int line) const {
    const auto it = std::lower_bound(by_line.begin(), by_line.end(), std::make_pair(line, -1));
    return it != by_line.end() && it->first == line ? it->second : -1;
}

std::optional<Way> Layout::way_at(Point p, int reach) const {
    std::optional<Way> best;
    int nearest = reach + 1;
    for (const Path& w : ways) {
        if (!w.place) continue;
        for (std::size_t k = 1; k < w.points.size(); ++k) {
            const int d = distance(p, w.points[k - 1], w.points[k]);
            if (d < nearest) {
                nearest = d;
                best = w.place;
            }
        }
    }
    return best;
}

}  // namespace chart
