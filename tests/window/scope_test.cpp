// The scope in the window while the line follower runs on its track: the charts follow the clock,
// and the cursor reads, at every moment the exported log holds and just before it, the values the
// log wrote for that moment.
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include <qcustomplot.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QWheelEvent>

#include "scope_dock.h"
#include "support/temp_dir.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

// The CSV's rows by time: each column by its header's name.
std::map<double, std::map<std::string, std::string>> read_csv(const std::string& path) {
    std::ifstream in(path);
    std::string line, cell;
    std::getline(in, line);
    std::vector<std::string> names;
    for (std::stringstream header(line); std::getline(header, cell, ',');)
        names.push_back(cell);
    std::map<double, std::map<std::string, std::string>> rows;
    while (std::getline(in, line)) {
        std::stringstream cells(line + ",");
        std::map<std::string, std::string> row;
        for (const std::string& n : names)
            std::getline(cells, row[n], ',');
        rows[std::stod(row["time_ms"])] = row;
    }
    return rows;
}

// What a trace of the scope shows, from a CSV row: a signal's value, or one LED's bit.
double expected(const std::map<std::string, std::string>& row, const std::string& trace) {
    if (trace.rfind("led", 0) == 0) return (std::stoi(row.at("leds")) >> (trace[3] - '0')) & 1;
    if (trace == "tone") return std::stoi(row.at("tone_hz")) != 0;
    return std::stod(row.at(trace));
}

TEST_F(WindowTest, TheScopeFollowsTheLineFollowerAndItsCursorReadsTheLog) {
    testing_support::TempDir dir;
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    window::ScopeDock& scope = *window_->scope();
    // Signals chosen by name show in the table's order, whatever was shown before.
    scope.set_shown({"tone", "motor_right"});
    EXPECT_EQ(scope.shown(), (std::vector<std::string>{"motor_right", "tone"}));
    scope.set_shown({"motor_left", "motor_right", "line_left", "line_right", "led0"});
    scope.show();
    window_->run_program();
    elapse(4000, 10);
    scope.follow();
    EXPECT_EQ(scope.time_range().second, window_->signal_log().last_ms());
    scope.set_paused(true);  // the cursor reads a still chart while the clock goes on
    elapse(500, 10);
    // Paused, the wheel over any strip zooms every strip's time.
    auto* plot = scope.findChild<QCustomPlot*>();
    // One time axis with numbers, under the last strip.
    for (int i = 0; i < plot->axisRectCount(); ++i)
        EXPECT_EQ(plot->axisRect(i)->axis(QCPAxis::atBottom)->tickLabels(),
                  i == plot->axisRectCount() - 1);
    window_->show();
    plot->resize(600, 900);
    plot->replot();
    const QPointF over = plot->axisRect(plot->axisRectCount() - 1)->rect().center();
    QWheelEvent wheel(over, plot->mapToGlobal(over), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    const auto wide = scope.time_range();
    QApplication::sendEvent(plot, &wheel);
    EXPECT_LT(scope.time_range().second - scope.time_range().first, wide.second - wide.first);
    // A left press drags the time; only a right one puts the cursor, at that pixel's moment.
    auto* readout = scope.findChild<QLabel*>();
    const double pointed =
        plot->axisRect(plot->axisRectCount() - 1)->axis(QCPAxis::atBottom)->pixelToCoord(over.x());
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        QTest::mousePress(plot, button, Qt::NoModifier, over.toPoint());
        QTest::mouseRelease(plot, button, Qt::NoModifier, over.toPoint());
        EXPECT_EQ(readout->text().startsWith(QString::number(pointed, 'f', 0) + " ms:"),
                  button == Qt::RightButton);
    }
    // The cursor is a red line down the strips at that pixel.
    plot->replot();
    const QImage shot = plot->grab().toImage();
    int red = 0;
    for (int y = 0; y < shot.height(); ++y)
        red += shot.pixelColor(static_cast<int>(over.x()), y) == QColor(Qt::red);
    EXPECT_GT(red, plot->axisRect(0)->height());
    const std::string csv = dir.path() + "/scope.csv";
    ASSERT_TRUE(window_->export_log(csv));
    const auto rows = read_csv(csv);
    std::set<std::string> steering;
    for (const auto& [t, row] : rows)
        steering.insert(row.at("motor_left") + " " + row.at("line_left"));
    ASSERT_GE(steering.size(), 3u) << "the robot never met the line";
    const auto shown = scope.shown();
    for (const char* trace : {"motor_left", "motor_right", "line_left", "line_right"})
        EXPECT_NE(std::find(shown.begin(), shown.end(), trace), shown.end()) << trace;
    // At each moment the row written for it; halfway to it, the row before.
    const std::map<std::string, std::string>* previous = nullptr;
    double before = 0;
    for (const auto& [t, row] : rows) {
        if (t > scope.time_range().second) break;
        for (const auto& [at, want] : {std::pair{t, &row}, std::pair{(before + t) / 2, previous}}) {
            if (!want || (at == t && want != &row)) continue;
            scope.set_cursor(at);
            for (const auto& [trace, value] : scope.cursor_values())
                ASSERT_EQ(value, expected(*want, trace)) << trace << " at " << at << " ms";
        }
        previous = &row;
        before = t;
    }
}

}  // namespace
}  // namespace window_testing
