#include "program_pane.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace window {

ProgramPane::ProgramPane(QWidget* parent)
    : QTabWidget(parent),
      editor_(new ProgramEditor(this)),
      code_(new QPlainTextEdit(this)),
      save_(new QPushButton(tr("Save C..."), this)),
      hex_(new QPushButton(tr("Save hex..."), this)) {
    code_->setReadOnly(true);
    code_->setLineWrapMode(QPlainTextEdit::NoWrap);
    code_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    save_->setEnabled(false);
    hex_->setEnabled(false);
    connect(save_, &QPushButton::clicked, this, &ProgramPane::save_code_requested);
    connect(hex_, &QPushButton::clicked, this, &ProgramPane::save_hex_requested);
    auto* c_page = new QWidget(this);
    auto* head = new QHBoxLayout;
    head->addWidget(new QLabel(tr("C for the robot's chip"), c_page));
    head->addStretch();
    head->addWidget(save_);
    head->addWidget(hex_);
    auto* column = new QVBoxLayout(c_page);
    column->setContentsMargins(4, 4, 4, 4);
    column->addLayout(head);
    column->addWidget(code_);
    addTab(editor_, tr("Program"));
    addTab(c_page, tr("C"));
}

void ProgramPane::show_program(const QString& path, const QString& text) {
    path_ = path;
    editor_->show_line(0);
    editor_->setText(text);
    editor_->setModified(false);
}

void ProgramPane::show_code(const QString& code, bool whole) {
    code_->setPlainText(code);
    whole_ = whole;
    save_->setEnabled(whole);
    hex_->setEnabled(whole && hex_unavailable_.isEmpty());
}

void ProgramPane::set_compiling(bool compiling) {
    hex_->setEnabled(!compiling && save_->isEnabled() && hex_unavailable_.isEmpty());
    hex_->setText(compiling ? tr("Compiling...") : tr("Save hex..."));
}

void ProgramPane::set_hex_unavailable(const QString& why) {
    hex_unavailable_ = why;
    hex_->setToolTip(why);
    hex_->setEnabled(false);
}

void ProgramPane::set_text_zoom(int zoom) {
    editor_->set_text_zoom(zoom);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(font.pointSizeF() * (1 + 0.4 * (zoom - 1)));
    code_->setFont(font);
}

}  // namespace window
