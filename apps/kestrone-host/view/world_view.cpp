#include "world_view.h"

#include "floor_painter.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace world {

namespace {
const QColor kRim(0xd8, 0xd8, 0xd8), kTrail(0x30, 0x60, 0xe0), kMark(0xe0, 0x30, 0x30);
// The wheel turns the robot this many degrees a notch.
constexpr double kDegreesPerNotch = 15;
// The ground's picture is kept up to this many pixels (a large window's worth).
constexpr std::int64_t kLargestKeptGround = 4096 * 2160;
}  // namespace

WorldView::WorldView(WorldDriver& driver, QWidget* parent)
    : QWidget(parent), driver_(driver), pacer_(*this, [this] { repaint_changes(); }) {
    // It paints all of itself: the dock under it is not painted at each frame.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(false);
}

void WorldView::set_zoom(int zoom) {
    zoom = std::clamp(zoom, 1, kLargestZoom);
    if (zoom == zoom_) return;
    zoom_ = zoom;
    updateGeometry();
    update();
}

void WorldView::set_fit(bool fit) {
    fit_ = fit;
    updateGeometry();
    update();
}

QSize WorldView::sizeHint() const {
    const World& w = driver_.world();
    if (!w.loaded()) return {2 * kMargin + 200, 2 * kMargin + 150};
    const Frame f = zoom_frame();
    return {2 * kMargin + static_cast<int>(std::lround(w.arena().width * f.scale)),
            2 * kMargin + static_cast<int>(std::lround(w.arena().height * f.scale))};
}

QSize WorldView::minimumSizeHint() const {
    return fit_ ? QSize(4 * kMargin, 4 * kMargin) : sizeHint();
}

QPointF WorldView::Frame::px(Vec f, double height) const {
    return {origin.x() + f.x * scale, origin.y() + (height - f.y) * scale};
}

WorldView::Frame WorldView::zoom_frame() const {
    return {kPixelsPerMm * zoom_, QPointF(kMargin, kMargin)};
}

// Fitting: the whole floor inside the rim, centred; too small a widget draws at the zoom's scale.
WorldView::Frame WorldView::screen_frame() const {
    const World& w = driver_.world();
    const double room_x = width() - 2.0 * kMargin, room_y = height() - 2.0 * kMargin;
    if (!fit_ || !w.loaded() || room_x < 1 || room_y < 1) return zoom_frame();
    const double s = std::min(room_x / w.arena().width, room_y / w.arena().height);
    return {s, QPointF((width() - w.arena().width * s) / 2, (height() - w.arena().height * s) / 2)};
}

QPointF WorldView::to_pixels(Vec f) const {
    const World& w = driver_.world();
    return screen_frame().px(f, w.loaded() ? w.arena().height : 0);
}

Vec WorldView::to_floor(QPointF px) const {
    const World& w = driver_.world();
    const double height = w.loaded() ? w.arena().height : 0;
    const Frame f = screen_frame();
    return {(px.x() - f.origin.x()) / f.scale, height - (px.y() - f.origin.y()) / f.scale};
}

void WorldView::refresh() {
    if (driver_.world().revision() != painted_revision_) pacer_.request();
}

QImage WorldView::render_image(std::string* why) const {
    const QSize size = sizeHint();
    if (size.width() > kLargestImageSide || size.height() > kLargestImageSide) {
        if (why)
            *why = "the arena at this zoom would be a picture of " + std::to_string(size.width()) +
                   " x " + std::to_string(size.height()) + " pixels, more than " +
                   std::to_string(kLargestImageSide) + " on a side";
        return {};
    }
    QImage image(size, QImage::Format_ARGB32);
    if (image.isNull()) {
        if (why) *why = "there is no memory for a picture of the arena";
        return image;
    }
    image.fill(kRim);
    QPainter p(&image);
    paint(p, zoom_frame());
    return image;
}

