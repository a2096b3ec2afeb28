#include "chart_canvas.h"

#include <QApplication>
#include <QDrag>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "chart_picture.h"

namespace chartqt {

namespace {
// In layout units: how near a way a drop takes it, and the width of an icon's left edge where a
// click toggles its breakpoint.
constexpr int kDropReach = 10;
constexpr int kMarkZone = 12;
const QColor kBreakColour(0xd0, 0x30, 0x30);
const QColor kDropColour(0x1c, 0x6d, 0xd0);
}  // namespace

ChartCanvas::ChartCanvas(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(true);
}

ChartCanvas::~ChartCanvas() = default;

void ChartCanvas::set_chart(std::unique_ptr<chart::Chart> chart) {
    chart_ = std::move(chart);
    layout_ = chart_ ? chart::lay_out(*chart_) : chart::Layout{};
    redraw();
}

void ChartCanvas::set_lit_line(int line) {
    if (line == lit_line_) return;
    lit_line_ = line;
    redraw();
}

QRect ChartCanvas::set_framed_line(int line) {
    framed_line_ = line;
    update();
    return pixels_of(layout_.icon_of_line(line));
}

void ChartCanvas::set_zoom(int zoom) {
    zoom_ = std::clamp(zoom, 1, 3);
    redraw();
}

int ChartCanvas::line_at(QPoint pixel) const {
    const int icon = layout_.icon_at({pixel.x() / zoom_, pixel.y() / zoom_});
    if (icon < 0) return 0;
    const chart::Icon& i = layout_.icons[static_cast<std::size_t>(icon)];
    return i.of_code() ? i.line : 0;
}

void ChartCanvas::set_breakpoints(std::set<int> lines) {
    if (lines == breakpoints_) return;
    breakpoints_ = std::move(lines);
    update();
}

bool ChartCanvas::in_mark_zone(QPoint pixel, int line) const {
    return pixel.x() < pixels_of_line(line).x() + kMarkZone * zoom_;
}

std::optional<chart::Way> ChartCanvas::way_at(QPoint pixel) const {
    if (!chart_) return std::nullopt;
    return layout_.way_at({pixel.x() / zoom_, pixel.y() / zoom_}, kDropReach);
}

QSize ChartCanvas::sizeHint() const {
    return image_.size();
}

void ChartCanvas::redraw() {
    image_ = chart_ ? chart_image(*chart_, layout_, {zoom_, lit_line_}) : QImage();
    setFixedSize(image_.size());
    update();
}

QRect ChartCanvas::pixels_of(int icon) const {
    if (icon < 0) return {};
    const chart::Rect& r = layout_.icons[static_cast<std::size_t>(icon)].rect;
    return {r.x * zoom_, r.y * zoom_, r.w * zoom_, r.h * zoom_};
}

// As the SVG titles it: "line 7: DriveForwards(200)".
bool ChartCanvas::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const int line = line_at(help->pos()))
        QToolTip::showText(
            help->globalPos(),
            QString("line %1: %2")
                .arg(line)
                .arg(QString::fromStdString(std::string(chart::code_of(chart_->lines().at(line))))),
            this);
    else
        QToolTip::hideText();
    return true;
}

void ChartCanvas::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawImage(0, 0, image_);
    paint_marks(painter);
    paint_drop_way(painter);
    const QRect framed = pixels_of(layout_.icon_of_line(framed_line_));
    if (framed.isEmpty()) return;
    painter.setPen(QPen(QColor(0x1c, 0x6d, 0xd0), 2, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(framed.adjusted(-4, -4, 4, 4));
}

// A dot on the left edge of each icon with a breakpoint, where a click sets or clears it.
void ChartCanvas::paint_marks(QPainter& painter) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(kBreakColour);
    const int radius = 5 * zoom_;
    for (const chart::Icon& i : layout_.icons) {
        if (!i.of_code() || !breakpoints_.count(i.line)) continue;
        const QRect r(i.rect.x * zoom_, i.rect.y * zoom_, i.rect.w * zoom_, i.rect.h * zoom_);
        painter.drawEllipse(QPoint(r.left() + radius, r.center().y()), radius, radius);
    }
}

// The way a drop would go on, drawn over in the colour of the frame.
void ChartCanvas::paint_drop_way(QPainter& painter) const {
    if (!drop_way_) return;
    painter.setPen(QPen(kDropColour, 3 * zoom_));
    for (const chart::Path& p : layout_.ways) {
        if (p.place != drop_way_) continue;
        for (std::size_t k = 1; k < p.points.size(); ++k)
            painter.drawLine(p.points[k - 1].x * zoom_, p.points[k - 1].y * zoom_,
                             p.points[k].x * zoom_, p.points[k].y * zoom_);
    }
}

void ChartCanvas::mousePressEvent(QMouseEvent* event) {
    pressed_line_ = 0;
    if (event->button() != Qt::LeftButton) return;
    const QPoint at = event->position().toPoint();
    const int line = line_at(at);
    if (!line) return;
    if (in_mark_zone(at, line)) {
        emit breakpoint_toggled(line);
        return;
    }
    pressed_at_ = at;
    pressed_line_ = line;
    emit line_clicked(line);
    // The editor's caret goes to the line; the keys stay here, for Delete.
    setFocus();
}

// A pressed icon dragged far enough goes, with its body, where it is dropped.
void ChartCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_line_ || !(event->buttons() & Qt::LeftButton)) return;
    if ((event->position().toPoint() - pressed_at_).manhattanLength() <
        QApplication::startDragDistance())
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(drag_data({ChartDrag::From::Line, std::exchange(pressed_line_, 0)}));
    drag->exec(Qt::MoveAction);
}

void ChartCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const int line = line_at(at);
    if (event->button() == Qt::LeftButton && line && !in_mark_zone(at, line)) emit edit_asked(line);
}

void ChartCanvas::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo)) return emit undo_asked();
    if (event->matches(QKeySequence::Redo)) return emit redo_asked();
    const bool remove = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (!remove || !chart_ || !chart_->node_at(framed_line_)) return QWidget::keyPressEvent(event);
    emit remove_asked(framed_line_);
}

void ChartCanvas::contextMenuEvent(QContextMenuEvent* event) {
    const int line = line_at(event->pos());
    if (!line) return;
    emit line_clicked(line);
    QMenu menu(this);
    connect(menu.addAction(tr("Edit...")), &QAction::triggered, this,
            [this, line] { emit edit_asked(line); });
    connect(menu.addAction(tr("Delete")), &QAction::triggered, this,
            [this, line] { emit remove_asked(line); });
    connect(menu.addAction(tr("Toggle breakpoint")), &QAction::triggered, this,
            [this, line] { emit breakpoint_toggled(line); });
    menu.exec(event->globalPos());
}

void ChartCanvas::dragEnterEvent(QDragEnterEvent* event) {
    if (drag_of(event->mimeData())) event->acceptProposedAction();
}

void ChartCanvas::dragMoveEvent(QDragMoveEvent* event) {
    const auto way = way_at(event->position().toPoint());
    if (way != drop_way_) {
        drop_way_ = way;
        update();
    }
    if (way && drag_of(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void ChartCanvas::dragLeaveEvent(QDragLeaveEvent*) {
    drop_way_.reset();
    update();
}

void ChartCanvas::dropEvent(QDropEvent* event) {
    drop_way_.reset();
    update();
    const auto drag = drag_of(event->mimeData());
    const auto way = way_at(event->position().toPoint());
    if (!drag || !way) return event->ignore();
    event->acceptProposedAction();
    emit dropped(*drag, *way);
}

}  // namespace chartqt
