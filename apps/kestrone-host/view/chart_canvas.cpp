#include "chart_canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "chart_picture.h"

namespace chartqt {

ChartCanvas::ChartCanvas(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
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
    const QRect framed = pixels_of(layout_.icon_of_line(framed_line_));
    if (framed.isEmpty()) return;
    painter.setPen(QPen(QColor(0x1c, 0x6d, 0xd0), 2, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(framed.adjusted(-4, -4, 4, 4));
}

void ChartCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (const int line = line_at(event->position().toPoint())) emit line_clicked(line);
}

}  // namespace chartqt
