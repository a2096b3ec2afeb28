// The keyboard focus: which elements can take it, in what order Tab walks them, and the mark that
// shows where it is.
#pragma once

#include <QPainter>
#include <QRect>
#include <cstdint>
#include <vector>

#include "kestrone/panel.h"

namespace panelqt {

// The elements that can take the focus now, by their tab index: a kind that takes it, shown and
// enabled. Frames, labels, images and shapes never do.
std::vector<std::int32_t> focus_order(kestrone::IKestronePanel& panel);

// The element after `current` in `order` (before it when !forward), round the end; the first (or
// last) when `current` is not in it; -1 when `order` is empty.
std::int32_t next_focus(const std::vector<std::int32_t>& order, std::int32_t current, bool forward);

// A dotted line just inside `box`.
void paint_focus_mark(QPainter& p, const QRect& box);

}  // namespace panelqt
