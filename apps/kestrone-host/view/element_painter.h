// One element painted by its style, in panel pixels. The painter comes already cut to what the
// element may cover (its box, its containers and the panel's edges) and scaled to the zoom.
#pragma once

#include <QImage>
#include <QPainter>
#include <QRect>

#include "kestrone/panel.h"

namespace panelqt {

struct ElementPaint {
    const kestrone::ElementInfo& info;
    const kestrone::ElementView& view;
    QRect box;              // the element's box in whole pixels
    const QImage* picture;  // its picture, nullptr for none
};

void paint_element(QPainter& p, const ElementPaint& e);

// Text in the dialogue font, its cell's top at `top`, in `colour`.
void paint_text(QPainter& p, const QString& text, int left, int top, int width, int alignment,
                kestrone::Rgba colour);

}  // namespace panelqt
