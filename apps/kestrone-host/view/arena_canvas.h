// The arena being edited, drawn to fill the widget, and the mouse's tools on it: select and move,
// draw a line (a click a point, a double click or Return to end it), a wall or a zone (pressed at
// one corner and let go at the other), place a light, and place the start (pressed where the robot
// stands, dragged the way it faces). Points snap to the grid. An edit is handed to `edit` whole,
// when the mouse is let go; what the mouse holds meanwhile is only drawn.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "arena_document.h"
#include "floor_painter.h"

namespace world {

enum class Tool { Select, Line, Wall, Light, Zone, Start };

// What the tools draw with: the grid (0 for none, whole millimetres then) and a new item's values.
struct Pen {
    Tool tool = Tool::Select;
    double grid = 50;
    double line_width = 20;
    double intensity = 1;
};

class ArenaCanvas : public QWidget {
    Q_OBJECT
  public:
    // Takes the edited document and a short name of the edit; false when it was refused.
    using Edit = std::function<bool(ArenaDocument, const QString&)>;
    ArenaCanvas(const ArenaDocument& document, Edit edit, QWidget* parent = nullptr);

    void set_pen(const Pen& pen);
    const Pen& pen() const { return pen_; }
    // The selected item; none after the document changed under it.
    std::optional<std::size_t> selected() const { return selected_; }
    void select(std::optional<std::size_t> index);
    // The document changed (an edit, an undo): what no longer exists is let go.
    void document_changed();
    // The selected item deleted.
    void delete_selected();
    // The line being drawn, ended as it stands (two points or more make a line) or dropped.
    void finish_line();
    void cancel();
    const std::vector<Vec>& drawn_path() const { return path_; }

    // Floor millimetres to widget pixels and back.
    QPointF to_pixels(Vec floor) const { return frame().px(floor); }
    Vec to_floor(QPointF pixels) const { return frame().floor(pixels); }
    // A point of the floor as the tools take it: on the floor and on the grid.
    Vec snapped(Vec floor) const;
    QSize sizeHint() const override { return {480, 360}; }

  signals:
    void selectionChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    FloorFrame frame() const;
    // The document as it would be were the mouse let go now.
    ArenaDocument preview() const;
    Start dragged_start() const;
    void paint_grid(QPainter& p, const FloorFrame& f) const;
    void paint_marks(QPainter& p, const FloorFrame& f) const;
    void press_select(Vec at);
    void release(Vec at);
    bool add(Shape shape, const QString& what);
    std::string free_zone_name() const;

    const ArenaDocument& document_;
    Edit edit_;
    Pen pen_;
    std::optional<std::size_t> selected_;
    bool start_selected_ = false;
    std::optional<Vec> pressed_;  // where the mouse went down, snapped, while it is down
    Vec at_;                      // where it is now, snapped
    std::vector<Vec> path_;       // the line being drawn
};

}  // namespace world
