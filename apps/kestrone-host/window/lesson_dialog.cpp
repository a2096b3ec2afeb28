#include "lesson_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace window {

LessonDialog::LessonDialog(QWidget* parent)
    : QDialog(parent),
      title_(new QLineEdit(this)),
      instructions_(new QPlainTextEdit(this)),
      table_(new QTableWidget(0, 1, this)) {
    setWindowTitle(tr("New lesson"));
    table_->setHorizontalHeaderLabels({tr("Console line")});
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    instructions_->setPlaceholderText(tr("What the student is to do (Markdown)"));

    auto* buttons = new QHBoxLayout;
    const auto button = [&](const QString& text, auto act) {
        auto* b = new QPushButton(text, this);
        connect(b, &QPushButton::clicked, this, act);
        buttons->addWidget(b);
    };
    button(tr("&Add"), [this] { add_check(); });
    button(tr("&Remove"), [this] { remove_check(); });
    button(tr("&Up"), [this] { move_check(-1); });
    button(tr("Do&wn"), [this] { move_check(1); });
    buttons->addStretch();

    auto* form = new QFormLayout;
    form->addRow(tr("&Title:"), title_);
    form->addRow(tr("&Instructions:"), instructions_);
    auto* hint = new QLabel(
        tr("The checks run in order on a fresh robot once the settings and the arena are loaded; "
           "in a run line, <i>program</i> stands for the student's program. A program passes when "
           "every line answers ok."),
        this);
    hint->setWordWrap(true);
    auto* ok_cancel = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(ok_cancel, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ok_cancel, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addLayout(form);
    auto* checks = new QLabel(tr("&Checks:"), this);
    checks->setBuddy(table_);
    column->addWidget(checks);
    column->addWidget(table_);
    column->addLayout(buttons);
    column->addWidget(hint);
    column->addWidget(ok_cancel);
    resize(640, 520);
}

void LessonDialog::set_lesson(const std::string& title, const std::string& instructions,
                              const std::vector<std::string>& checks) {
    title_->setText(QString::fromStdString(title));
    instructions_->setPlainText(QString::fromStdString(instructions));
    table_->setRowCount(0);
    for (const std::string& line : checks)
        add_check(QString::fromStdString(line));
}

std::string LessonDialog::title() const {
    return title_->text().toStdString();
}

std::string LessonDialog::instructions() const {
    return instructions_->toPlainText().toStdString();
}

std::vector<std::string> LessonDialog::checks() const {
    std::vector<std::string> out;
    for (int row = 0; row < table_->rowCount(); ++row) {
        const QTableWidgetItem* item = table_->item(row, 0);
        const QString line = item ? item->text().trimmed() : QString();
        if (!line.isEmpty()) out.push_back(line.toStdString());
    }
    return out;
}

void LessonDialog::add_check(const QString& line) {
    const int current = table_->currentRow();
    const int row = current < 0 ? table_->rowCount() : current + 1;
    table_->insertRow(row);
    table_->setItem(row, 0, new QTableWidgetItem(line));
    table_->setCurrentCell(row, 0);
}

void LessonDialog::remove_check() {
    const int row = table_->currentRow();
    if (row >= 0) table_->removeRow(row);
}

void LessonDialog::move_check(int by) {
    const int row = table_->currentRow(), to = row + by;
    if (row < 0 || to < 0 || to >= table_->rowCount()) return;
    QTableWidgetItem* moving = table_->takeItem(row, 0);
    table_->setItem(row, 0, table_->takeItem(to, 0));
    table_->setItem(to, 0, moving);
    table_->setCurrentCell(to, 0);
}

}  // namespace window
