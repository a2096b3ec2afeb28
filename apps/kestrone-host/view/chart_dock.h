// The chart of the program in the editor, docked beside it: it follows the text whenever the text
// passes the checks (otherwise the last good chart stays, marked as out of date), lights the
// running line's icon, frames the editor's line, tells the line of an icon clicked, and saves
// itself as SVG or PNG.
#pragma once

#include <QDockWidget>
#include <string>

#include "macro_table.h"

class QLabel;
class QScrollArea;

namespace chartqt {

class ChartCanvas;

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

  signals:
    void line_clicked(int line);

  private:
    void ask_where_to_save();

    ChartCanvas* canvas_;
    QScrollArea* scroll_;
    QLabel* status_;
    bool out_of_date_ = false;
};

}  // namespace chartqt
