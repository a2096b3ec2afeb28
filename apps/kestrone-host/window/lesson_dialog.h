// The dialog of a new lesson: its title, its instructions (Markdown) and its checks, a table of
// console lines run in order against each student's program.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QLineEdit;
class QPlainTextEdit;
class QTableWidget;

namespace window {

class LessonDialog : public QDialog {
    Q_OBJECT
  public:
    explicit LessonDialog(QWidget* parent = nullptr);

    void set_lesson(const std::string& title, const std::string& instructions,
                    const std::vector<std::string>& checks);
    std::string title() const;
    std::string instructions() const;
    // The lines of the table in order, each without blanks around it; empty rows left out.
    std::vector<std::string> checks() const;

    QLineEdit* title_box() const { return title_; }
    QPlainTextEdit* instructions_box() const { return instructions_; }
    QTableWidget* table() const { return table_; }
    // A row after the current one (at the end without one), ready to type into.
    void add_check(const QString& line = {});
    void remove_check();
    // The current row `by` places down (up when negative), where there is room.
    void move_check(int by);

  private:
    QLineEdit* title_;
    QPlainTextEdit* instructions_;
    QTableWidget* table_;
};

}  // namespace window
