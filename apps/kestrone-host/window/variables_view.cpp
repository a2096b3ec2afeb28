#include "variables_view.h"

#include <QHeaderView>

namespace window {

namespace {
const QColor kChanged(0xff, 0xe0, 0x80);
}  // namespace

std::vector<bool> changed_between(const Values& before, const Values& now) {
    std::vector<bool> out;
    out.reserve(now.size());
    for (const auto& [name, value] : now) {
        bool same = false;
        for (const auto& [n, v] : before)
            if (n == name) same = v == value;
        out.push_back(!same);
    }
    return out;
}

VariablesView::VariablesView(stage::ProgramRun& program, QWidget* parent)
    : QTableWidget(0, 2, parent), program_(program) {
    setHorizontalHeaderLabels({tr("Variable"), tr("Value")});
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    frame_.setSingleShot(true);
    frame_.setInterval(kFrameMs);
    connect(&frame_, &QTimer::timeout, this, &VariablesView::show_now);
}

void VariablesView::restart() {
    stop_steps_ = ~std::uint64_t{0};
    last_stop_ = stop_before_ = program_.variables();
    show_now();
}

void VariablesView::follow() {
    const bool new_stop = program_.paused() && program_.steps() != stop_steps_;
    if (new_stop) return show_now();
    if (!frame_.isActive()) frame_.start();
}

// Paused, what changed since the stop before is highlighted; running, since the last stop.
void VariablesView::show_now() {
    frame_.stop();
    const Values now = program_.variables();
    if (program_.paused() && program_.steps() != stop_steps_) {
        stop_steps_ = program_.steps();
        stop_before_ = std::exchange(last_stop_, now);
    }
    const std::vector<bool> changed =
        changed_between(program_.paused() ? stop_before_ : last_stop_, now);
    if (now == shown_ && changed == highlighted_) return;
    shown_ = now;
    highlighted_ = changed;
    setRowCount(static_cast<int>(now.size()));
    for (int row = 0; row < rowCount(); ++row) {
        const auto& [name, value] = now[static_cast<std::size_t>(row)];
        for (int column = 0; column < 2; ++column) {
            QTableWidgetItem* cell = item(row, column);
            if (!cell) setItem(row, column, cell = new QTableWidgetItem);
            cell->setText(column == 0 ? QString::fromStdString(name) : QString::number(value));
            cell->setBackground(changed[static_cast<std::size_t>(row)] ? QBrush(kChanged)
                                                                       : QBrush());
        }
    }
}

}  // namespace window
