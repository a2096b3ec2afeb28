// The small form an icon is edited in: one field per macro parameter (or the variable and value,
// the delay's milliseconds, the loop's count, the condition), each named, checked as it is typed,
// its fault shown under it. OK takes the edit only while the program it makes has no faults.
#pragma once

#include <QDialog>
#include <vector>

#include "chart_edit.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace chartqt {

class IconForm : public QDialog {
    Q_OBJECT
  public:
    // The form of the icon of `line` in `chart`.
    IconForm(const chart::Chart& chart, int line, QWidget* parent = nullptr);

    int line() const { return line_; }
    const chart::Chart& chart() const { return chart_; }
    int field_count() const { return static_cast<int>(boxes_.size()); }
    QLineEdit* field(int k) const { return boxes_[static_cast<std::size_t>(k)]; }
    // What the form's fields make of the program as they stand.
    const chart::EditResult& result() const { return result_; }
    // The fault shown under field `k`; "" when it has none.
    QString fault(int k) const;
    QString other_fault() const;
    bool can_accept() const;

  private:
    void check();

    const chart::Chart chart_;  // as the form was opened on it
    int line_;
    std::vector<QLineEdit*> boxes_;
    std::vector<QLabel*> faults_;
    QLabel* other_;
    QDialogButtonBox* buttons_;
    chart::EditResult result_;
};

}  // namespace chartqt
