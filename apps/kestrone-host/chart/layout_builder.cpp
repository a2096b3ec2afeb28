// The layout, built in the order of the text so that each comment meets the icon it is written
// above (or beside): a comment belongs to the next line of code that has an icon.
#include <algorithm>

#include "chart_layout.h"
#include "layout_fragment.h"

namespace chart {

namespace {

constexpr int kGap = 24;        // between icons, top to bottom: room for a way and its arrow
constexpr int kColumnGap = 28;  // between the ways of a decision, side by side
constexpr int kNoteGap = 12;    // between an icon and its note
constexpr int kBackGap = 16;    // between a loop's body and its way back
constexpr int kEmptyHalf = 12;  // half the width of a decision's empty way
constexpr int kJoinOver = 8;    // how far a join reaches past its outer ways
constexpr int kMargin = 20;
constexpr int kLongestComment = 400;  // characters shown of one comment

int even(int n) {
    return n + (n & 1);
}

// An icon's width and height for a text of `chars` characters.
std::pair<int, int> size_of(Shape s, int chars) {
    const int t = chars * kCharWidth;
    switch (s) {
        case Shape::Decision:
            return {even(std::max(72, t * 3 / 2 + 28)), 44};
        case Shape::LoopHead:
            return {even(std::max(64, t + 36)), 30};
        case Shape::LoopEnd:
            return {40, 14};
        case Shape::Join:
            return {2 * kJoinOver, 4};
        case Shape::Delay:
            return {even(std::max(56, t + 32)), 30};
        case Shape::Box:
            return {even(std::max(56, t + 20)), 30};
        case Shape::Start:
        case Shape::Finish:
        case Shape::Stop:
            break;
    }
    return {even(std::max(64, t + 32)), 30};
}

class Builder {
  public:
    explicit Builder(const Chart& c) : c_(c) {}
    Layout run();

  private:
    Fragment block(const Block& b, int owner, int arm);
    Fragment node(const Node& n);
    Fragment loop(const Node& n);
    Fragment decision(const Node& n);
    Fragment icon(Shape shape, int line, std::string_view text, bool note_left = false);
    void take_comment(int line) {
        const std::string c = comment_of(c_.lines().at(line));
        if (c.empty()) return;
        for (std::string& part : folded(shown_text(c, kLongestComment), kNoteWidth))
            pending_.push_back(std::move(part));
    }
    std::string_view code(int line) const { return code_of(c_.lines().at(line)); }

