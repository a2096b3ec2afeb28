#include "dialogue_font.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QStringList>

namespace panelqt {

namespace {

// The first of these that loads gives the family; the system's default is the last resort.
constexpr const char* kFontFiles[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
};
constexpr int kPixelSize = 10;
// DejaVu Sans is a little wide for a dialogue font: narrowed, its digits fill the 6-pixel cell.
constexpr int kStretch = 94;

QFont make_font() {
    QString family;
    for (const char* file : kFontFiles) {
        const int id = QFontDatabase::addApplicationFont(QString::fromUtf8(file));
        if (id < 0) continue;
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (!families.isEmpty()) {
            family = families.front();
            break;
        }
    }
    QFont font = family.isEmpty() ? QFont() : QFont(family);
    font.setPixelSize(kPixelSize);
    font.setStretch(kStretch);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

}  // namespace

const QFont& dialogue_font() {
    static const QFont font = make_font();
    return font;
}

int text_width(const QString& text) {
    return QFontMetrics(dialogue_font()).horizontalAdvance(text);
}

}  // namespace panelqt
