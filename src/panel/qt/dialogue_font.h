// The small dialogue font that the panel's text assumes: a digit kTextCellWidth pixels wide on a
// line kTextCellHeight high. It comes from the font files the build installs, not from whatever
// the machine's font configuration would pick, so every machine paints the same text.
#pragma once

#include <QFont>
#include <QString>

namespace panelqt {

const QFont& dialogue_font();
// The caption's width in panel pixels in that font.
int text_width(const QString& text);

}  // namespace panelqt
