#include "hex_builder.h"

#include <QFile>
#include <QFileInfo>
#include <QtConcurrent/QtConcurrentRun>

namespace window {

HexBuilder::HexBuilder(QObject* parent) : QObject(parent) {
    connect(&watcher_, &QFutureWatcher<kflow::CompileResult>::finished, this, &HexBuilder::done);
}

HexBuilder::~HexBuilder() {
    watcher_.waitForFinished();
}

bool HexBuilder::build(const QString& c_text, const QString& hex_path) {
    if (busy()) return false;
    // The compiler leaves its outputs beside the C: a folder of the build's own.
    folder_ = std::make_unique<QTemporaryDir>();
    QFile c(folder_->filePath(QStringLiteral("program.c")));
    if (!folder_->isValid() || !c.open(QIODevice::WriteOnly) || c.write(c_text.toUtf8()) < 0)
        return false;
    c.close();
    hex_path_ = hex_path;
    watcher_.setFuture(QtConcurrent::run(
        [file = c.fileName().toStdString()] { return kflow::compile_for_chip(file); }));
    return true;
}

void HexBuilder::done() {
    const kflow::CompileResult r = watcher_.result();
    missing_ = r.missing;
    QStringList messages = QString::fromStdString(r.output).split('\n', Qt::SkipEmptyParts);
    QString why;
    if (!r.ok) {
        why = r.missing ? QString::fromStdString(r.output) : tr("the compiler refused the C");
    } else {
        QFile::remove(hex_path_);
        if (!QFile::copy(QString::fromStdString(r.hex), hex_path_))
            why = tr("cannot write %1").arg(hex_path_);
    }
    folder_.reset();
    if (r.missing) messages.clear();
    emit finished(why.isEmpty(), why, messages);
}

}  // namespace window
