#include "arena_canvas.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "arena_shapes.h"
#include "world.h"

namespace world {

namespace {
const QColor kRim(0xd8, 0xd8, 0xd8), kGrid(0x80, 0x80, 0xa0, 0x40), kMark(0x20, 0x60, 0xe0);
constexpr double kMargin = 8;
// Fewer pixels than this between grid lines and the grid is not drawn.
constexpr double kSparsestGrid = 6;
}  // namespace

ArenaCanvas::ArenaCanvas(const ArenaDocument& document, Edit edit, QWidget* parent)
    : QWidget(parent), document_(document), edit_(std::move(edit)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void ArenaCanvas::set_pen(const Pen& pen) {
    if (pen.tool != pen_.tool) finish_line();
    pen_ = pen;
    update();
}

void ArenaCanvas::select(std::optional<std::size_t> index) {
    selected_ = index;
    start_selected_ = false;
    update();
    emit selectionChanged();
}

void ArenaCanvas::document_changed() {
    if (selected_ && *selected_ >= document_.items().size()) selected_.reset();
    update();
    emit selectionChanged();
}

FloorFrame ArenaCanvas::frame() const {
    const double w = document_.width(), h = document_.height();
    const double s =
        std::max(1e-6, std::min((width() - 2 * kMargin) / w, (height() - 2 * kMargin) / h));
    return {s, QPointF((width() - w * s) / 2, (height() - h * s) / 2), h};
}

Vec ArenaCanvas::snapped(Vec p) const {
    const double g = pen_.grid > 0 ? pen_.grid : 1;
    const auto one = [g](double v, double most) {
        return std::clamp(nearest_whole(std::clamp(v, 0.0, most) / g) * g, 0.0, most);
    };
    return {one(p.x, document_.width()), one(p.y, document_.height())};
}

// The start as the drag would leave it: where the mouse went down, facing where it is now.
Start ArenaCanvas::dragged_start() const {
    Start s{*pressed_, document_.start().degrees};
    const Vec way = at_ - *pressed_;
    if (way == Vec{}) return s;
    const double step = pen_.grid > 0 ? 15 : 1;
    s.degrees = nearest_whole(degrees(std::atan2(way.y, way.x)) / step) * step;
    if (s.degrees < 0) s.degrees += 360;
    return s;
}

ArenaDocument ArenaCanvas::preview() const {
    ArenaDocument d = document_;
    if (pen_.tool == Tool::Line && !path_.empty()) {
        Line l{pen_.line_width, path_};
        if (at_ != path_.back()) l.points.push_back(at_);
        if (l.points.size() > 1) d.add(l);
    }
    if (!pressed_) return d;
    const Vec from = *pressed_, by = at_ - *pressed_;
    switch (pen_.tool) {
        case Tool::Select:
            if (selected_) d.replace(*selected_, moved(d.items()[*selected_].shape, by));
            if (start_selected_) d.set_start({d.start().at + by, d.start().degrees});
            break;
        case Tool::Wall:
            if (by != Vec{}) d.add(Segment{from, at_});
            break;
        case Tool::Zone:
            if (by.x != 0 && by.y != 0)
                d.add(Zone{"",
                           {std::min(from.x, at_.x), std::min(from.y, at_.y)},
                           std::abs(by.x),
                           std::abs(by.y)});
            break;
        case Tool::Light:
            d.add(Light{at_, pen_.intensity});
            break;
        case Tool::Start:
            d.set_start(dragged_start());
            break;
        case Tool::Line:
            break;
    }
    return d;
}

void ArenaCanvas::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), kRim);
    p.setRenderHint(QPainter::Antialiasing);
    const FloorFrame f = frame();
    const ArenaDocument shown = preview();
    const Arena a = shown.arena();
    paint_floor(p, a, f);
    paint_grid(p, f);
    paint_body(p, a.start, f);
    paint_marks(p, f);
}

void ArenaCanvas::paint_grid(QPainter& p, const FloorFrame& f) const {
    if (pen_.grid <= 0 || pen_.grid * f.scale < kSparsestGrid) return;
    p.setPen(QPen(kGrid, 1));
    for (double x = pen_.grid; x < document_.width(); x += pen_.grid)
        p.drawLine(f.px({x, 0}), f.px({x, document_.height()}));
    for (double y = pen_.grid; y < document_.height(); y += pen_.grid)
        p.drawLine(f.px({0, y}), f.px({document_.width(), y}));
}

// The selection outlined, and the points of the line being drawn.
void ArenaCanvas::paint_marks(QPainter& p, const FloorFrame& f) const {
    p.setPen(QPen(kMark, 2, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    if (start_selected_) {
        const double r = (kBodyRadius + 10) * f.scale;
        p.drawEllipse(f.px(document_.start().at), r, r);
    }
    if (selected_) {
        const Shape shape = preview().items()[*selected_].shape;
        if (const auto* l = std::get_if<Line>(&shape)) {
            QPainterPath path(f.px(l->points.front()));
            for (const Vec& pt : l->points)
                path.lineTo(f.px(pt));
            p.drawPath(path);
        } else if (const auto* s = std::get_if<Segment>(&shape)) {
            p.drawLine(f.px(s->a), f.px(s->b));
        } else if (const auto* light = std::get_if<Light>(&shape)) {
            const double r = (kLightRadius + 10) * f.scale;
            p.drawEllipse(f.px(light->at), r, r);
        } else if (const auto* z = std::get_if<Zone>(&shape)) {
            p.drawRect(QRectF(f.px({z->corner.x, z->corner.y + z->height}),
                              f.px({z->corner.x + z->width, z->corner.y})));
        }
    }
    p.setPen(Qt::NoPen);
    p.setBrush(kMark);
    for (const Vec& pt : path_)
        p.drawEllipse(f.px(pt), 3.0, 3.0);
}

}  // namespace world
