#include "help_window.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace window {

QString help_folder(const QString& module_path) {
    return QFileInfo(module_path).absoluteDir().filePath(QStringLiteral("help/html"));
}

bool HelpWindow::available(const QString& folder) {
    return QFileInfo(QDir(folder).filePath(QStringLiteral("index.html"))).isReadable();
}

HelpWindow::HelpWindow(const QString& folder, QWidget* parent) : QTextBrowser(parent) {
    setWindowFlag(Qt::Window);
    setWindowTitle(tr("Rovanta help"));
    setSearchPaths({folder});
    setOpenExternalLinks(true);
    setSource(QUrl::fromLocalFile(QDir(folder).filePath(QStringLiteral("index.html"))));
    resize(640, 560);
}

}  // namespace window
