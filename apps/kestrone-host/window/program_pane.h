// A robot program beside the panel: its text, read-only, with the line that runs highlighted,
// and the whole C program made of it for the robot's chip, with a Save.
#pragma once

#include <QPlainTextEdit>
#include <QPushButton>
#include <QWidget>
#include <string>

namespace window {

class ProgramPane : public QWidget {
    Q_OBJECT
  public:
    explicit ProgramPane(QWidget* parent = nullptr);

    // The program's text; no line is highlighted until show_line.
    void show_program(const QString& path, const QString& text);
    // Highlights line `line` (from 1); 0 clears the highlight.
    void show_line(int line);
    int shown_line() const { return line_; }
    // The C text, or why there is none.
    void show_code(const QString& code);
    QString code() const { return code_->toPlainText(); }
    QString program_path() const { return path_; }

  signals:
    void save_code_requested();

  private:
    QPlainTextEdit* source_;
    QPlainTextEdit* code_;
    QPushButton* save_;
    QString path_;
    int line_ = 0;
};

}  // namespace window
