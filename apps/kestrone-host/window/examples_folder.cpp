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
    // A pattern may name a subfolder ("lessons/*.klesson"); the filter takes file names only.
    const qsizetype slash = pattern.lastIndexOf(u'/');
    const QDir dir(slash < 0 ? folder : folder + u'/' + pattern.left(slash));
    QStringList out;
    for (const QString& name : dir.entryList({pattern.mid(slash + 1)}, QDir::Files, QDir::Name))
        out << dir.filePath(name);
    return out;
}

}  // namespace window
