// Panel geometry in whole pixels, and the panel's colours as Qt's. The panel hands out rectangles
// whose edges may fall between pixels; the view paints each edge at the nearest pixel, so that an
// element's right edge meets its neighbour's left edge without a gap or an overlap.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>
#include <cmath>

#include "kestrone/panel.h"

namespace panelqt {

inline int nearest_pixel(float edge) {
    return static_cast<int>(std::lround(edge));
}

// `r` with each edge at the nearest pixel.
inline QRect pixel_rect(const kestrone::PanelRect& r) {
    const int left = nearest_pixel(r.left), top = nearest_pixel(r.top);
    return QRect(QPoint(left, top),
                 QPoint(nearest_pixel(r.left + r.width) - 1, nearest_pixel(r.top + r.height) - 1));
}

inline QColor qt_colour(kestrone::Rgba c) {
    return QColor(c.red, c.green, c.blue, c.alpha);
}

// Fills `r` unless the colour is see-through.
inline void fill(QPainter& p, const QRect& r, kestrone::Rgba c) {
    if (c.alpha != 0 && r.isValid()) p.fillRect(r, qt_colour(c));
}

// A one-pixel line round `r`: `top_left` along the top and left edges, `bottom_right` the rest.
inline void outline(QPainter& p, const QRect& r, kestrone::Rgba top_left,
                    kestrone::Rgba bottom_right) {
    fill(p, QRect(r.left(), r.top(), r.width(), 1), top_left);
    fill(p, QRect(r.left(), r.top(), 1, r.height()), top_left);
    fill(p, QRect(r.left(), r.bottom(), r.width(), 1), bottom_right);
    fill(p, QRect(r.right(), r.top(), 1, r.height()), bottom_right);
}

}  // namespace panelqt
