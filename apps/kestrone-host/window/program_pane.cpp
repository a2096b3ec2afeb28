#include "program_pane.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QTextBlock>
#include <QVBoxLayout>

namespace window {

namespace {

QPlainTextEdit* reader(QWidget* parent) {
    auto* text = new QPlainTextEdit(parent);
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return text;
}

}  // namespace

ProgramPane::ProgramPane(QWidget* parent)
    : QWidget(parent), source_(reader(this)), code_(reader(this)), save_(new QPushButton(this)) {
    save_->setText(tr("Save C..."));
    save_->setEnabled(false);
    connect(save_, &QPushButton::clicked, this, &ProgramPane::save_code_requested);
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel(tr("Program"), this));
    left->addWidget(source_);
    auto* right = new QVBoxLayout;
    auto* head = new QHBoxLayout;
    head->addWidget(new QLabel(tr("C for the robot's chip"), this));
    head->addStretch();
    head->addWidget(save_);
    right->addLayout(head);
    right->addWidget(code_);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(left);
    layout->addLayout(right);
}

void ProgramPane::show_program(const QString& path, const QString& text) {
    path_ = path;
    source_->setPlainText(text);
    show_line(0);
}

void ProgramPane::show_line(int line) {
    line_ = line;
    QList<QTextEdit::ExtraSelection> marks;
    const QTextBlock block = source_->document()->findBlockByLineNumber(line - 1);
    if (line > 0 && block.isValid()) {
        QTextEdit::ExtraSelection mark;
        mark.format.setBackground(palette().highlight());
        mark.format.setForeground(palette().highlightedText());
        mark.format.setProperty(QTextFormat::FullWidthSelection, true);
        mark.cursor = QTextCursor(block);
        marks.push_back(mark);
        source_->setTextCursor(mark.cursor);
        source_->ensureCursorVisible();
    }
    source_->setExtraSelections(marks);
}

void ProgramPane::show_code(const QString& code) {
    code_->setPlainText(code);
    save_->setEnabled(!code.isEmpty());
}

}  // namespace window
