// The chart as a second face of the editor: an edit made on it goes into the editor's text as one
// step of the editor's own undo, a breakpoint toggled on an icon is the editor's, and the icon of
// the editor's line is framed.
#include "chart_canvas.h"
#include "chart_dock.h"
#include "editor_splice.h"
#include "main_window.h"

namespace window {

void MainWindow::connect_chart() {
    ProgramEditor* e = editor();
    connect(chart_, &chartqt::ChartDock::edited, this, [this](const QString& text, int line) {
        if (editor()->isReadOnly())
            return chart_->tell(tr("The program is running: stop it to edit it."));
        // Typing not yet checked leaves the chart behind the text: an edit made on it would
        // write over what was typed.
        if (chart_->canvas()->chart()->text() != editor()->text().toStdString()) {
            update_chart();
            return chart_->tell(tr("The chart had not caught up with the text: do it again."));
        }
        splice_into(*editor(), text.toStdString());
        update_chart();
        chart_->show_line(line);
    });
    // Undo and redo on the chart are the editor's, the chart following at once.
    connect(chart_, &chartqt::ChartDock::undo_asked, this, [this] {
        editor()->undo();
        update_chart();
    });
    connect(chart_, &chartqt::ChartDock::redo_asked, this, [this] {
        editor()->redo();
        update_chart();
    });
    connect(chart_, &chartqt::ChartDock::breakpoint_toggled, this, [this](int line) {
        editor()->toggle_breakpoint(line);
        if (stage_.program().running()) push_breakpoints();
    });
    const auto marks = [this] { chart_->set_breakpoints(editor()->breakpoints()); };
    connect(e, &ProgramEditor::breakpoint_marks_changed, this, marks);
    // Marks move with the lines an edit moves.
    connect(e, &QsciScintilla::textChanged, this, marks);
    connect(e, &QsciScintilla::cursorPositionChanged, this,
            [this](int line, int) { chart_->show_line(line + 1); });
}

}  // namespace window
