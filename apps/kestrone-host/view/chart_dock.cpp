#include "chart_dock.h"

#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "chart_canvas.h"
#include "chart_picture.h"
#include "program.h"

namespace chartqt {

ChartDock::ChartDock(QWidget* parent)
    : QDockWidget(tr("Chart"), parent),
      canvas_(new ChartCanvas),
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
    column->addWidget(status_);
    column->addWidget(scroll_, 1);
    column->addWidget(save, 0, Qt::AlignRight);
    setWidget(inside);
    connect(canvas_, &ChartCanvas::line_clicked, this, &ChartDock::line_clicked);
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
        canvas_->set_chart(std::make_unique<chart::Chart>(text, *checked.program));
    }
    status_->setVisible(out_of_date_);
    return !out_of_date_;
}

QString ChartDock::status() const {
    return out_of_date_ ? status_->text() : QString();
}

void ChartDock::set_running_line(int line) {
    canvas_->set_lit_line(line);
}

void ChartDock::show_line(int line) {
    const QRect icon = canvas_->set_framed_line(line);
    if (!icon.isEmpty())
        scroll_->ensureVisible(icon.center().x(), icon.center().y(), icon.width() / 2 + 16,
                               icon.height() / 2 + 16);
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
