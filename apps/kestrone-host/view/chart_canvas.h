// A program's chart as a widget: painted at the window's zoom, the running line's icon lit, the
// editor's line framed and a mark on each icon with a breakpoint; a pause over an icon shows its
// line, a click tells it. It takes the edits made on it (icons dropped on a way, an icon dragged
// elsewhere, double-clicked, deleted) and tells them; the dock makes them.
#pragma once

#include <QImage>
#include <QWidget>
#include <memory>
#include <optional>
#include <set>

#include "chart_layout.h"
#include "chart_palette.h"

namespace chartqt {

class ChartCanvas : public QWidget {
    Q_OBJECT
  public:
    explicit ChartCanvas(QWidget* parent = nullptr);
    ~ChartCanvas() override;

    // The chart to show from now on; the lit and framed lines stay as they were.
    void set_chart(std::unique_ptr<chart::Chart> chart);
    const chart::Chart* chart() const { return chart_.get(); }
    const chart::Layout& layout() const { return layout_; }

    // The running line's icon is lit; 0: none.
    void set_lit_line(int line);
    int lit_line() const { return lit_line_; }
    // The editor's line: its icon framed; 0: none. The rectangle it takes, in pixels, or an empty
    // one when the line has no icon.
    QRect set_framed_line(int line);
    // The rectangle of the icon of `line`, in pixels; an empty one when it has none.
    QRect pixels_of_line(int line) const { return pixels_of(layout_.icon_of_line(line)); }
    // A whole-number zoom, 1 to 3: the drawing grows with it.
    void set_zoom(int zoom);
    int zoom() const { return zoom_; }
    // The line of the icon at `pixel`, 0 when there is none or it stands for no line of code.
    int line_at(QPoint pixel) const;
    // Lines with a breakpoint: their icons marked.
    void set_breakpoints(std::set<int> lines);
    const std::set<int>& breakpoints() const { return breakpoints_; }
    // The way under `pixel` that an icon dropped there would go on.
    std::optional<chart::Way> way_at(QPoint pixel) const;

    QSize sizeHint() const override;

  signals:
    void line_clicked(int line);
    void breakpoint_toggled(int line);
    void edit_asked(int line);
    void remove_asked(int line);
    // The editor's undo and redo, asked for on the chart.
    void undo_asked();
    void redo_asked();
    void dropped(const chartqt::ChartDrag& drag, const chart::Way& way);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void redraw();
    QRect pixels_of(int icon) const;
    // Whether `pixel`, on the icon of `line`, falls on its left edge, where a click toggles its
    // breakpoint.
    bool in_mark_zone(QPoint pixel, int line) const;
    void paint_marks(QPainter& painter) const;
    void paint_drop_way(QPainter& painter) const;

    std::unique_ptr<chart::Chart> chart_;
    chart::Layout layout_;
    QImage image_;
    int lit_line_ = 0;
    int framed_line_ = 0;
    int zoom_ = 1;
    std::set<int> breakpoints_;
    QPoint pressed_at_;
    int pressed_line_ = 0;  // the icon a drag would move
    std::optional<chart::Way> drop_way_;
};

}  // namespace chartqt
