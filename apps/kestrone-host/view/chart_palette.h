// The icons a program is built of, to drag onto a way of the chart: the component's public macros
// with their parameters' names, then assignment, delay, decision, the three loops and stop. What a
// drag carries (an icon of the palette, or the icon of a line being moved) travels as its own
// kind of data, so that nothing else dropped on the chart is taken for an icon.
#pragma once

#include <QListWidget>
#include <optional>
#include <vector>

#include "icon_line.h"

namespace chartqt {

// What is dragged: the palette's icon of that row, or the icon of that line.
struct ChartDrag {
    enum class From { Palette, Line };
    From from = From::Palette;
    int value = 0;
    bool operator==(const ChartDrag&) const = default;
};
QMimeData* drag_data(const ChartDrag& drag);
std::optional<ChartDrag> drag_of(const QMimeData* data);

// An icon's label in the palette: "SetMotors(left, right)", "delay milliseconds", "forever".
QString palette_label(const chart::PaletteIcon& icon);

class ChartPalette : public QListWidget {
    Q_OBJECT
  public:
    explicit ChartPalette(QWidget* parent = nullptr);

    // The icons to offer from now on; rows keep the order given.
    void set_icons(std::vector<chart::PaletteIcon> icons);
    const std::vector<chart::PaletteIcon>& icons() const { return icons_; }
    // The icon of a dragged row; nullptr for a row that is not there.
    const chart::PaletteIcon* icon(int row) const;

  protected:
    QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override;
    QStringList mimeTypes() const override;

  private:
    std::vector<chart::PaletteIcon> icons_;
};

}  // namespace chartqt
