// The real-time clock of the window: on a precise timer it brings the host session to the steady
// clock's now, tick by tick in time order, and drives a running program in slices against the
// same clock. Everything runs on the GUI thread, so ticks, host calls and panel events never
// overlap; while a service holds the thread (a message box, a tone) the panel only keeps one tick
// a timer, raised once the thread is free.
#pragma once

#include <QObject>
#include <QTimer>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "component_session.h"

namespace window {

// Milliseconds on a steady clock; tests give their own.
using SteadyClock = std::function<std::int64_t()>;
std::int64_t steady_ms();

class ClockDriver : public QObject {
    Q_OBJECT
  public:
    // `holding` says whether a service call holds the thread.
    ClockDriver(host::ComponentSession& session, std::function<bool()> holding,
                SteadyClock clock = &steady_ms, QObject* parent = nullptr);

    // The timer runs from now on, the session's present standing for the steady clock's now.
    void start();
    void stop();
    bool running() const { return started_; }

    // Brings the session to now: the program's steps and every tick due, in time order. Safe to
    // call at any time (before recording an action, from a nested event loop).
    void pulse();
    // The session time that now stands for.
    std::int64_t target() const;

    // A script being played waits for the clock: the session is never brought past `at` (null:
    // no ceiling).
    void set_ceiling(std::optional<std::int64_t> at) { ceiling_ = at; }
    std::optional<std::int64_t> ceiling() const { return ceiling_; }

    // Ticks of Timer1(0) and Timer1(1) raised since the start, and each wheel's ticks a second
    // over the last whole second measured.
    std::int64_t ticks(int timer) const { return ticks_[static_cast<std::size_t>(timer)]; }
    double rate(int timer) const { return rates_[static_cast<std::size_t>(timer)]; }
    // Milliseconds until the timer wakes the clock next.
    int next_wake_ms() const { return timer_.interval(); }

  signals:
    // After each pulse: the panel may have changed.
    void advanced();
    // The running program ended by itself (finished, failed, or halted on a limit).
    void program_ended();

  private:
    void step_to(std::int64_t when);
    void drive_program(std::int64_t until);
    void measure(std::int64_t real_now);
    void schedule();

    host::ComponentSession& session_;
    std::function<bool()> holding_;
    SteadyClock clock_;
    QTimer timer_;
    std::int64_t real_origin_ = 0;
    std::int64_t session_origin_ = 0;
    std::optional<std::int64_t> ceiling_;
    bool program_yielded_ = false;
    bool started_ = false;
    std::array<std::int64_t, 2> ticks_{};
    std::array<std::int64_t, 2> window_start_ticks_{};
    std::int64_t window_start_ = 0;
    std::array<double, 2> rates_{};
};

}  // namespace window
