// The window's layout: the program's editor in the middle, the panel and the arena on the left,
// the variables on the right and the problems below, each in a dock the user may move, and all of
// it remembered between starts with the zoom.
#include <QApplication>
#include <QDockWidget>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "main_window.h"
#include "scope_dock.h"

namespace window {

namespace {
// A first start: room for the panel at zoom 1 beside a program of 40 lines, on a laptop's screen.
constexpr int kFirstWidth = 1200, kFirstHeight = 760;
// Kept free for a window manager's frame and a desktop's bars.
constexpr int kFrameWidth = 16, kFrameHeight = 40;
// The docks at a first start, in pixels.
constexpr int kPanelDockWidth = 352, kPanelDockHeight = 312, kArenaDockHeight = 400,
              kVariablesWidth = 220, kProblemsHeight = 150;
// The text of the docks at each zoom, against the application's.
constexpr double kTextScale[] = {1.0, 1.4, 1.8};
}  // namespace

QSize MainWindow::first_size(const QSize& available) {
    return {std::min(kFirstWidth, available.width() - kFrameWidth),
            std::min(kFirstHeight, available.height() - kFrameHeight)};
}

QDockWidget* MainWindow::add_dock(const QString& title, const QString& name, QWidget* content,
                                  Qt::DockWidgetArea area) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(content);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::build_docks() {
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
    // The panel and the arena take the left side whole; the problems stand under the program.
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    placeholder_ = new QLabel(holder);
    placeholder_->setAlignment(Qt::AlignCenter);
    column->addWidget(placeholder_);
    panel_area_ = new QScrollArea;
    panel_area_->setWidgetResizable(true);
    panel_area_->setWidget(holder);
    QDockWidget* panel = add_dock(tr("Panel"), "panel", panel_area_, Qt::LeftDockWidgetArea);
    build_world_view();
    arena_dock_ = add_dock(tr("Arena"), "arena", arena_stack_, Qt::LeftDockWidgetArea);
    splitDockWidget(panel, arena_dock_, Qt::Vertical);
    variables_ = new VariablesView(stage_.program());
    QDockWidget* variables =
        add_dock(tr("Variables"), "variables", variables_, Qt::RightDockWidgetArea);
    // The program's chart under the variables: the text and the chart side by side.
    chart_ = new chartqt::ChartDock(this);
    chart_->setObjectName("chart");
    addDockWidget(Qt::RightDockWidgetArea, chart_);
    splitDockWidget(variables, chart_, Qt::Vertical);
    // The scope under everything, hidden until View > Scope.
    scope_ = new ScopeDock(log_, this);
    scope_->setObjectName("scope");
    addDockWidget(Qt::BottomDockWidgetArea, scope_);
    scope_->hide();
    problems_ = new ProblemsView;
    QDockWidget* problems =
        add_dock(tr("Problems"), "problems", problems_, Qt::BottomDockWidgetArea);
    resizeDocks({panel, variables}, {kPanelDockWidth, kVariablesWidth}, Qt::Horizontal);
    resizeDocks({panel, arena_dock_, problems},
                {kPanelDockHeight, kArenaDockHeight, kProblemsHeight}, Qt::Vertical);
}

void MainWindow::restore_layout() {
    const QByteArray geometry = settings_.geometry();
    if (!geometry.isEmpty() && restoreGeometry(geometry)) {
        restoreState(settings_.state());
    } else {
        const QScreen* screen = QGuiApplication::primaryScreen();
        resize(first_size(screen ? screen->availableGeometry().size() : QSize(1280, 800)));
    }
    if (!options_.scope) return;
    // In front of the problems, so that the charts have the width under the program.
    if (auto* problems = findChild<QDockWidget*>("problems")) tabifyDockWidget(problems, scope_);
    scope_->show();
    // Its tab comes to the front once the window is shown.
    QTimer::singleShot(0, scope_, &QDockWidget::raise);
}

void MainWindow::save_layout() {
    settings_.set_zoom(options_.zoom);
    settings_.set_layout(saveGeometry(), saveState());
}

void MainWindow::set_zoom(int zoom) {
    options_.zoom = std::clamp(zoom, 1, 3);
    if (view_) view_->set_zoom(options_.zoom);
    world_view_->set_zoom(options_.zoom);
    chart_->set_zoom(options_.zoom);
    program_->set_text_zoom(options_.zoom);
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * kTextScale[options_.zoom - 1]);
    for (QWidget* w : {static_cast<QWidget*>(variables_), static_cast<QWidget*>(problems_)})
        w->setFont(font);
    follow_world();
}

bool MainWindow::write_shot(const std::string& path) {
    // The layouts asked for (the docks, the scroll bars) are settled first.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    if (grab().save(QString::fromStdString(path), "png")) return true;
    tell("Cannot write the picture " + path);
    return false;
}

}  // namespace window
