// The arena editor: the arena drawn with the mouse on its canvas, its tools and the values of new
// and selected items above it, every edit undoable, and the `.world` file it saves to. An edit
// that would make a file the reader refuses is not made; the editor says why.
#pragma once

#include <QUndoStack>
#include <QWidget>
#include <string>

#include "arena_canvas.h"
#include "arena_document.h"

class QActionGroup;
class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace world {

class ArenaEditor : public QWidget {
    Q_OBJECT
  public:
    explicit ArenaEditor(QWidget* parent = nullptr);

    // A document to edit, saved as `path` (empty: never saved); nothing to undo.
    void set_document(ArenaDocument document, std::string path);
    const ArenaDocument& document() const { return document_; }
    const std::string& path() const { return path_; }
    bool modified() const { return !undo_.isClean(); }
    // The document's text to `path`, which it is then saved as; false with `error`.
    bool save_to(const std::string& path, std::string* error);

    // The edit made and undoable; refused, with the reason shown, where the reader would refuse
    // the file it makes.
    bool edit(ArenaDocument after, const QString& what);
    QUndoStack& undo_stack() { return undo_; }
    ArenaCanvas* canvas() const { return canvas_; }
    void set_tool(Tool tool);
    void set_grid(double grid);
    // What the editor last said of a refused edit; empty after one that was made.
    QString message() const;

  signals:
    // The document, its file or its saved state changed.
    void changed();
    void closeRequested();

  private:
    void build_tools(QWidget* row);
    void build_values(QWidget* row);
    void show_document(const ArenaDocument& document);
    void follow_pen();
    void follow_selection();
    void change_selected(const QString& what, const std::function<void(Shape&)>& change);
    void update_banner();

    ArenaDocument document_ = ArenaDocument::blank(2000, 1500);
    std::string path_;
    QUndoStack undo_;
    ArenaCanvas* canvas_ = nullptr;
    QLabel* banner_ = nullptr;
    QLabel* message_ = nullptr;
    QActionGroup* tools_ = nullptr;
    QCheckBox* snap_ = nullptr;
    QSpinBox* grid_ = nullptr;
    QDoubleSpinBox* width_ = nullptr;
    QDoubleSpinBox* intensity_ = nullptr;
    QLineEdit* name_ = nullptr;
};

}  // namespace world
