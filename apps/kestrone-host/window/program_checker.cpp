#include "program_checker.h"

#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>

#include "program.h"

namespace window {

Problems check_text(const std::string& text, const std::string& name,
                    const kflow::MacroTable& macros) {
    kflow::CheckedProgram checked = kflow::check_program(text, name, macros);
    Problems all = std::move(checked.faults);
    all.insert(all.end(), checked.warnings.begin(), checked.warnings.end());
    std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return std::pair(a.at.line, a.at.column) < std::pair(b.at.line, b.at.column);
    });
    return all;
}

ProgramChecker::ProgramChecker(QObject* parent) : QObject(parent) {
    pause_.setSingleShot(true);
    pause_.setInterval(kPauseMs);
    connect(&pause_, &QTimer::timeout, this, &ProgramChecker::begin);
    connect(&watcher_, &QFutureWatcher<Problems>::finished, this, &ProgramChecker::done);
}

ProgramChecker::~ProgramChecker() {
    watcher_.waitForFinished();
}

void ProgramChecker::set_macros(std::optional<kflow::MacroTable> macros) {
    macros_ = macros ? std::make_shared<const kflow::MacroTable>(std::move(*macros)) : nullptr;
}

void ProgramChecker::text_changed(const QString& text, const QString& name) {
    text_ = text;
    name_ = name;
    pause_.start();
}

void ProgramChecker::begin() {
    if (!macros_) return;
    if (watcher_.isRunning()) {
        again_ = true;
        return;
    }
    // The worker holds its own copies: the checker may go, or take another table, meanwhile.
    watcher_.setFuture(QtConcurrent::run(
        [macros = macros_, text = text_.toStdString(), name = name_.toStdString()] {
            return check_text(text, name, *macros);
        }));
}

void ProgramChecker::done() {
    if (again_) {
        again_ = false;
        return begin();
    }
    // Newer text waits for its own check.
    if (pause_.isActive()) return;
    emit checked(watcher_.result());
}

}  // namespace window
