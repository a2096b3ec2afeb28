#include "dialogue_font.h"

#include <QFontMetrics>
#include <QHash>

namespace panelqt {

namespace {

// Installed with the build's packages (fonts-dejavu-core); asked for by name so that no other
// font of the machine stands in while it is there.
constexpr const char* kFamily = "DejaVu Sans";
constexpr int kPixelSize = 10;
// DejaVu Sans is a little wide for a dialogue font: narrowed, its digits fill the 6-pixel cell.
constexpr int kStretch = 94;
constexpr qsizetype kWidthsKept = 256;

}  // namespace

// Made afresh each time: a QFont kept in a static would outlive the application that it needs.
QFont dialogue_font() {
    QFont font(QString::fromLatin1(kFamily));
    font.setPixelSize(kPixelSize);
    font.setStretch(kStretch);
    font.setHintingPreference(QFont::PreferFullHinting);
    // Whole pixels of the caption's own colour: a smoothed edge would blend it with what lies
    // behind, and a value caption must show pure green on its plate at every zoom.
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

// A frame's caption is measured at each repaint of the frame: the widths are kept (a few captions,
// at one font), since making the font and shaping the text cost more than the rest of the paint.
int text_width(const QString& text) {
    thread_local QHash<QString, int> widths;
    if (const auto known = widths.constFind(text); known != widths.constEnd()) return *known;
    if (widths.size() >= kWidthsKept) widths.clear();
    const int width = QFontMetrics(dialogue_font()).horizontalAdvance(text);
    widths.insert(text, width);
    return width;
}

}  // namespace panelqt
