#include "chart_svg.h"

#include <array>
#include <string_view>

namespace chart {

namespace {

struct Colours {
    std::string_view fill;
    std::string_view stroke;
};

Colours colours_of(Shape s) {
    switch (s) {
        case Shape::Box:
            return {"#e6effc", "#3d6fb4"};
        case Shape::Delay:
            return {"#fff3dc", "#b57a12"};
        case Shape::Decision:
            return {"#e4f5e4", "#3a8a3a"};
        case Shape::LoopHead:
        case Shape::LoopEnd:
            return {"#f1e6fa", "#7b45a8"};
        case Shape::Join:
            return {"#44505c", "#44505c"};
        case Shape::Start:
        case Shape::Finish:
        case Shape::Stop:
            break;
    }
    return {"#ececec", "#555555"};
}

std::string num(int n) {
    return std::to_string(n);
}

std::string pt(int x, int y) {
    return num(x) + "," + num(y);
}

// The outline of an icon's shape.
std::string outline(const Icon& i) {
    const Rect& r = i.rect;
    const int cx = r.x + r.w / 2, cy = r.y + r.h / 2;
    const std::string box = "x=\"" + num(r.x) + "\" y=\"" + num(r.y) + "\" width=\"" + num(r.w) +
                            "\" height=\"" + num(r.h) + "\"";
    switch (i.shape) {
        case Shape::Decision:
            return "<polygon points=\"" + pt(cx, r.y) + " " + pt(r.right(), cy) + " " +
                   pt(cx, r.bottom()) + " " + pt(r.x, cy) + "\"/>";
        case Shape::LoopHead:
        case Shape::LoopEnd: {
            const int in = i.shape == Shape::LoopHead ? 10 : 6;
            return "<polygon points=\"" + pt(r.x + in, r.y) + " " + pt(r.right() - in, r.y) + " " +
                   pt(r.right(), cy) + " " + pt(r.right() - in, r.bottom()) + " " +
                   pt(r.x + in, r.bottom()) + " " + pt(r.x, cy) + "\"/>";
        }
        case Shape::Delay: {
            // Flat on the left, round on the right: the sign for a wait.
            const int flat = r.right() - r.h / 2, bulge = flat + r.h * 2 / 3;
            return "<path d=\"M" + pt(r.x, r.y) + " H" + num(flat) + " C" + pt(bulge, r.y) + " " +
                   pt(bulge, r.bottom()) + " " + pt(flat, r.bottom()) + " H" + num(r.x) + " Z\"/>";
        }
        case Shape::Box:
            return "<rect " + box + " rx=\"3\"/>";
        case Shape::Join:
            return "<rect " + box + "/>";
        case Shape::Start:
        case Shape::Finish:
        case Shape::Stop:
            break;
    }
    return "<rect " + box + " rx=\"" + num(r.h / 2) + "\"/>";
}

// An arrow's head where a way ends, pointing along its last run.
std::string arrow_head(const Path& w) {
    const Point& a = w.points[w.points.size() - 2];
    const Point& b = w.points.back();
    const int dx = b.x > a.x ? 1 : b.x < a.x ? -1 : 0;
    const int dy = b.y > a.y ? 1 : b.y < a.y ? -1 : 0;
    const int bx = b.x - 7 * dx, by = b.y - 7 * dy;
    return "<polygon points=\"" + pt(b.x, b.y) + " " + pt(bx - 4 * dy, by - 4 * dx) + " " +
           pt(bx + 4 * dy, by + 4 * dx) + "\"/>";
}

void write_ways(const Layout& l, std::string& out) {
    out += "<g fill=\"none\" stroke=\"#44505c\" stroke-width=\"1.5\">\n";
    for (const Path& w : l.ways) {
        out += "<polyline points=\"";
        for (std::size_t k = 0; k < w.points.size(); ++k)
            out += (k ? " " : "") + pt(w.points[k].x, w.points[k].y);
        out += "\"/>\n";
    }
    out += "</g>\n<g fill=\"#44505c\" stroke=\"none\">\n";
    for (const Path& w : l.ways) {
        out += arrow_head(w) + "\n";
        if (w.label == WayLabel::None) continue;
        const Point& s = w.points.front();
        const bool yes = w.label == WayLabel::Yes;
        out += "<text x=\"" + num(s.x + 4) + "\" y=\"" + num(yes ? s.y + 12 : s.y - 4) + "\">" +
               (yes ? "yes" : "no") + "</text>\n";
    }
    out += "</g>\n";
}

void write_notes(const Layout& l, std::string& out) {
    out += "<g fill=\"#fffbe6\" stroke=\"#a89a5a\">\n";
    for (const Note& n : l.notes) {
        const Rect& r = n.rect;
        const Rect& i = l.icons[static_cast<std::size_t>(n.icon)].rect;
        const int y = i.y + std::min(i.h, r.h) / 2;
        const int from = r.x > i.x ? i.right() : i.x, to = r.x > i.x ? r.x : r.right();
        out += "<line x1=\"" + num(from) + "\" y1=\"" + num(y) + "\" x2=\"" + num(to) + "\" y2=\"" +
               num(y) + "\" stroke-dasharray=\"3,3\"/>\n";
        out += "<rect x=\"" + num(r.x) + "\" y=\"" + num(r.y) + "\" width=\"" + num(r.w) +
               "\" height=\"" + num(r.h) + "\"/>\n";
        for (std::size_t k = 0; k < n.text.size(); ++k)
            out += "<text x=\"" + num(r.x + 7) + "\" y=\"" +
                   num(r.y + 1 + kLineHeight * static_cast<int>(k + 1)) +
                   "\" fill=\"#5a5030\" stroke=\"none\">" + xml_escaped(n.text[k]) + "</text>\n";
    }
    out += "</g>\n";
}

void write_icon(const Chart& c, const Icon& i, int lit_line, std::string& out) {
    const bool lit = lit_line != 0 && i.line == lit_line && i.of_code();
    const Colours k = lit ? Colours{"#ffd84d", "#b07d00"} : colours_of(i.shape);
    out += "<g fill=\"" + std::string(k.fill) + "\" stroke=\"" + std::string(k.stroke) +
           "\" stroke-width=\"" + (lit ? "3" : "1.5") + "\">";
    if (i.of_code())
        out += "<title>line " + num(i.line) + ": " + xml_escaped(code_of(c.lines().at(i.line))) +
               "</title>";
    out += outline(i);
    if (!i.text.empty())
        out += "<text x=\"" + num(i.rect.x + i.rect.w / 2) + "\" y=\"" +
               num(i.rect.y + i.rect.h / 2 + 4) +
               "\" text-anchor=\"middle\" fill=\"#1c2430\" stroke=\"none\">" + xml_escaped(i.text) +
               "</text>";
    out += "</g>\n";
}

}  // namespace

std::string xml_escaped(std::string_view text) {
    std::string out;
    for (char ch : text) {
        switch (ch) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += ch;
        }
    }
    return out;
}

std::string chart_svg(const Chart& chart, const Layout& layout, const PictureOptions& options) {
    const int z = options.zoom;
    std::string out =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.2\" baseProfile=\"tiny\" width=\"" +
        num(layout.width * z) + "\" height=\"" + num(layout.height * z) + "\" viewBox=\"0 0 " +
        num(layout.width) + " " + num(layout.height) + "\" font-family=\"monospace\" font-size=\"" +
        num(kFontSize) + "\">\n";
    out += "<rect x=\"0\" y=\"0\" width=\"" + num(layout.width) + "\" height=\"" +
           num(layout.height) + "\" fill=\"#ffffff\"/>\n";
    write_ways(layout, out);
    write_notes(layout, out);
    for (const Icon& i : layout.icons)
        write_icon(chart, i, options.lit_line, out);
    return out + "</svg>\n";
}

}  // namespace chart
