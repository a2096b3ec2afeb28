// The file behind the editor's program: read and written whole, and watched, so that a change
// made to it elsewhere (another editor, a teacher's copy) comes in.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <string>

namespace window {

class ProgramFile : public QObject {
    Q_OBJECT
  public:
    explicit ProgramFile(QObject* parent = nullptr);

    // The text of `path` as a user's file is read (a regular file, not too large); false with
    // `error` saying why not.
    static bool read(const QString& path, QString* text, std::string* error);
    // From now on `path` is the file, known to hold `text`; empty: no file.
    void follow(const QString& path, const QString& text);
    // Writes `text` to `path` whole (a crash leaves the old file or the new) and follows it.
    bool write(const QString& path, const QString& text, std::string* error);
    const QString& path() const { return path_; }

  signals:
    // The file now holds other text than it was known to.
    void changed_on_disk(const QString& text);

  private:
    void look(const QString& path);

    QFileSystemWatcher watcher_;
    QString path_;
    QString known_;
};

}  // namespace window
