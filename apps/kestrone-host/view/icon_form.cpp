#include "icon_form.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace chartqt {

namespace {
QLabel* fault_label() {
    auto* label = new QLabel;
    label->setStyleSheet(QStringLiteral("color: #b3261e"));
    label->setWordWrap(true);
    label->hide();
    return label;
}

void show_fault(QLabel* label, const std::string& fault) {
    label->setText(QString::fromStdString(fault));
    label->setVisible(!fault.empty());
}
}  // namespace

IconForm::IconForm(const chart::Chart& chart, int line, QWidget* parent)
    : QDialog(parent),
      chart_(chart),
      line_(line),
      other_(fault_label()),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    setObjectName("icon form");
    const std::optional<chart::IconForm> form = chart::form_at(chart, line);
    setWindowTitle(
        tr("Line %1: %2")
            .arg(line)
            .arg(QString::fromStdString(std::string(chart::code_of(chart.lines().at(line))))));
    auto* fields = new QFormLayout;
    const std::vector<std::string> names =
        form ? chart::field_names(chart.macros(), *form) : std::vector<std::string>{};
    std::vector<std::string> values = form ? form->fields : std::vector<std::string>{};
    values.resize(names.size());
    for (std::size_t k = 0; k < names.size(); ++k) {
        auto* box = new QLineEdit(QString::fromStdString(values[k]));
        box->setObjectName(QString::fromStdString(names[k]));
        boxes_.push_back(box);
        faults_.push_back(fault_label());
        fields->addRow(QString::fromStdString(names[k]), box);
        fields->addRow(QString(), faults_.back());
        connect(box, &QLineEdit::textChanged, this, &IconForm::check);
    }
    auto* column = new QVBoxLayout(this);
    column->addLayout(fields);
    column->addWidget(other_);
    column->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    check();
}

QString IconForm::fault(int k) const {
    return faults_[static_cast<std::size_t>(k)]->text();
}

QString IconForm::other_fault() const {
    return other_->text();
}

bool IconForm::can_accept() const {
    return buttons_->button(QDialogButtonBox::Ok)->isEnabled();
}

void IconForm::check() {
    std::vector<std::string> fields;
    for (const QLineEdit* box : boxes_)
        fields.push_back(box->text().toStdString());
    result_ = chart::edit_icon(chart_, line_, fields);
    for (std::size_t k = 0; k < faults_.size(); ++k)
        show_fault(faults_[k], k < result_.field_faults.size() ? result_.field_faults[k] : "");
    show_fault(other_, result_.refused.empty() ? result_.other_fault : result_.refused);
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(result_.ok());
}

}  // namespace chartqt
