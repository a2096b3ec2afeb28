// A grouping frame: an etched line round the box with the caption set into its top edge.
#pragma once

#include <QPainter>
#include <QRect>
#include <QString>

#include "kestrone/panel.h"

namespace panelqt {

void paint_group_frame(QPainter& p, const QRect& box, const kestrone::ElementView& view,
                       const QString& caption);

}  // namespace panelqt
