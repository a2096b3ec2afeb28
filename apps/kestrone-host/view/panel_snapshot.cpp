#include "panel_snapshot.h"

#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>

#include "panel_view.h"

namespace panelqt {

namespace {

// The arguments of the application made here: kept for its lifetime, as Qt requires.
int app_argc = 3;
char app_name[] = "kestrone-host", platform_flag[] = "-platform", platform[] = "offscreen";
char* app_argv[] = {app_name, platform_flag, platform, nullptr};

}  // namespace

PanelSnapshots::PanelSnapshots() = default;
PanelSnapshots::~PanelSnapshots() = default;

std::string PanelSnapshots::write(kestrone::IKestronePanel& panel, const std::string& path) {
    if (!QCoreApplication::instance()) app_ = std::make_unique<QGuiApplication>(app_argc, app_argv);
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return "no view: the host runs without a graphical application";
    const QImage image = render_panel(panel, 1).convertToFormat(QImage::Format_RGB32);
    if (image.isNull()) return "the panel could not be painted";
    QImageWriter writer(QString::fromStdString(path), "png");
    if (!writer.write(image))
        return "cannot write " + path + ": " + writer.errorString().toStdString();
    return {};
}

}  // namespace panelqt
