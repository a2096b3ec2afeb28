#include "program_file.h"

#include <QFileInfo>
#include <QSaveFile>

#include "user_file.h"

namespace window {

ProgramFile::ProgramFile(QObject* parent) : QObject(parent) {
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &ProgramFile::look);
}

bool ProgramFile::read(const QString& path, QString* text, std::string* error) {
    std::string bytes, why;
    if (!host::read_user_file(path.toStdString(), host::kLargestTextFile, "a robot program", &bytes,
                              &why)) {
        if (error) *error = "cannot read the program " + path.toStdString() + ": " + why;
        return false;
    }
    *text = QString::fromStdString(bytes);
    return true;
}

void ProgramFile::follow(const QString& path, const QString& text) {
    if (!watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
    path_ = path;
    known_ = text;
    if (!path.isEmpty()) watcher_.addPath(path);
}

bool ProgramFile::write(const QString& path, const QString& text, std::string* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        if (error)
            *error = "cannot save the program " + path.toStdString() + ": " +
                     file.errorString().toStdString();
        return false;
    }
    follow(path, text);
    return true;
}

// A file replaced by a rename is watched no more: it is watched again under its name.
void ProgramFile::look(const QString& path) {
    if (path != path_) return;
    if (!watcher_.files().contains(path) && QFileInfo::exists(path)) watcher_.addPath(path);
    QString text;
    if (!read(path, &text, nullptr) || text == known_) return;
    known_ = text;
    emit changed_on_disk(text);
}

}  // namespace window
