// The work area: the robot program in its editor, and the whole C program made of it for the
// robot's chip, with Save C and Save hex.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <string>

#include "program_editor.h"

namespace window {

class ProgramPane : public QTabWidget {
    Q_OBJECT
  public:
    explicit ProgramPane(QWidget* parent = nullptr);

    ProgramEditor* editor() const { return editor_; }
    // The program's text, unchanged since `path` was read or saved; no line marked.
    void show_program(const QString& path, const QString& text);
    // Marks line `line` (from 1) as where the program stands; 0 clears it.
    void show_line(int line) { editor_->show_line(line); }
    int shown_line() const { return editor_->shown_line(); }
    // The C text, or why there is none.
    void show_code(const QString& code, bool whole);
    QString code() const { return code_->toPlainText(); }
    // The C is a whole program (not why there is none).
    bool code_whole() const { return whole_; }
    bool code_shown() const { return currentIndex() == 1; }
    // The file the editor's text belongs to; empty for a new program.
    QString program_path() const { return path_; }
    void set_program_path(const QString& path) { path_ = path; }
    // The hex being compiled: its button waits; `unavailable` says why it cannot be made at all.
    void set_compiling(bool compiling);
    void set_hex_unavailable(const QString& why);
    void set_text_zoom(int zoom);

  signals:
    void save_code_requested();
    void save_hex_requested();

  private:
    ProgramEditor* editor_;
    QPlainTextEdit* code_;
    QPushButton* save_;
    QPushButton* hex_;
    QString path_;
    QString hex_unavailable_;
    bool whole_ = false;
};

}  // namespace window
