// The mouse and keys on the arena being edited: each tool's press, drag and release.
#include <QKeyEvent>
#include <QMouseEvent>

#include "arena_canvas.h"
#include "arena_shapes.h"

namespace world {

namespace {
// How near in pixels the pointer must come to an item to take it.
constexpr double kReachPixels = 6;
}  // namespace

void ArenaCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) return finish_line();
    if (event->button() != Qt::LeftButton) return;
    setFocus();
    const Vec at = snapped(to_floor(event->position()));
    at_ = at;
    if (pen_.tool == Tool::Line) {
        if (path_.empty() || path_.back() != at) path_.push_back(at);
    } else {
        pressed_ = at;
        if (pen_.tool == Tool::Select) press_select(to_floor(event->position()));
    }
    update();
}

void ArenaCanvas::press_select(Vec at) {
    const bool on_start = length(at - document_.start().at) <= kBodyRadius;
    select(on_start ? std::nullopt : item_at(document_, at, kReachPixels / frame().scale));
    start_selected_ = on_start;
}

void ArenaCanvas::mouseMoveEvent(QMouseEvent* event) {
    const Vec at = snapped(to_floor(event->position()));
    if (at == at_) return;
    at_ = at;
    if (pressed_ || !path_.empty()) update();
}

void ArenaCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressed_) return;
    at_ = snapped(to_floor(event->position()));
    const Vec by = at_ - *pressed_;
    ArenaDocument after = preview();
    pressed_.reset();
    update();
    if (pen_.tool == Tool::Select) {
        if (by != Vec{} && (selected_ || start_selected_)) edit_(std::move(after), tr("Move"));
        return;
    }
    if (pen_.tool == Tool::Start) {
        edit_(std::move(after), tr("Place the start"));
        return;
    }
    if (after.items().size() == document_.items().size()) return;  // no wall nor zone of no size
    Shape made = after.items().back().shape;
    if (auto* z = std::get_if<Zone>(&made)) z->name = free_zone_name();
    const QString what = pen_.tool == Tool::Wall   ? tr("Draw a wall")
                         : pen_.tool == Tool::Zone ? tr("Draw a zone")
                                                   : tr("Place a light");
    add(std::move(made), what);
}

void ArenaCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (pen_.tool == Tool::Line) return finish_line();
    QWidget::mouseDoubleClickEvent(event);
}

void ArenaCanvas::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return delete_selected();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return finish_line();
        case Qt::Key_Escape:
            return cancel();
        default:
            QWidget::keyPressEvent(event);
    }
}

bool ArenaCanvas::add(Shape shape, const QString& what) {
    ArenaDocument after = document_;
    const std::size_t index = after.add(std::move(shape));
    if (!edit_(std::move(after), what)) return false;
    select(index);
    return true;
}

void ArenaCanvas::finish_line() {
    std::vector<Vec> points;
    points.swap(path_);
    update();
    if (points.size() > 1) add(Line{pen_.line_width, std::move(points)}, tr("Draw a line"));
}

void ArenaCanvas::cancel() {
    path_.clear();
    pressed_.reset();
    update();
}

void ArenaCanvas::delete_selected() {
    if (!selected_) return;
    ArenaDocument after = document_;
    after.remove(*selected_);
    edit_(std::move(after), tr("Delete"));
}

std::string ArenaCanvas::free_zone_name() const {
    for (int n = 1;; ++n) {
        const std::string name = "zone" + std::to_string(n);
        const auto same = [&](const DocumentItem& item) {
            const auto* z = std::get_if<Zone>(&item.shape);
            return z && z->name == name;
        };
        if (std::none_of(document_.items().begin(), document_.items().end(), same)) return name;
    }
}

}  // namespace world
