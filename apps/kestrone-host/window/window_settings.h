// What the window remembers between starts: its layout, the zoom and the files opened last, in
// the user's settings ($XDG_CONFIG_HOME/Kestrone/kestrone-host.conf), or in a file of its own.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>
#include <memory>

namespace window {

class WindowSettings {
  public:
    // The most files the Recent files menu lists.
    static constexpr int kMostRecent = 8;

    // `file` empty: the user's settings.
    explicit WindowSettings(const QString& file = {});

    // 1 to 3; 0 when none was kept.
    int zoom() const;
    void set_zoom(int zoom);
    QByteArray geometry() const;
    QByteArray state() const;
    void set_layout(const QByteArray& geometry, const QByteArray& state);
    // The newest first; a file opened again moves to the top.
    QStringList recent() const;
    void add_recent(const QString& path);
    void remove_recent(const QString& path);

  private:
    std::unique_ptr<QSettings> settings_;
};

}  // namespace window