bool WorldView::ground_current() const {
    return ground_arena_ == driver_.world().arena_revision() && ground_size_ == size() &&
           ground_zoom_ == zoom_ && ground_fit_ == fit_;
}

bool WorldView::trail_restarted() const {
    const std::vector<Vec>& trail = driver_.world().trail();
    return trail.size() < ground_trail_ || trail.empty() || trail.front() != ground_trail_front_;
}

const QPixmap& WorldView::ground() {
    const World& w = driver_.world();
    const std::vector<Vec>& trail = w.trail();
    if (!ground_current() || trail_restarted()) {
        ground_arena_ = w.arena_revision();
        ground_size_ = size();
        ground_zoom_ = zoom_;
        ground_fit_ = fit_;
        ground_trail_ = 0;
        ground_ = QPixmap();
        if (!w.loaded() || std::int64_t{width()} * height() > kLargestKeptGround) return ground_;
        const qreal ratio = devicePixelRatioF();
        ground_ = QPixmap(size() * ratio);
        ground_.setDevicePixelRatio(ratio);
        ground_.fill(kRim);
        QPainter p(&ground_);
        p.setRenderHint(QPainter::Antialiasing);
        paint_floor(p, screen_frame());
    }
    if (ground_.isNull() || trail.empty()) return ground_;
    // The trail's new stretch, joined to the last point drawn.
    const Frame f = screen_frame();
    QPolygonF stretch;
    for (std::size_t i = ground_trail_ > 0 ? ground_trail_ - 1 : 0; i < trail.size(); ++i)
        stretch << f.px(trail[i], w.arena().height);
    if (stretch.size() > 1) {
        QPainter p(&ground_);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(kTrail, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(stretch);
    }
    ground_trail_ = trail.size();
    ground_trail_front_ = trail.front();
    return ground_;
}

void WorldView::paintEvent(QPaintEvent* event) {
    QPainter p(this);
    // Only what is exposed: a floor of kilometres is far larger than its scroll area.
    p.setClipRect(event->rect());
    // The floor changes only with the arena and the size, the trail only grows: at each frame
    // only the body moves, and the trail's stretch from its last point.
    if (const QPixmap& ground = this->ground(); !ground.isNull()) {
        const qreal ratio = ground.devicePixelRatio();
        p.drawPixmap(event->rect(), ground,
                     QRectF(event->rect().topLeft() * ratio, event->rect().size() * ratio));
        p.setRenderHint(QPainter::Antialiasing);
        const Frame f = screen_frame();
        const World& w = driver_.world();
        if (!w.trail().empty()) {
            p.setPen(QPen(kTrail, 1.5, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(f.px(w.trail().back(), w.arena().height),
                       f.px(w.pose().centre, w.arena().height));
        }
        paint_body(p, f);
        painted_body_ = body_rect(f);
    } else {
        p.fillRect(event->rect(), kRim);
        paint(p, screen_frame());
    }
    painted_revision_ = driver_.world().revision();
}

void WorldView::paint(QPainter& p, const Frame& f) const {
    if (!driver_.world().loaded()) return;
    p.setRenderHint(QPainter::Antialiasing);
    paint_floor(p, f);
    paint_robot(p, f);
}

void WorldView::paint_floor(QPainter& p, const Frame& f) const {
    world::paint_floor(p, driver_.world().arena(),
                       {f.scale, f.origin, driver_.world().arena().height});
}

void WorldView::paint_robot(QPainter& p, const Frame& f) const {
    const World& w = driver_.world();
    const auto pixel = [&](Vec v) { return f.px(v, w.arena().height); };
    if (w.trail().size() > 1) {
        QPainterPath trail(pixel(w.trail().front()));
        for (const Vec& pt : w.trail())
            trail.lineTo(pixel(pt));
        trail.lineTo(pixel(w.pose().centre));
        p.strokePath(trail, QPen(kTrail, 1.5));
    }
    paint_body(p, f);
}

void WorldView::paint_body(QPainter& p, const Frame& f) const {
    const World& w = driver_.world();
    const auto pixel = [&](Vec v) { return f.px(v, w.arena().height); };
    const Pose& pose = w.pose();
    world::paint_body(p, pose, {f.scale, f.origin, w.arena().height});
    const Readings read = w.readings();
    const double dot_r = std::max(2.0, 8 * f.scale);
    for (bool left : {true, false}) {
        const bool on = left ? read.line_left : read.line_right;
        p.setPen(QPen(Qt::black, 1));
        p.setBrush(on ? kMark : QColor(Qt::white));
        p.drawEllipse(pixel(line_sensor_point(pose, left)), dot_r, dot_r);
    }
}

// The pixels the body, its heading, its sensors and the trail's last stretch cover.
QRect WorldView::body_rect(const Frame& f) const {
    const World& w = driver_.world();
    const auto pixel = [&](Vec v) { return f.px(v, w.arena().height); };
    const auto around = [](QPointF c, double r) {
        return QRectF(c - QPointF(r, r), c + QPointF(r, r));
    };
    const Pose& pose = w.pose();
    QRectF box = around(pixel(pose.centre), kBodyRadius * f.scale + std::max(1.5, 3 * f.scale));
    const double dot_r = std::max(2.0, 8 * f.scale) + 1;
    for (bool left : {true, false})
        box |= around(pixel(line_sensor_point(pose, left)), dot_r);
    if (!w.trail().empty()) box |= around(pixel(w.trail().back()), 1.5);
    return box.toAlignedRect().adjusted(-2, -2, 2, 2);
}

// What moved since the last paint: the body where it was and where it is, and the trail's new
// stretch (drawn onto the ground when painted). All of it when the ground is drawn afresh.
void WorldView::repaint_changes() {
    const World& w = driver_.world();
    const std::vector<Vec>& trail = w.trail();
    if (ground_.isNull() || !ground_current() || trail_restarted()) return update();
    const Frame f = screen_frame();
    QRect region = body_rect(f) | painted_body_;
    for (std::size_t i = ground_trail_ > 0 ? ground_trail_ - 1 : 0; i < trail.size(); ++i) {
        const QPointF at = f.px(trail[i], w.arena().height);
        region |= QRectF(at - QPointF(3, 3), at + QPointF(3, 3)).toAlignedRect();
    }
    update(region);
}

bool WorldView::put_down(const Pose& pose) {
    if (!driver_.world().place(pose)) return false;
    driver_.placed();
    update();
    emit robotMoved();
    return true;
}

void WorldView::mousePressEvent(QMouseEvent* event) {
    if (!movable_ || !driver_.world().loaded() || event->button() != Qt::LeftButton) return;
    const Vec at = to_floor(event->position());
    const Vec from_centre = at - driver_.world().pose().centre;
    if (length(from_centre) > kBodyRadius) return;
    carrying_ = true;
    grip_ = from_centre;
    lifted_ = driver_.world().pose().centre;
}

void WorldView::mouseMoveEvent(QMouseEvent* event) {
    if (!carrying_ || !movable_) return;
    put_down({to_floor(event->position()) - grip_, driver_.world().pose().heading});
}

void WorldView::mouseReleaseEvent(QMouseEvent* event) {
    if (!carrying_) return;
    carrying_ = false;
    if (!movable_) return;
    put_down({to_floor(event->position()) - grip_, driver_.world().pose().heading});
    // Where the last move left it, when the release itself could not put it down.
    if (driver_.world().pose().centre != lifted_) emit robotPutDown();
}

void WorldView::wheelEvent(QWheelEvent* event) {
    if (!movable_ || !driver_.world().loaded()) return;
    const double notches = event->angleDelta().y() / 120.0;
    if (notches == 0) return;
    Pose turned = driver_.world().pose();
    turned.heading += radians(kDegreesPerNotch * notches);
    if (put_down(turned)) emit robotPutDown();
    event->accept();
}

}  // namespace world
