#include "panel_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "focus_order.h"
#include "panel_scene.h"

namespace panelqt {

using kestrone::HRESULT;
using kestrone::S_OK;

namespace {

constexpr int kMinZoom = 1, kMaxZoom = 3;
// Places this close are painted as one.
constexpr int kNear = 4;

// `r` into `boxes`: the box of it and of every box that lies close to it, taken in until none
// is left. The wheels turning at both sides of the panel change a few thin strips each; the box
// around all of them would take in most of the panel, and painting every element in it would
// cost far more than painting each group apart.
void gather(std::vector<QRect>& boxes, QRect r) {
    for (auto it = boxes.begin(); it != boxes.end();) {
        if (it->adjusted(-kNear, -kNear, kNear, kNear).intersects(r)) {
            r |= *it;
            boxes.erase(it);
            it = boxes.begin();
        } else {
            ++it;
        }
    }
    boxes.push_back(r);
}

std::vector<QRect> clusters(const QRegion& region) {
    std::vector<QRect> boxes;
    for (const QRect& r : region)
        gather(boxes, r);
    return boxes;
}

}  // namespace

HRESULT DirectPanelInput::pointer(kestrone::PointerAction action, std::int32_t buttons,
                                  std::int32_t shift, float x, float y) {
    return panel_->Pointer(action, buttons, shift, x, y);
}

HRESULT DirectPanelInput::click(std::int32_t id) {
    return panel_->Click(id);
}

HRESULT DirectPanelInput::arrow(std::int32_t id, bool up) {
    return panel_->Arrow(id, up);
}

PanelView::PanelView(kestrone::IKestronePanel& panel, PanelInput& input, QWidget* parent)
    : QWidget(parent),
      panel_(&panel),
      input_(input),
      scene_(std::make_unique<PanelScene>(panel)),
      pacer_(*this, [this] { flush(); }) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    reset(panel);
}

PanelView::~PanelView() = default;

void PanelView::set_zoom(int zoom) {
    zoom_ = std::clamp(zoom, kMinZoom, kMaxZoom);
    setFixedSize(scene_->size() * zoom_);
    update();
}

void PanelView::reset(kestrone::IKestronePanel& panel) {
    panel_ = &panel;
    scene_->reset(panel);
    focused_ = -1;
    pending_ = QRegion();
    boxes_.clear();
    pacer_.cancel();
    if (panel_->GetRevision(&painted_revision_) != S_OK) painted_revision_ = 0;
    remember_places();
    set_zoom(zoom_);
}

void PanelView::refresh() {
    follow_focus();
    std::vector<std::int32_t> changed;
    std::uint64_t now = 0;
    if (panel_->GetChangedElements(painted_revision_, &changed, &now) != S_OK) return;
    painted_revision_ = now;
    if (changed.empty()) return;
    const QSize want = scene_->size() * zoom_;
    if (want != size()) {
        // The panel's size changed: the whole of it is repainted at the new size.
        setFixedSize(want);
        schedule(rect());
        return;
    }
    for (const std::int32_t id : changed) {
        // An element that moved or hid leaves its old place to repaint as well.
        const QRect place = scene_->element_rect(id);
        QRect& last = last_rects_[id];
        schedule(scaled(last));
        if (place != last) schedule(scaled(place));
        last = place;
    }
}

QRect PanelView::scaled(const QRect& r) const {
    return {r.topLeft() * zoom_, r.size() * zoom_};
}

QRect PanelView::widget_rect(std::int32_t id) const {
    return scaled(scene_->element_rect(id));
}

void PanelView::remember_places() {
    last_rects_.clear();
    std::int32_t count = 0;
    if (panel_->GetElementCount(&count) != S_OK) return;
    for (std::int32_t id = 0; id < count; ++id)
        last_rects_[id] = scene_->element_rect(id);
}

// Called at every tick for the same few elements: the region grows only by a place outside the
// boxes already due, and then by the box that gathers it.
void PanelView::schedule(const QRect& place) {
    pacer_.request();
    if (place.isEmpty()) return;
    for (const QRect& box : boxes_)
        if (box.contains(place)) return;
    gather(boxes_, place);
    pending_ += boxes_.back();
}

void PanelView::flush() {
    if (pending_.isEmpty()) return;
    update(pending_);
    pending_ = QRegion();
    boxes_.clear();
}

void PanelView::paintEvent(QPaintEvent* event) {
    // A repaint by the platform raises the panel's own Paint first, as a container does; what it
    // changes is then painted here, or in the next frame where it lies outside this region.
    panel_->Paint();
    refresh();
    QPainter p(this);
    p.scale(zoom_, zoom_);
    for (const QRect& area : clusters(event->region())) {
        // The panel pixels the area touches, rounded outwards.
        const QRect panel_area(QPoint(area.left() / zoom_, area.top() / zoom_),
                               QPoint(area.right() / zoom_, area.bottom() / zoom_));
        scene_->paint(p, panel_area, focused_);
    }
    ++repaint_count_;
    pending_ -= event->region();
    boxes_.clear();
    if (pending_.isEmpty()) pacer_.cancel();
}

QImage render_panel(kestrone::IKestronePanel& panel, int zoom, int device_pixel_ratio) {
    PanelScene scene(panel);
    zoom = std::clamp(zoom, kMinZoom, kMaxZoom);
    const int ratio = std::max(device_pixel_ratio, 1);
    const QSize size = scene.size();
    if (size.isEmpty()) return {};
    QImage image(size * zoom * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.scale(zoom, zoom);
    if (scene.paint(p, QRect(QPoint(0, 0), size), -1) != S_OK) return {};
    return image;
}

}  // namespace panelqt
