#include "chart_palette.h"

#include <QMimeData>
#include <algorithm>

namespace chartqt {

namespace {
const QString kMime = QStringLiteral("application/x-kestrone-chart-icon");
}

QMimeData* drag_data(const ChartDrag& drag) {
    auto* data = new QMimeData;
    const char* from = drag.from == ChartDrag::From::Palette ? "palette" : "line";
    data->setData(kMime, QStringLiteral("%1 %2").arg(from).arg(drag.value).toUtf8());
    return data;
}

std::optional<ChartDrag> drag_of(const QMimeData* data) {
    if (!data || !data->hasFormat(kMime)) return std::nullopt;
    const QStringList words = QString::fromUtf8(data->data(kMime)).split(' ');
    bool number = false;
    const int value = words.size() == 2 ? words[1].toInt(&number) : 0;
    if (!number) return std::nullopt;
    if (words[0] == QLatin1String("palette")) return ChartDrag{ChartDrag::From::Palette, value};
    if (words[0] == QLatin1String("line")) return ChartDrag{ChartDrag::From::Line, value};
    return std::nullopt;
}

QString palette_label(const chart::PaletteIcon& icon) {
    QStringList names;
    for (const std::string& n : icon.field_names)
        names << QString::fromStdString(n);
    const QString label = QString::fromStdString(icon.label);
    if (icon.form.kind == chart::IconKind::Call) return label + "(" + names.join(", ") + ")";
    return names.isEmpty() ? label : label + " " + names.join(", ");
}

ChartPalette::ChartPalette(QWidget* parent) : QListWidget(parent) {
    setObjectName("chart palette");
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // Side by side, row after row: the dock is narrow.
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setResizeMode(QListView::Adjust);
    setSpacing(2);
    setToolTip(tr("Drag an icon onto a way of the chart to put it there"));
}

// The same icons again leave the list as it is, a row being dragged with them.
void ChartPalette::set_icons(std::vector<chart::PaletteIcon> icons) {
    const auto same = [](const chart::PaletteIcon& a, const chart::PaletteIcon& b) {
        return a.label == b.label && a.form.fields == b.form.fields;
    };
    if (std::equal(icons.begin(), icons.end(), icons_.begin(), icons_.end(), same)) return;
    icons_ = std::move(icons);
    clear();
    for (const chart::PaletteIcon& i : icons_)
        addItem(palette_label(i));
}

const chart::PaletteIcon* ChartPalette::icon(int row) const {
    if (row < 0 || row >= static_cast<int>(icons_.size())) return nullptr;
    return &icons_[static_cast<std::size_t>(row)];
}

QMimeData* ChartPalette::mimeData(const QList<QListWidgetItem*>& items) const {
    if (items.isEmpty()) return nullptr;
    return drag_data({ChartDrag::From::Palette, row(items.front())});
}

QStringList ChartPalette::mimeTypes() const {
    return {kMime};
}

}  // namespace chartqt
