#include "chart_dock.h"

#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

#include "chart_canvas.h"
#include "chart_picture.h"
#include "icon_form.h"
#include "program.h"

namespace chartqt {

ChartDock::ChartDock(QWidget* parent)
    : QDockWidget(tr("Chart"), parent),
      canvas_(new ChartCanvas),
      palette_(new ChartPalette),
      scroll_(new QScrollArea),
      status_(new QLabel) {
    setObjectName("chart");
    auto* inside = new QWidget;
    auto* column = new QVBoxLayout(inside);
    status_->setWordWrap(true);
    status_->hide();
    scroll_->setWidget(canvas_);
    scroll_->setBackgroundRole(QPalette::Base);
    auto* save = new QPushButton(tr("Save as SVG or PNG..."));
    // The palette over the chart: the dock is narrower than it is tall.
    auto* sides = new QSplitter(Qt::Vertical);
    sides->addWidget(palette_);
    sides->addWidget(scroll_);
    sides->setStretchFactor(1, 1);
    sides->setSizes({90, 400});
    column->addWidget(status_);
    column->addWidget(sides, 1);
    column->addWidget(save, 0, Qt::AlignRight);
    setWidget(inside);
    connect(canvas_, &ChartCanvas::line_clicked, this, &ChartDock::line_clicked);
    connect(canvas_, &ChartCanvas::breakpoint_toggled, this, &ChartDock::breakpoint_toggled);
    connect(canvas_, &ChartCanvas::edit_asked, this, &ChartDock::open_form);
    connect(canvas_, &ChartCanvas::remove_asked, this, &ChartDock::remove);
    connect(canvas_, &ChartCanvas::dropped, this, &ChartDock::drop);
    connect(canvas_, &ChartCanvas::undo_asked, this, &ChartDock::undo_asked);
    connect(canvas_, &ChartCanvas::redo_asked, this, &ChartDock::redo_asked);
    connect(save, &QPushButton::clicked, this, &ChartDock::ask_where_to_save);
}

bool ChartDock::set_program(const std::string& text, const std::string& file,
                            const kflow::MacroTable& macros) {
    const kflow::CheckedProgram checked = kflow::check_program(text, file, macros);
    out_of_date_ = !checked.program;
    if (out_of_date_) {
        const std::string first = kflow::format_diagnostic(file, checked.faults.front());
        status_->setText(tr("Out of date: %1").arg(QString::fromStdString(first)));
    } else {
        auto made = std::make_unique<chart::Chart>(text, *checked.program);
        palette_->set_icons(chart::palette(*made));
        canvas_->set_chart(std::move(made));
        // A form opened on another text would write its edit over this one.
        if (form_ && form_->chart().text() != text) form_->reject();
    }
    status_->setVisible(out_of_date_);
    return !out_of_date_;
}

QString ChartDock::status() const {
    return out_of_date_ ? status_->text() : QString();
}

// The running icon is kept in sight, as the editor keeps the running line.
void ChartDock::set_running_line(int line) {
    canvas_->set_lit_line(line);
    bring_into_sight(canvas_->pixels_of_line(line));
}

void ChartDock::show_line(int line) {
    bring_into_sight(canvas_->set_framed_line(line));
}

void ChartDock::bring_into_sight(const QRect& icon) {
    if (!icon.isEmpty())
        scroll_->ensureVisible(icon.center().x(), icon.center().y(), icon.width() / 2 + 16,
                               icon.height() / 2 + 16);
}

void ChartDock::set_breakpoints(std::set<int> lines) {
    canvas_->set_breakpoints(std::move(lines));
}

void ChartDock::tell(const QString& why) {
    status_->setText(why);
    status_->show();
}

void ChartDock::insert(const chart::Way& way, const chart::IconForm& form) {
    if (const chart::Chart* c = canvas_->chart()) take(chart::insert_icon(*c, way, form));
}

void ChartDock::move(int line, const chart::Way& way) {
    if (const chart::Chart* c = canvas_->chart()) take(chart::move_icon(*c, line, way));
}

void ChartDock::remove(int line) {
    if (const chart::Chart* c = canvas_->chart()) take(chart::remove_icon(*c, line));
}

IconForm* ChartDock::form() const {
    return form_;
}

void ChartDock::open_form(int line) {
    const chart::Chart* c = canvas_->chart();
    if (!c || !chart::form_at(*c, line)) return;
    if (form_) form_->reject();
    form_ = new IconForm(*c, line, this);
    form_->setAttribute(Qt::WA_DeleteOnClose);
    connect(form_, &QDialog::accepted, this, [this, form = form_] { take(form->result()); });
    form_->open();
}

// A chart that stands for an older text takes no edits: they would undo the text's own.
void ChartDock::take(const chart::EditResult& result) {
    if (out_of_date_)
        return tell(tr("The chart is out of date: mend the text before editing the chart."));
    if (!result.refused.empty())
        return tell(tr("Not done: %1.").arg(QString::fromStdString(result.refused)));
    emit edited(QString::fromStdString(result.text), result.line);
}

void ChartDock::drop(const ChartDrag& drag, const chart::Way& way) {
    if (drag.from == ChartDrag::From::Line) return move(drag.value, way);
    if (const chart::PaletteIcon* icon = palette_->icon(drag.value)) insert(way, icon->form);
}

void ChartDock::set_zoom(int zoom) {
    canvas_->set_zoom(zoom);
}

std::string ChartDock::save_picture(const std::string& path) const {
    const chart::Chart* c = canvas_->chart();
    if (!c) return "there is no chart to save";
    return write_chart(*c, canvas_->layout(), path, canvas_->zoom());
}

void ChartDock::ask_where_to_save() {
    const QString path = QFileDialog::getSaveFileName(this, tr("Save the chart"), QString(),
                                                      tr("Charts (*.svg *.png)"));
    if (path.isEmpty()) return;
    const std::string why = save_picture(path.toStdString());
    if (!why.empty()) QMessageBox::warning(this, tr("Save the chart"), QString::fromStdString(why));
}

}  // namespace chartqt
