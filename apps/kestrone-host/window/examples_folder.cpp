#include "examples_folder.h"

#include <QCoreApplication>
#include <QDir>

namespace window {

QString examples_folder() {
    const QDir installed(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../" KESTRONE_EXAMPLES_RELDIR));
    if (installed.exists()) return installed.canonicalPath();
    const QDir source(QStringLiteral(KESTRONE_SOURCE_EXAMPLES));
    return source.exists() ? source.canonicalPath() : QString();
}

QStringList example_files(const QString& folder, const QString& pattern) {
    if (folder.isEmpty()) return {};
    const QDir dir(folder);
    QStringList out;
    for (const QString& name : dir.entryList({pattern}, QDir::Files, QDir::Name))
        out << dir.filePath(name);
    return out;
}

}  // namespace window
