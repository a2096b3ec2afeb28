#include "frame_painter.h"

#include "dialogue_font.h"
#include "element_painter.h"
#include "pixel_geometry.h"

namespace panelqt {

using kestrone::kTextCellHeight;
using kestrone::kTextCellWidth;

void paint_group_frame(QPainter& p, const QRect& box, const kestrone::ElementView& view,
                       const QString& caption) {
    fill(p, box, view.back);
    // The line runs through the middle of the caption's text line.
    const int top = box.top() + kTextCellHeight / 2;
    outline(p, QRect(QPoint(box.left(), top), QPoint(box.right() - 1, box.bottom() - 1)),
            view.shadow, view.shadow);
    outline(p, QRect(QPoint(box.left() + 1, top + 1), box.bottomRight()), view.light, view.light);
    if (caption.isEmpty()) return;
    // The caption sits on the frame's back colour, a pixel clear of the line on each side.
    const int left = box.left() + kTextCellWidth;
    fill(p, QRect(left - 1, box.top(), text_width(caption) + 2, kTextCellHeight), view.back);
    paint_text(p, caption, left, box.top(), text_width(caption), 0, view.fore);
}

}  // namespace panelqt
