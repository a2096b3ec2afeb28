// The chart of every shipped example and of a corpus of generated programs: it writes back its
// text byte for byte; its SVG titles one icon for each line of code, in the program's order; and
// its layout has no icons over each other, no ways that meet or cross, and no way through an icon.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <sstream>

#include "chart_layout.h"
#include "chart_svg.h"
#include "chart_test_support.h"

namespace {

using chart::Layout;
using chart::Point;
using chart::Rect;
using chart_testing::chart_of;
using chart_testing::generate_program;

bool overlap(const Rect& a, const Rect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

// The closed box of a straight run.
Rect run_box(Point a, Point b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
}

bool touch(const Rect& a, const Rect& b) {
    return a.x <= b.right() && b.x <= a.right() && a.y <= b.bottom() && b.y <= a.bottom();
}

// A way meets an icon in the middle of one of its sides; a join, which gathers several, anywhere
// on its edge.
bool meets(const chart::Icon& i, Point p) {
    const Rect& r = i.rect;
    if (i.shape == chart::Shape::Join)
        return r.contains(p) && (p.x == r.x || p.x == r.right() || p.y == r.y || p.y == r.bottom());
    const int cx = r.x + r.w / 2, cy = r.y + r.h / 2;
    return p == Point{cx, r.y} || p == Point{cx, r.bottom()} || p == Point{r.x, cy} ||
           p == Point{r.right(), cy};
}

void expect_sound(const Layout& l) {
    std::vector<Rect> solid;
    for (const auto& i : l.icons)
        solid.push_back(i.rect);
    for (const auto& n : l.notes)
        solid.push_back(n.rect);
    for (std::size_t a = 0; a < solid.size(); ++a) {
        EXPECT_TRUE(solid[a].x >= 0 && solid[a].y >= 0 && solid[a].right() <= l.width &&
                    solid[a].bottom() <= l.height);
        for (std::size_t b = a + 1; b < solid.size(); ++b)
            ASSERT_FALSE(overlap(solid[a], solid[b])) << "icons or notes " << a << " and " << b;
    }
    for (std::size_t w = 0; w < l.ways.size(); ++w) {
        const auto& way = l.ways[w];
        ASSERT_GE(way.points.size(), 2u);
        EXPECT_TRUE(meets(l.icons[static_cast<std::size_t>(way.from)], way.points.front()));
        EXPECT_TRUE(meets(l.icons[static_cast<std::size_t>(way.to)], way.points.back()));
        for (std::size_t k = 1; k < way.points.size(); ++k) {
            const Rect run = run_box(way.points[k - 1], way.points[k]);
            ASSERT_TRUE(run.w == 0 || run.h == 0) << "way " << w << " runs aslant";
            for (const Rect& r : solid)  // the open inside of r: a way may end on its edge
                ASSERT_FALSE(overlap(run, r)) << "way " << w << " passes through an icon or note";
            for (std::size_t o = w + 1; o < l.ways.size(); ++o)
                for (std::size_t j = 1; j < l.ways[o].points.size(); ++j)
                    ASSERT_FALSE(touch(run, run_box(l.ways[o].points[j - 1], l.ways[o].points[j])))
                        << "ways " << w << " and " << o << " meet";
        }
    }
    // No way ends in an icon that has none leaving it, but at the finish or a `stop`.
    std::vector<int> in(l.icons.size()), out(l.icons.size());
    for (const auto& way : l.ways)
        ++in[static_cast<std::size_t>(way.to)], ++out[static_cast<std::size_t>(way.from)];
    // A loop's end goes on, but for `forever`'s, and back to its head.
    for (const auto& way : l.ways) {
        const auto& from = l.icons[static_cast<std::size_t>(way.from)];
        const auto& to = l.icons[static_cast<std::size_t>(way.to)];
        const bool back = from.shape == chart::Shape::LoopEnd && to.rect.y < from.rect.y;
        EXPECT_TRUE(!back ||
                    out[static_cast<std::size_t>(way.from)] == (to.text == "forever" ? 1 : 2));
    }
    for (std::size_t i = 0; i < l.icons.size(); ++i) {
        const chart::Shape s = l.icons[i].shape;
        const bool ends = s == chart::Shape::Finish || s == chart::Shape::Stop;
        EXPECT_TRUE(ends || in[i] == 0 || out[i] > 0) << "icon " << i;
    }
}

std::string slurp(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(ChartText, EveryExampleAndTheCorpusComeBackByteForByte) {
    for (const auto& entry : std::filesystem::directory_iterator(KESTRONE_EXAMPLES)) {
        if (entry.path().extension() != ".kflow") continue;
        const std::string source = slurp(entry.path());
        const auto c = chart_of(source);
        ASSERT_TRUE(c);
        EXPECT_EQ(c->text(), source) << entry.path();
        expect_sound(chart::lay_out(*c));
    }
    for (unsigned seed = 0; seed < chart_testing::kCorpusSize; ++seed) {
        const auto p = generate_program(seed);
        const auto c = chart_of(p.source);
        ASSERT_TRUE(c);
        ASSERT_EQ(c->text(), p.source) << "seed " << seed;
        SCOPED_TRACE("seed " + std::to_string(seed));
        expect_sound(chart::lay_out(*c));
    }
}

// Each way's arrow head: its tip where the way ends, its two corners behind it along its last run.
void expect_arrows(const Layout& layout, const std::string& svg) {
    std::istringstream lines(svg);
    std::vector<std::array<Point, 3>> heads;
    std::array<Point, 3> h;
    for (std::string line; std::getline(lines, line);)
        if (std::sscanf(line.c_str(), "<polygon points=\"%d,%d %d,%d %d,%d\"/>", &h[0].x, &h[0].y,
                        &h[1].x, &h[1].y, &h[2].x, &h[2].y) == 6)
            heads.push_back(h);
    ASSERT_EQ(heads.size(), layout.ways.size());
    for (std::size_t w = 0; w < heads.size(); ++w) {
        const auto& points = layout.ways[w].points;
        const Point a = points[points.size() - 2], tip = points.back();
        EXPECT_EQ(heads[w][0], tip);
        for (const Point& corner : {heads[w][1], heads[w][2]})
            EXPECT_LT((corner.x - tip.x) * (tip.x - a.x) + (corner.y - tip.y) * (tip.y - a.y), 0);
    }
}

// Each titled icon's text inside its icon.
void expect_texts_inside(const Layout& layout, const std::string& svg) {
    static const std::regex titled("<title>line (\\d+):.*<text x=\"(\\d+)\" y=\"(\\d+)\"");
    for (std::sregex_iterator it(svg.begin(), svg.end(), titled), end; it != end; ++it) {
        const int icon = layout.icon_of_line(std::stoi((*it)[1]));
        const Point at{std::stoi((*it)[2]), std::stoi((*it)[3])};
        EXPECT_TRUE(layout.icons[static_cast<std::size_t>(icon)].rect.contains(at)) << (*it)[0];
    }
}

TEST(ChartPicture, TitlesOneIconPerLineOfCodeInOrderAndLightsTheRunningOne) {
    for (unsigned seed = 0; seed < chart_testing::kCorpusSize; ++seed) {
        const auto p = generate_program(seed);
        const auto c = chart_of(p.source);
        ASSERT_TRUE(c);
        const std::size_t lit = seed % p.code_lines.size();
        const Layout layout = chart::lay_out(*c);
        const std::string svg = chart::chart_svg(*c, layout, {2, p.code_lines[lit]});
        ASSERT_EQ(chart_testing::titled_icons(svg), chart_testing::titles_of(p, p.code_lines[lit]))
            << "seed " << seed;
        EXPECT_NE(svg.find("width=\"" + std::to_string(2 * layout.width) + "\""),
                  std::string::npos);
        expect_arrows(layout, svg);
        expect_texts_inside(layout, svg);
    }
}

// What the window asks of a layout: the icon of a line (a loop's end or the join for `end`, the
// condition before it for `else`, none for blanks and comments) and the way under a point.
TEST(ChartLayout, FindsTheIconOfEachLineAndWaysByPlace) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const auto p = generate_program(seed);
        const auto c = chart_of(p.source);
        ASSERT_TRUE(c);
        const Layout l = chart::lay_out(*c);
        for (int n = 1; n <= c->lines().count(); ++n) {
            const std::string code = chart_testing::code_of(c->lines().at(n));
            const int icon = l.icon_of_line(n);
            ASSERT_EQ(icon < 0, code.empty()) << "line " << n;
            if (icon < 0) continue;
            const auto& found = l.icons[static_cast<std::size_t>(icon)];
            const chart::Shape shape = found.shape;
            EXPECT_EQ(code == "end", shape == chart::Shape::LoopEnd || shape == chart::Shape::Join)
                << "line " << n;
            EXPECT_TRUE(code != "else" || shape == chart::Shape::Decision) << "line " << n;
            EXPECT_EQ(found.line == n, code != "else") << "line " << n;
        }
        for (const auto& w : l.ways) {
            if (!w.place) continue;
            const Point a = w.points[w.points.size() - 2], b = w.points.back();
            EXPECT_EQ(l.way_at({(a.x + b.x) / 2 + 2, (a.y + b.y) / 2}, 3), w.place);
        }
    }
}

// Each comment shows in a note, in the program's order, folded between words (a word longer than
// a line cut) into lines of at most kNoteWidth characters.
TEST(ChartLayout, ShowsEachCommentInANoteFoldedToItsWidth) {
    const auto solid = [](std::string s) {
        std::erase_if(s, [](char ch) { return ch == ' ' || ch == '\t' || ch == '\r'; });
        return s;
    };
    for (unsigned seed = 0; seed < chart_testing::kCorpusSize; ++seed) {
        const auto p = generate_program(seed);
        const auto c = chart_of(p.source);
        ASSERT_TRUE(c);
        std::string comments, shown;
        for (const std::string& line : c->lines().all())
            if (const auto hash = line.find('#'); hash != std::string::npos)
                comments += solid(line.substr(hash + 1));
        for (const chart::Note& note : chart::lay_out(*c).notes)
            for (const std::string& text : note.text) {
                EXPECT_LE(chart::char_count(text), chart::kNoteWidth) << text;
                shown += solid(text);
            }
        ASSERT_EQ(shown, comments) << "seed " << seed;
    }
}

// `c` in UTF-8 in `n` bytes, which may be more than it needs.
std::string utf8(std::uint32_t c, int n) {
    if (n == 1) return std::string(1, static_cast<char>(c));
    std::string s(static_cast<std::size_t>(n), '\0');
    for (int k = n - 1; k > 0; --k, c >>= 6)
        s[static_cast<std::size_t>(k)] = static_cast<char>(0x80 | (c & 0x3F));
    s[0] = static_cast<char>(((0xFF00 >> n) & 0xFF) | c);
    return s;
}

// Any bytes shown as text a picture can hold: each code point of valid UTF-8 as it stands (a
// control, U+FFFE or U+FFFF as a blank), each byte of anything else as U+FFFD.
TEST(ChartLayout, ShowsAnyBytesAsTextAPictureCanHold) {
    std::mt19937 rng(11);
    const auto below = [&rng](std::uint32_t n) { return static_cast<std::uint32_t>(rng() % n); };
    const auto length = [](std::uint32_t c) {
        return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    };
    const std::uint32_t edges[] = {0x1F,   0x20,   0x7E,    0x7F,    0x80,   0x9F,
                                   0xA0,   0x7FF,  0x800,   0xD7FF,  0xE000, 0xFFFD,
                                   0xFFFE, 0xFFFF, 0x10000, 0x10FFFF};
    for (int round = 0; round < 300; ++round) {
        std::string text, want;
        for (int piece = 0; piece < 10; ++piece) {
            std::uint32_t c = below(2) ? edges[below(16)] : below(0x110000);
            if (c >= 0xD800 && c <= 0xDFFF) c -= 0x800;
            std::string bad;  // bytes that are no UTF-8, each to be shown as U+FFFD
            const std::string whole = utf8(c | 0x80, length(c | 0x80));
            switch (below(7)) {
                case 0:
                    bad = utf8(0xD800 + below(0x800), 3);
                    break;  // a surrogate
                case 1:
                    bad = length(c) < 4 ? utf8(c, length(c) + 1) : "";
                    break;  // too long
                case 2:
                    bad = utf8(0x110000 + below(0xF0000), 4);
                    break;  // too large
                case 3:
                    bad = whole.substr(1);
                    break;  // with no lead
                case 4:
                    bad = whole.substr(0, whole.size() - 1);
                    break;  // cut short
                default:
                    break;
            }
            if (!bad.empty()) {
                text += bad + "x";
                for (std::size_t k = 0; k < bad.size(); ++k)
                    want += "\uFFFD";
                want += "x";
                continue;
            }
            const bool blank = c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0xFFFE || c == 0xFFFF;
            text += utf8(c, length(c));
            want += blank ? " " : utf8(c, length(c));
        }
        ASSERT_EQ(chart::shown_text(text, 1000), want) << "round " << round;
    }
}

}  // namespace
