// The window's pacing of the stage in real time: on a precise timer it brings the stage to the
// steady clock's now and sleeps until the stage's next moment. The stage does the work in time
// order; this only maps real time onto it. Everything runs on the GUI thread, so ticks, host
// calls and panel events never overlap. While the debugger holds the program the stage stands
// still (the panel and the arena as they were); it takes up real time afresh when it goes on.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "stage.h"

namespace window {

// Milliseconds on a steady clock; tests give their own.
using SteadyClock = std::function<std::int64_t()>;
std::int64_t steady_ms();

class RealTimeClock : public QObject, public stage::ClockListener {
    Q_OBJECT
  public:
    RealTimeClock(stage::Stage& stage, SteadyClock clock = &steady_ms, QObject* parent = nullptr);
    ~RealTimeClock() override;

    // The timer runs from now on, the stage's present standing for the steady clock's now.
    void start();
    void stop();
    bool running() const { return started_; }
    // The stage stands still: the program is paused under the debugger.
    bool held() const { return held_; }

    // Brings the stage to now. Safe to call at any time (before an action, from a nested event
    // loop while a box or a tone holds the thread).
    void pulse();
    // The stage's time that now stands for.
    std::int64_t target() const;

    // A script being played waits for the clock: the stage is never brought past `at` (null: no
    // ceiling).
    void set_ceiling(std::optional<std::int64_t> at) { ceiling_ = at; }
    std::optional<std::int64_t> ceiling() const { return ceiling_; }

    // Ticks of Timer1(timer) of the robot in focus since the start, and the ticks a second over
    // the last whole second measured.
    std::int64_t ticks(int timer) const;
    double rate(int timer) const;
    // Milliseconds until the timer wakes the clock next.
    int next_wake_ms() const { return timer_.interval(); }

    void on_clock(const stage::ClockEvent& event) override;

  signals:
    // After each pulse: the panel, the world or the program may have changed.
    void advanced();

  private:
    void measure(std::int64_t real_now);
    void schedule();

    stage::Stage& stage_;
    SteadyClock clock_;
    QTimer timer_;
    std::int64_t real_origin_ = 0;
    std::int64_t stage_origin_ = 0;
    std::optional<std::int64_t> ceiling_;
    bool started_ = false;
    bool held_ = false;
    std::map<int, std::int64_t> ticks_;
    std::map<int, std::int64_t> window_start_ticks_;
    std::map<int, double> rates_;
    std::int64_t window_start_ = 0;
};

}  // namespace window
