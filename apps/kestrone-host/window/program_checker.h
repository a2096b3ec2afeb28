// Checks the editor's program while the user types: once typing pauses, the text is checked
// against the component's macro table on a worker thread, so that a long program never holds the
// keyboard. Only the latest text's problems are told.
#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "diagnostic.h"
#include "macro_table.h"

namespace window {

using Problems = std::vector<kflow::Diagnostic>;

// Every error and warning of `text`, in the order of their places.
Problems check_text(const std::string& text, const std::string& name,
                    const kflow::MacroTable& macros);

class ProgramChecker : public QObject {
    Q_OBJECT
  public:
    // How long typing must pause before a check, in milliseconds.
    static constexpr int kPauseMs = 300;

    explicit ProgramChecker(QObject* parent = nullptr);
    ~ProgramChecker() override;

    // The table programs are checked against; none: nothing is checked.
    void set_macros(std::optional<kflow::MacroTable> macros);
    bool has_macros() const { return macros_ != nullptr; }
    const kflow::MacroTable* macros() const { return macros_.get(); }
    // The text changed: it is checked once typing pauses.
    void text_changed(const QString& text, const QString& name);
    // A check is waiting or running.
    bool busy() const { return pause_.isActive() || watcher_.isRunning(); }

  signals:
    void checked(const window::Problems& problems);

  private:
    void begin();
    void done();

    std::shared_ptr<const kflow::MacroTable> macros_;
    QTimer pause_;
    QFutureWatcher<Problems> watcher_;
    QString text_, name_;
    bool again_ = false;  // the text changed while a check ran
};

}  // namespace window
