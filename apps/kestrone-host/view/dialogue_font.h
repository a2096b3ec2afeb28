// The small dialogue font that the panel's text assumes: a digit kTextCellWidth pixels wide on a
// line kTextCellHeight high, from a font the build's packages install.
#pragma once

#include <QFont>
#include <QString>

namespace panelqt {

QFont dialogue_font();
// The caption's width in panel pixels in that font.
int text_width(const QString& text);

}  // namespace panelqt
