// The chart beside the program in the window: it lights the running line's icon as the line
// follower drives, tells the line of the icon clicked at any zoom, and keeps the last good chart,
// marked out of date, while the text has faults.
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <set>

#include "chart_canvas.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

class WindowChartTest : public WindowTest {
  protected:
    chartqt::ChartDock& dock() { return *window_->chart_dock(); }
    chartqt::ChartCanvas& canvas() { return *dock().canvas(); }
    // Where the screen shows the lit colour within the chart's view, as a bounding box in the
    // canvas's pixels: what a user sees, on a display or offscreen alike.
    QRect lit_pixels() {
        QCoreApplication::processEvents();
        const QWidget& view = *canvas().parentWidget();
        const QPoint at = view.mapToGlobal(QPoint(0, 0));
        const QImage image =
            view.screen()->grabWindow(0, at.x(), at.y(), view.width(), view.height()).toImage();
        QRect box;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if ((image.pixel(x, y) & 0xFFFFFFu) == 0xFFD84Du) box |= QRect(x, y, 1, 1);
        return box.translated(-canvas().pos());
    }
};

TEST_F(WindowChartTest, LightsTheIconOfTheRunningLineAsTheLineFollowerDrives) {
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(dock().isVisible());
    EXPECT_FALSE(dock().out_of_date());
    window_->run_program();
    // It waits on its delay, and ends on the finish bar with `stop`: both icons lit in turn.
    std::set<int> lines;
    for (int i = 0; i < 600 && !lines.count(11); ++i) {
        elapse(35, 5);
        const int line = window_->stage().program().line();
        ASSERT_EQ(canvas().lit_line(), line);
        const QRect lit = lit_pixels();
        EXPECT_TRUE(canvas().pixels_of_line(line).contains(lit)) << "line " << line;
        EXPECT_GT(lit.width() * lit.height(), canvas().pixels_of_line(line).width() * 4)
            << "line " << line;
        lines.insert(line);
    }
    EXPECT_EQ(lines, (std::set<int>{23, 11}));
}

// And a pause over it shows its line as the SVG titles it.
TEST_F(WindowChartTest, AClickOnAnIconTellsItsLineAtEveryZoom) {
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    QSignalSpy clicked(&dock(), &chartqt::ChartDock::line_clicked);
    for (const int zoom : {1, 3}) {
        window_->set_zoom(zoom);
        std::vector<int> want;
        for (const chart::Icon& i : canvas().layout().icons) {
            const QPoint centre((i.rect.x + i.rect.w / 2) * zoom + zoom - 1,
                                (i.rect.y + i.rect.h / 2) * zoom);
            QMouseEvent e(QEvent::MouseButtonPress, centre, canvas().mapToGlobal(centre),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&canvas(), &e);
            QHelpEvent help(QEvent::ToolTip, centre, canvas().mapToGlobal(centre));
            QApplication::sendEvent(&canvas(), &help);
            if (!i.of_code()) continue;
            want.push_back(i.line);
            const QString line = QString::fromStdString(canvas().chart()->lines().at(i.line));
            EXPECT_EQ(QToolTip::text(),
                      QString("line %1: %2").arg(i.line).arg(line.section('#', 0, 0).trimmed()));
        }
        std::vector<int> told;
        for (const QList<QVariant>& args : clicked)
            told.push_back(args.at(0).toInt());
        clicked.clear();
        EXPECT_EQ(told, want) << "zoom " << zoom;
    }
}

TEST_F(WindowChartTest, KeepsTheLastGoodChartMarkedOutOfDateWhileTheTextHasFaults) {
    ASSERT_TRUE(window_->open_program(example("square.kflow")));
    const chart::Chart* good = canvas().chart();
    const kflow::MacroTable& macros = *window_->checker().macros();
    EXPECT_FALSE(dock().set_program("LedOn(1)\nrepeat 3\n", "t.kflow", macros));
    EXPECT_TRUE(dock().out_of_date());
    EXPECT_EQ(canvas().chart(), good);
    EXPECT_TRUE(dock().status().contains("t.kflow:2:1:")) << dock().status().toStdString();
    EXPECT_TRUE(dock().set_program("LedOn(1)\n", "t.kflow", macros));
    EXPECT_FALSE(dock().out_of_date());
    EXPECT_EQ(canvas().chart()->text(), "LedOn(1)\n");
}

}  // namespace
}  // namespace window_testing
