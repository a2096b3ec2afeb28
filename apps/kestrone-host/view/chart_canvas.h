// A program's chart as a widget: painted at the window's zoom, the running line's icon lit and
// the editor's line framed; a pause over an icon shows its line, a click tells it.
#pragma once

#include <QImage>
#include <QWidget>
#include <memory>

#include "chart_layout.h"

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
    // A whole-number zoom, 1 to 3: the drawing grows with it.
    void set_zoom(int zoom);
    int zoom() const { return zoom_; }
    // The line of the icon at `pixel`, 0 when there is none or it stands for no line of code.
    int line_at(QPoint pixel) const;

    QSize sizeHint() const override;

  signals:
    void line_clicked(int line);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void redraw();
    QRect pixels_of(int icon) const;

    std::unique_ptr<chart::Chart> chart_;
    chart::Layout layout_;
    QImage image_;
    int lit_line_ = 0;
    int framed_line_ = 0;
    int zoom_ = 1;
};

}  // namespace chartqt
