#include "layout_fragment.h"

#include <algorithm>

namespace chart {

namespace {

Rect moved(Rect r, int dx, int dy) {
    return {r.x + dx, r.y + dy, r.w, r.h};
}

}  // namespace

int Fragment::place(Fragment&& part, int dx, int dy) {
    const int base = static_cast<int>(icons.size());
    for (Icon& i : part.icons) {
        i.rect = moved(i.rect, dx, dy);
        icons.push_back(std::move(i));
    }
    for (Path& w : part.ways) {
        for (Point& p : w.points)
            p = {p.x + dx, p.y + dy};
        w.from += base;
        w.to += base;
        ways.push_back(std::move(w));
    }
    for (Note& n : part.notes) {
        n.rect = moved(n.rect, dx, dy);
        n.icon += base;
        notes.push_back(std::move(n));
    }
    for (const auto& [line, icon] : part.lines)
        lines.emplace_back(line, icon + base);
    left = std::min(left, dx + part.left);
    right = std::max(right, dx + part.right);
    height = std::max(height, dy + part.height);
    return base;
}

void Fragment::measure() {
    left = right = height = 0;
    const auto take = [this](int x0, int x1, int y1) {
        left = std::min(left, x0);
        right = std::max(right, x1);
        height = std::max(height, y1);
    };
    for (const Icon& i : icons)
        take(i.rect.x, i.rect.right(), i.rect.bottom());
    for (const Note& n : notes)
        take(n.rect.x, n.rect.right(), n.rect.bottom());
    for (const Path& w : ways)
        for (const Point& p : w.points)
            take(p.x, p.x, p.y);
}

void Fragment::add_down(int x, int from, int to, std::optional<Way> place, WayLabel label) {
    const Rect& a = icons[static_cast<std::size_t>(from)].rect;
    const Rect& b = icons[static_cast<std::size_t>(to)].rect;
    ways.push_back({{{x, a.bottom()}, {x, b.y}}, from, to, label, place});
}

}  // namespace chart
