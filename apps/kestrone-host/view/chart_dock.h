// The chart of the program in the editor, docked beside it: it follows the text whenever the text
// passes the checks (otherwise the last good chart stays, marked as out of date), lights the
// running line's icon, frames the editor's line, tells the line of an icon clicked, and saves
// itself as SVG or PNG. It is also where a program is edited as a chart: a palette to drag icons
// from, a form for an icon's fields, icons deleted and moved; each edit is told as the program's
// new text, for the editor to take.
#pragma once

#include <QDockWidget>
#include <QPointer>
#include <set>
#include <string>

#include "chart_edit.h"
#include "chart_palette.h"
#include "macro_table.h"

class QLabel;
class QScrollArea;

namespace chartqt {

class ChartCanvas;
class IconForm;

class ChartDock : public QDockWidget {
    Q_OBJECT
  public:
    explicit ChartDock(QWidget* parent = nullptr);

    // The program's text as it stands, checked against `macros`: true when its chart is shown.
    bool set_program(const std::string& text, const std::string& file,
                     const kflow::MacroTable& macros);
    // Whether the chart shown is that of an earlier text, the present one having faults.
    bool out_of_date() const { return out_of_date_; }
    QString status() const;
    // The running line's icon lit; 0: none.
    void set_running_line(int line);
    // The editor's line: its icon framed and scrolled into sight.
    void show_line(int line);
    void set_zoom(int zoom);
    // Writes the chart as FILE.svg or FILE.png: "" when written, else why not.
    std::string save_picture(const std::string& path) const;
    ChartCanvas* canvas() const { return canvas_; }
    ChartPalette* palette() const { return palette_; }
    // The form open on an icon, or nullptr.
    IconForm* form() const;
    // Lines with a breakpoint, marked on their icons.
    void set_breakpoints(std::set<int> lines);
    // Why an edit was not made, shown until the text next changes.
    void tell(const QString& why);

    // The edits: each tells `edited`, or tells why it cannot be made.
    void insert(const chart::Way& way, const chart::IconForm& form);
    void move(int line, const chart::Way& way);
    void remove(int line);
    // Opens the form of the icon of `line`; its OK makes the edit.
    void open_form(int line);

  signals:
    void line_clicked(int line);
    void breakpoint_toggled(int line);
    // The program's text after an edit on the chart; `line` is the icon edited, in that text.
    void edited(const QString& text, int line);
    void undo_asked();
    void redo_asked();

  private:
    void ask_where_to_save();
    void bring_into_sight(const QRect& icon);
    void take(const chart::EditResult& result);
    void drop(const ChartDrag& drag, const chart::Way& way);

    ChartCanvas* canvas_;
    ChartPalette* palette_;
    QPointer<IconForm> form_;
    QScrollArea* scroll_;
    QLabel* status_;
    bool out_of_date_ = false;
};

}  // namespace chartqt