    const Chart& c_;
    std::vector<std::string> pending_;  // comments waiting for their icon
};

Fragment Builder::icon(Shape shape, int line, std::string_view text, bool note_left) {
    if (line) take_comment(line);
    Fragment f;
    Icon i{shape, {}, line, shown_text(text)};
    const auto [w, h] = size_of(shape, char_count(i.text));
    i.rect = {-w / 2, 0, w, h};
    f.icons.push_back(std::move(i));
    f.entry = f.exit = 0;
    if (line) f.lines.emplace_back(line, 0);
    if (!pending_.empty()) {
        int widest = 0;
        for (const std::string& t : pending_)
            widest = std::max(widest, char_count(t));
        const int nw = even(widest * kCharWidth + 14);
        const int nh = static_cast<int>(pending_.size()) * kLineHeight + 8;
        const int x = note_left ? -w / 2 - kNoteGap - nw : w / 2 + kNoteGap;
        f.notes.push_back({{x, 0, nw, nh}, 0, std::move(pending_)});
        pending_.clear();
    }
    f.measure();
    return f;
}

Fragment Builder::node(const Node& n) {
    for (int l : n.above)
        take_comment(l);
    if (is_loop(n.kind)) return loop(n);
    if (n.kind == IconKind::Decision) return decision(n);
    const Shape shape = n.kind == IconKind::Delay  ? Shape::Delay
                        : n.kind == IconKind::Stop ? Shape::Stop
                                                   : Shape::Box;
    Fragment f = icon(shape, n.line, code(n.line));
    if (n.kind == IconKind::Stop) f.exit = -1;
    return f;
}

Fragment Builder::block(const Block& b, int owner, int arm) {
    Fragment f;
    int prev_exit = -1;
    for (std::size_t i = 0; i < b.nodes.size(); ++i) {
        Fragment part = node(b.nodes[i]);
        const int entry = part.entry, exit = part.exit;
        const int base = f.place(std::move(part), 0, i == 0 ? 0 : f.height + kGap);
        if (i == 0) f.entry = base + entry;
        if (i > 0 && prev_exit >= 0)
            f.add_down(0, prev_exit, base + entry, Way{owner, arm, static_cast<int>(i)});
        prev_exit = exit >= 0 ? base + exit : -1;
    }
    for (int l : b.trailing)
        take_comment(l);
    f.exit = prev_exit;
    return f;
}

Fragment Builder::loop(const Node& n) {
    Fragment f;
    const int head = f.place(icon(Shape::LoopHead, n.line, code(n.line)), 0, 0);
    const Block& body = n.arms.front().body;
    Fragment inner = block(body, n.line, 0);
    int last = head;  // the icon the way into the loop's end leaves from
    if (!body.nodes.empty()) {
        const int entry = inner.entry, exit = inner.exit;
        const int base = f.place(std::move(inner), 0, f.height + kGap);
        f.add_down(0, head, base + entry, Way{n.line, 0, 0});
        last = exit >= 0 ? base + exit : -1;
    }
    const int end = f.place(icon(Shape::LoopEnd, n.end_line, ""), 0, f.height + kGap);
    if (last >= 0) f.add_down(0, last, end, Way{n.line, 0, static_cast<int>(body.nodes.size())});
    // The way back, round the body on its left.
    const int back = f.left - kBackGap;
    const Rect e = f.icons[static_cast<std::size_t>(end)].rect;
    const Rect h = f.icons[static_cast<std::size_t>(head)].rect;
    const int ey = e.y + e.h / 2, hy = h.y + h.h / 2;
    f.ways.push_back(
        {{{e.x, ey}, {back, ey}, {back, hy}, {h.x, hy}}, end, head, WayLabel::None, std::nullopt});
    f.measure();
    f.entry = head;
    f.exit = n.kind == IconKind::Forever ? -1 : end;
    return f;
}

// The ways of a decision side by side: each condition on top of its "yes" way, its "no" way off
// to the right, to the next condition, the `else` or straight to the join; each way starts
// lower than the one on its left, below the condition before it, so no way crosses another.
Fragment Builder::decision(const Node& n) {
    struct Column {
        Fragment frag;
        int diamond = -1, entry = -1, exit = -1;  // icons; -1: none
        int count = 0;                            // the icons of its body
        int head = 0;                             // the height of its condition and its note
        int x = 0;
    };
    std::vector<Column> cols;
    int else_line = 0;
    for (std::size_t i = 0; i < n.arms.size(); ++i) {
        const Arm& arm = n.arms[i];
        Column c;
        if (arm.has_condition) {
            c.diamond = c.frag.place(icon(Shape::Decision, arm.line, code(arm.line), true), 0, 0);
            c.head = c.frag.height;
        } else {
            take_comment(arm.line);
            else_line = arm.line;
        }
        Fragment body = block(arm.body, n.line, static_cast<int>(i));
        c.count = static_cast<int>(arm.body.nodes.size());
        if (c.count > 0) {
            const int entry = body.entry, exit = body.exit;
            const int y = c.diamond >= 0 ? c.head + kGap : 0;
            const int base = c.frag.place(std::move(body), 0, y);
            c.entry = base + entry;
            c.exit = exit >= 0 ? base + exit : -1;
        }
        cols.push_back(std::move(c));
    }
    if (n.arms.back().has_condition) cols.emplace_back();  // the "no" way, without an `else`
    Fragment f;
    int top = 0;
    for (std::size_t i = 0; i < cols.size(); ++i) {
        Column& c = cols[i];
        if (c.frag.icons.empty()) c.frag.left = -kEmptyHalf, c.frag.right = kEmptyHalf;
        if (i > 0) {
            const Column& before = cols[i - 1];
            c.x = before.x + before.frag.right + kColumnGap - c.frag.left;
            top += before.head + kGap;
        }
        const int base = f.place(std::move(c.frag), c.x, top);
        for (int* index : {&c.diamond, &c.entry, &c.exit})
            if (*index >= 0) *index += base;
    }
    Fragment bar = icon(Shape::Join, n.end_line, "");
    bar.icons[0].rect = {-kJoinOver, 0, cols.back().x + 2 * kJoinOver, 4};
    if (!bar.notes.empty()) bar.notes[0].rect.x = bar.icons[0].rect.right() + kNoteGap;
    bar.measure();
    const int join = f.place(std::move(bar), 0, f.height + kGap);
    bool joined = false;
    for (std::size_t i = 0; i < cols.size(); ++i) {
        const Column& c = cols[i];
        const int arm = static_cast<int>(i);
        if (c.diamond >= 0) {
            f.add_down(c.x, c.diamond, c.count ? c.entry : join, Way{n.line, arm, 0},
                       WayLabel::Yes);
            joined |= c.count == 0;
            const Column& next = cols[i + 1];
            const int to = next.diamond >= 0 ? next.diamond : next.count ? next.entry : join;
            joined |= to == join;
            std::optional<Way> place;
            if (next.diamond < 0) place = Way{n.line, arm + 1, 0};
            const Rect d = f.icons[static_cast<std::size_t>(c.diamond)].rect;
            const int y = d.y + d.h / 2;
            f.ways.push_back({{{d.right(), y},
                               {next.x, y},
                               {next.x, f.icons[static_cast<std::size_t>(to)].rect.y}},
                              c.diamond,
                              to,
                              WayLabel::No,
                              place});
        }
        if (c.count && c.exit >= 0) {
            f.add_down(c.x, c.exit, join, Way{n.line, arm, c.count});
            joined = true;
        }
    }
    if (else_line) f.lines.emplace_back(else_line, cols[cols.size() - 2].diamond);
    f.entry = cols.front().diamond;
    f.exit = joined ? join : -1;
    return f;
}

Layout Builder::run() {
    Fragment f;
    const int start = f.place(icon(Shape::Start, 0, "start"), 0, 0);
    const Block& top = c_.top();
    Fragment body = block(top, 0, 0);
    int last = start;
    if (!top.nodes.empty()) {
        const int entry = body.entry, exit = body.exit;
        const int base = f.place(std::move(body), 0, f.height + kGap);
        f.add_down(0, start, base + entry, Way{0, 0, 0});
        last = exit >= 0 ? base + exit : -1;
    }
    const int finish = f.place(icon(Shape::Finish, 0, "end"), 0, f.height + kGap);
    if (last >= 0) f.add_down(0, last, finish, Way{0, 0, static_cast<int>(top.nodes.size())});
    const int dx = kMargin - f.left, dy = kMargin;
    Layout out;
    out.width = f.right - f.left + 2 * kMargin;
    out.height = f.height + 2 * kMargin;
    Fragment placed;
    placed.place(std::move(f), dx, dy);
    out.icons = std::move(placed.icons);
    out.ways = std::move(placed.ways);
    out.notes = std::move(placed.notes);
    out.by_line = std::move(placed.lines);
    std::sort(out.by_line.begin(), out.by_line.end());
    return out;
}

}  // namespace

Layout lay_out(const Chart& chart) {
    return Builder(chart).run();
}

}  // namespace chart
