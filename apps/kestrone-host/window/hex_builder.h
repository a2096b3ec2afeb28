// Save hex: the C of the program compiled for the chip on a worker thread, the window going on
// meanwhile, and the .hex copied where the user asked. The compiler's messages come back as its
// lines; a missing compiler is told once.
#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

#include "pic_compiler.h"

namespace window {

class HexBuilder : public QObject {
    Q_OBJECT
  public:
    explicit HexBuilder(QObject* parent = nullptr);
    ~HexBuilder() override;

    // Starts compiling `c_text` into `hex_path`; false when a build is already under way or the
    // C cannot be written (`finished` then is not sent).
    bool build(const QString& c_text, const QString& hex_path);
    bool busy() const { return watcher_.isRunning(); }
    // The compiler is known to be missing (after a build that found none).
    bool compiler_missing() const { return missing_; }

  signals:
    // `ok` with the .hex written at the path asked; else `why`. `messages`: the compiler's lines.
    void finished(bool ok, const QString& why, const QStringList& messages);

  private:
    void done();

    QFutureWatcher<kflow::CompileResult> watcher_;
    std::unique_ptr<QTemporaryDir> folder_;
    QString hex_path_;
    bool missing_ = false;
};

}  // namespace window
