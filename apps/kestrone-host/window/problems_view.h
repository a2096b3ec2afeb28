// The problems list: every error and warning of the program in the editor, at its place, and
// what the chip's compiler said last. A click on a problem of the program goes to its place.
#pragma once

#include <QStringList>
#include <QTreeWidget>

#include "program_checker.h"

namespace window {

class ProblemsView : public QTreeWidget {
    Q_OBJECT
  public:
    explicit ProblemsView(QWidget* parent = nullptr);

    void show_program_problems(const Problems& problems);
    // The compiler's lines, as it wrote them; empty clears them.
    void show_compiler_messages(const QStringList& lines);
    int program_problem_count() const { return program_count_; }
    int compiler_message_count() const;

  signals:
    void go_to(int line, int column);

  private:
    void refill();

    Problems problems_;
    QStringList compiler_;
    int program_count_ = 0;
};

}  // namespace window
