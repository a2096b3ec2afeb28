// The scope: the log's signals as stacked strip charts under the panel, analogue traces (speeds,
// phases, sensor values, heading, pose) and digital lanes (each LED, switch, line sensor, the
// tone). While running, the time axis follows the clock; paused, it scrolls (drag) and zooms
// (wheel) in time. A right click puts a cursor that reads every trace's value at its moment from
// what the chart holds. The signals shown are chosen from the dock's menu.
#pragma once

#include <QDockWidget>
#include <QTimer>
#include <optional>
#include <string>
#include <vector>

#include "signal_log.h"

class QCustomPlot;
class QCPAxisRect;
class QCPGraph;
class QCPMarginGroup;
class QLabel;
class QToolButton;

namespace window {

class ScopeDock : public QDockWidget {
    Q_OBJECT
  public:
    // The log must outlive the dock.
    ScopeDock(const signal_log::SignalLog& log, QWidget* parent);

    // Brings the charts up to the log's latest moment (the dock's timer calls it while shown).
    void follow();
    void set_paused(bool paused);
    bool paused() const { return paused_; }
    // The traces shown, by name (`motor_left`, `led3`, `tone`, ...), in the order they stack.
    std::vector<std::string> shown() const;
    void set_shown(const std::vector<std::string>& names);
    // The cursor at `ms` from the log's start; what each shown trace reads there (nullopt where
    // it has no value: before its first point, or x, y, theta without an arena).
    void set_cursor(double ms);
    std::vector<std::pair<std::string, std::optional<double>>> cursor_values() const;
    // The visible stretch of time, in milliseconds.
    std::pair<double, double> time_range() const;

  private:
    struct Strip {
        std::size_t trace;  // in the trace table
        QCPAxisRect* rect;
        QCPGraph* graph;
    };
    void rebuild();
    void add_moment(const signal_log::Moment& m, bool all);
    void show_cursor();

    const signal_log::SignalLog& log_;
    QCustomPlot* plot_;
    QLabel* readout_;
    QToolButton* choose_;
    QTimer timer_;
    std::vector<bool> chosen_;  // by trace
    std::vector<Strip> strips_;
    std::optional<double> cursor_ms_;
    std::int64_t added_to_ = -1;  // the latest moment in the charts
    double span_ms_ = 10000;      // the time shown while following
    bool paused_ = false;
    bool syncing_ = false;  // one strip's time axis is being given to the others
    QCPMarginGroup* margins_ = nullptr;
};

}  // namespace window
