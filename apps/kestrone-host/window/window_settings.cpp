#include "window_settings.h"

#include <QFileInfo>

namespace window {

namespace {
const QString kZoom = QStringLiteral("window/zoom"), kGeometry = QStringLiteral("window/geometry"),
              kState = QStringLiteral("window/state"), kRecent = QStringLiteral("files/recent");
}  // namespace

WindowSettings::WindowSettings(const QString& file)
    : settings_(file.isEmpty() ? std::make_unique<QSettings>(QStringLiteral("Kestrone"),
                                                             QStringLiteral("kestrone-host"))
                               : std::make_unique<QSettings>(file, QSettings::IniFormat)) {}

int WindowSettings::zoom() const {
    const int zoom = settings_->value(kZoom, 0).toInt();
    return zoom >= 1 && zoom <= 3 ? zoom : 0;
}

void WindowSettings::set_zoom(int zoom) {
    settings_->setValue(kZoom, zoom);
}

QByteArray WindowSettings::geometry() const {
    return settings_->value(kGeometry).toByteArray();
}

QByteArray WindowSettings::state() const {
    return settings_->value(kState).toByteArray();
}

void WindowSettings::set_layout(const QByteArray& geometry, const QByteArray& state) {
    settings_->setValue(kGeometry, geometry);
    settings_->setValue(kState, state);
    settings_->sync();
}

QStringList WindowSettings::recent() const {
    return settings_->value(kRecent).toStringList();
}

void WindowSettings::add_recent(const QString& path) {
    const QString whole = QFileInfo(path).absoluteFilePath();
    QStringList list = recent();
    list.removeAll(whole);
    list.prepend(whole);
    while (list.size() > kMostRecent)
        list.removeLast();
    settings_->setValue(kRecent, list);
    settings_->sync();
}

void WindowSettings::remove_recent(const QString& path) {
    QStringList list = recent();
    if (list.removeAll(QFileInfo(path).absoluteFilePath()) == 0) return;
    settings_->setValue(kRecent, list);
    settings_->sync();
}

}  // namespace window
