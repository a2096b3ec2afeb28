#include "element_painter.h"

#include <algorithm>
#include <array>

#include "dialogue_font.h"
#include "frame_painter.h"
#include "pixel_geometry.h"

namespace panelqt {

using kestrone::ElementStyle;
using kestrone::kTextCellHeight;
using kestrone::Rgba;

namespace {

QRect inset(const QRect& r, int by) {
    return r.adjusted(by, by, -by, -by);
}

// A picture at its natural size, its top left at `at`; cut by the painter's clip.
void draw_picture(QPainter& p, const QImage* picture, QPoint at) {
    if (picture) p.drawImage(at, *picture);
}

void picture(QPainter& p, const ElementPaint& e) {
    if (!e.picture) return;
    if (!e.info.stretch) return draw_picture(p, e.picture, e.box.topLeft());
    // Scaled once to the box at panel pixels, so that a zoom doubles those pixels exactly.
    const QImage scaled =
        e.picture->scaled(e.box.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    p.drawImage(e.box.topLeft(), scaled);
}

void bordered_picture(QPainter& p, const ElementPaint& e) {
    outline(p, e.box, e.view.fore, e.view.fore);
    p.save();
    p.setClipRect(inset(e.box, 1), Qt::IntersectClip);
    draw_picture(p, e.picture, e.box.topLeft() + QPoint(1, 1));
    p.restore();
}

void picture_box(QPainter& p, const ElementPaint& e) {
    fill(p, e.box, e.view.back);
    draw_picture(p, e.picture, e.box.topLeft());
}

void group_frame(QPainter& p, const ElementPaint& e) {
    paint_group_frame(p, e.box, e.view, QString::fromStdString(e.info.caption));
}

void label(QPainter& p, const ElementPaint& e) {
    fill(p, e.box, e.view.back);
    const int border = e.info.border_style == 1 ? 1 : 0;
    if (border) outline(p, e.box, e.view.fore, e.view.fore);
    const QRect inner = inset(e.box, border);
    paint_text(p, QString::fromStdString(e.info.caption), inner.left(), inner.top(), inner.width(),
               e.info.alignment, e.view.fore);
}

// A button that stays pressed in while checked: its picture above its caption, the two centred
// together, and moved a pixel right and down while pressed.
void check_box(QPainter& p, const ElementPaint& e) {
    const bool down = e.info.check_value != 0;
    const Rgba top_left = down ? e.view.shadow : e.view.light;
    const Rgba bottom_right = down ? e.view.light : e.view.shadow;
    fill(p, e.box, e.view.back);
    outline(p, e.box, top_left, bottom_right);
    const int shift = down ? 1 : 0;
    const QSize pic = e.picture ? e.picture->size() : QSize(0, 0);
    const int top = e.box.top() + (e.box.height() - pic.height() - kTextCellHeight) / 2 + shift;
    p.save();
    p.setClipRect(inset(e.box, 1), Qt::IntersectClip);
    draw_picture(p, e.picture,
                 QPoint(e.box.left() + (e.box.width() - pic.width()) / 2 + shift, top));
    paint_text(p, QString::fromStdString(e.info.caption), e.box.left() + shift, top + pic.height(),
               e.box.width(), 2, e.view.fore);
    p.restore();
}

// A rounded rectangle filled in one colour, row by row, so that it lands on whole pixels at any
// zoom: a pixel in a corner's square is painted when it lies within the corner's quarter circle.
void plate(QPainter& p, const ElementPaint& e) {
    const int w = e.box.width(), h = e.box.height(), r = std::min(w, h) / 4;
    for (int y = 0; y < h; ++y) {
        const int dy = y < r ? r - y : (y >= h - r ? y - (h - r - 1) : 0);
        // How far this row's ends stay in from the box's sides: 0 between the corners.
        int in = 0;
        while (in < r && (r - in) * (r - in) + dy * dy > r * r)
            ++in;
        fill(p, QRect(e.box.left() + in, e.box.top() + y, w - 2 * in, 1), e.view.fore);
    }
}

void arrows(QPainter& p, const ElementPaint& e) {
    const int mid = e.box.top() + e.box.height() / 2;
    for (const bool upper : {true, false}) {
        const QRect half =
            upper ? QRect(QPoint(e.box.left(), e.box.top()), QPoint(e.box.right(), mid - 1))
                  : QRect(QPoint(e.box.left(), mid), e.box.bottomRight());
        fill(p, half, e.view.back);
        outline(p, half, e.view.light, e.view.shadow);
        const int cx = half.left() + half.width() / 2, cy = half.top() + half.height() / 2;
        // A triangle three rows high: one pixel at its point, five at its base.
        for (int i = 0; i < 3; ++i) {
            const int y = upper ? cy - 1 + i : cy + 1 - i;
            fill(p, QRect(cx - i, y, 2 * i + 1, 1), e.view.fore);
        }
    }
}

void nothing(QPainter&, const ElementPaint&) {}

using StylePainter = void (*)(QPainter&, const ElementPaint&);

// By ElementStyle, in its order.
constexpr std::array<StylePainter, 9> kStylePainters = {
    nothing, picture, bordered_picture, picture_box, group_frame, label, check_box, plate, arrows,
};
static_assert(static_cast<std::size_t>(ElementStyle::Arrows) + 1 == kStylePainters.size());

}  // namespace

void paint_text(QPainter& p, const QString& text, int left, int top, int width, int alignment,
                Rgba colour) {
    if (text.isEmpty() || colour.alpha == 0) return;
    // 0 left, 1 right, 2 centre.
    static constexpr Qt::Alignment kAlign[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    const Qt::Alignment h = alignment >= 0 && alignment < 3 ? kAlign[alignment] : Qt::AlignLeft;
    const QRect cell(left, top, width, kTextCellHeight);
    // A repaint of a small change inside a frame need not lay out the frame's caption. Only the
    // rows are compared: a text wider than its cell runs past it sideways.
    if (p.hasClipping()) {
        const QRectF clip = p.clipBoundingRect();
        if (clip.bottom() <= cell.top() || clip.top() >= cell.top() + kTextCellHeight) return;
    }
    p.setFont(dialogue_font());
    p.setPen(qt_colour(colour));
    p.drawText(cell, static_cast<int>(h | Qt::AlignTop), text);
}

void paint_element(QPainter& p, const ElementPaint& e) {
    const auto style = static_cast<std::size_t>(e.view.style);
    if (style < kStylePainters.size()) kStylePainters[style](p, e);
}

}  // namespace panelqt
