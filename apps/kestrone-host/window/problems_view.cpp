#include "problems_view.h"

#include <QHeaderView>

namespace window {

namespace {
const QColor kError(0xb0, 0x10, 0x10), kWarning(0x9a, 0x60, 0x00), kCompiler(0x40, 0x40, 0x40);
// Where an item's place is kept.
constexpr int kLineRole = Qt::UserRole, kColumnRole = Qt::UserRole + 1;
}  // namespace

ProblemsView::ProblemsView(QWidget* parent) : QTreeWidget(parent) {
    setColumnCount(2);
    setHeaderLabels({tr("Place"), tr("Problem")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    header()->setStretchLastSection(true);
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        const int line = item->data(0, kLineRole).toInt();
        if (line > 0) emit go_to(line, item->data(0, kColumnRole).toInt());
    });
    connect(this, &QTreeWidget::itemClicked, this, &QTreeWidget::itemActivated);
}

void ProblemsView::show_program_problems(const Problems& problems) {
    problems_ = problems;
    refill();
}

void ProblemsView::show_compiler_messages(const QStringList& lines) {
    compiler_ = lines;
    refill();
}

int ProblemsView::compiler_message_count() const {
    return static_cast<int>(compiler_.size());
}

void ProblemsView::refill() {
    clear();
    program_count_ = static_cast<int>(problems_.size());
    for (const kflow::Diagnostic& d : problems_) {
        const bool warning = d.severity == kflow::Diagnostic::Severity::Warning;
        auto* item = new QTreeWidgetItem(
            this, {tr("line %1:%2").arg(d.at.line).arg(d.at.column),
                   (warning ? tr("warning: ") : QString()) + QString::fromStdString(d.text)});
        item->setData(0, kLineRole, d.at.line);
        item->setData(0, kColumnRole, d.at.column);
        item->setForeground(1, warning ? kWarning : kError);
        item->setToolTip(1, item->text(1));
    }
    for (const QString& line : compiler_) {
        auto* item = new QTreeWidgetItem(this, {tr("compiler"), line});
        item->setForeground(1, kCompiler);
        item->setToolTip(1, line);
    }
}

}  // namespace window
