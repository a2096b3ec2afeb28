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

// At most one repaint a display frame.
constexpr int kFrameMs = 16;
constexpr int kMinZoom = 1, kMaxZoom = 3;

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
    : QWidget(parent), panel_(&panel), input_(input), scene_(std::make_unique<PanelScene>(panel)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    frame_timer_.setSingleShot(true);
    frame_timer_.setInterval(kFrameMs);
    connect(&frame_timer_, &QTimer::timeout, this, &PanelView::flush);
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
    frame_timer_.stop();
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
    QRegion region;
    for (const std::int32_t id : changed) {
        // An element that moved or hid leaves its old place to repaint as well.
        const QRect place = scene_->element_rect(id);
        region += scaled(last_rects_[id]);
        region += scaled(place);
        last_rects_[id] = place;
    }
    schedule(region);
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

void PanelView::schedule(const QRegion& region) {
    pending_ += region;
    if (!frame_timer_.isActive()) frame_timer_.start();
}

void PanelView::flush() {
    if (pending_.isEmpty()) return;
    update(pending_);
    pending_ = QRegion();
}

void PanelView::paintEvent(QPaintEvent* event) {
    // A repaint by the platform raises the panel's own Paint first, as a container does; what it
    // changes is then painted here, or in the next frame where it lies outside this region.
    panel_->Paint();
    refresh();
    QPainter p(this);
    p.scale(zoom_, zoom_);
    const QRect area = event->rect();
    // The panel pixels the event touches, rounded outwards.
    const QRect panel_area(QPoint(area.left() / zoom_, area.top() / zoom_),
                           QPoint(area.right() / zoom_, area.bottom() / zoom_));
    scene_->paint(p, panel_area, focused_);
    ++repaint_count_;
    pending_ -= event->region();
    if (pending_.isEmpty()) frame_timer_.stop();
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
