#include "clock_driver.h"

#include <algorithm>
#include <chrono>

namespace window {

namespace {
// Steps of a program between two looks at the event loop: a loop without delays still yields.
constexpr std::uint64_t kSliceSteps = 2000;
// Ticks raised one by one in a pulse before the rest are left to one bring-up of the clock.
constexpr int kMostSteps = 4096;
// The timer's longest sleep when nothing is due: the status line and the ceiling are looked at.
constexpr std::int64_t kIdleMs = 50;
// How often the clock moves the due times on while a service holds the thread.
constexpr std::int64_t kHeldMs = 10;
}  // namespace

std::int64_t steady_ms() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

ClockDriver::ClockDriver(host::ComponentSession& session, std::function<bool()> holding,
                         SteadyClock clock, QObject* parent)
    : QObject(parent), session_(session), holding_(std::move(holding)), clock_(std::move(clock)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &ClockDriver::pulse);
}

void ClockDriver::start() {
    real_origin_ = clock_();
    session_origin_ = session_.now();
    window_start_ = real_origin_;
    window_start_ticks_ = ticks_;
    started_ = true;
    timer_.start(0);
}

void ClockDriver::stop() {
    started_ = false;
    timer_.stop();
}

std::int64_t ClockDriver::target() const {
    std::int64_t when = session_origin_ + (clock_() - real_origin_);
    if (ceiling_) when = std::min(when, *ceiling_);
    return std::max(when, session_.now());
}

void ClockDriver::pulse() {
    const std::int64_t when = target();
    if (holding_ && holding_()) {
        // The panel holds: due times move on and each timer keeps one tick for later.
        session_.advance_to(when);
    } else {
        drive_program(when);
        step_to(when);
    }
    measure(clock_());
    emit advanced();
    if (started_) schedule();
}

// Tick by tick, so that each wheel's ticks are counted. Ticks due at the same moment come in one
// bring-up: with two timers that is both of them.
void ClockDriver::step_to(std::int64_t when) {
    kestrone::IKestronePanel* panel = session_.panel();
    for (int n = 0; panel && n < kMostSteps; ++n) {
        std::int64_t due = 0, panel_now = 0;
        std::int32_t timer = -1;
        if (panel->NextTick(&due, &timer) != kestrone::S_OK || timer < 0 || timer > 1) break;
        panel->GetClock(&panel_now);
        const std::int64_t at = session_.now() + std::max<std::int64_t>(0, due - panel_now);
        if (at > when) break;
        std::int64_t raised = 0;
        session_.advance_to(at, &raised);
        if (raised == 0) break;
        if (raised >= 2) ++ticks_[static_cast<std::size_t>(1 - timer)];
        ++ticks_[static_cast<std::size_t>(timer)];
    }
    session_.advance_to(when);
}

void ClockDriver::drive_program(std::int64_t until) {
    program_yielded_ = false;
    while (session_.program_state() == kflow::RunState::Running) {
        const kflow::Pause p = session_.drive_program(kSliceSteps);
        if (p.why == kflow::Pause::Why::Slice) {
            program_yielded_ = true;
            return;
        }
        if (p.why != kflow::Pause::Why::Delay) {
            emit program_ended();
            return;
        }
        const std::int64_t wake = session_.program_wakes_at();
        if (wake > until) return;
        step_to(wake);
    }
}

void ClockDriver::measure(std::int64_t real_now) {
    const std::int64_t span = real_now - window_start_;
    if (span < 1000) return;
    for (std::size_t i = 0; i < rates_.size(); ++i) {
        rates_[i] = static_cast<double>(ticks_[i] - window_start_ticks_[i]) * 1000.0 /
                    static_cast<double>(span);
        window_start_ticks_[i] = ticks_[i];
    }
    window_start_ = real_now;
}

// Wakes for the next tick due, the program's next step or, with nothing due, a little later.
void ClockDriver::schedule() {
    if (holding_ && holding_()) {
        // A kept tick is due at once but cannot be raised: look again a little later.
        timer_.start(static_cast<int>(kHeldMs));
        return;
    }
    std::int64_t wait = program_yielded_ ? 0 : kIdleMs;
    const std::int64_t now = session_.now();
    if (ceiling_ && *ceiling_ > now) wait = std::min(wait, *ceiling_ - now);
    if (kestrone::IKestronePanel* panel = session_.panel()) {
        std::int64_t due = 0, panel_now = 0;
        std::int32_t timer = -1;
        if (panel->NextTick(&due, &timer) == kestrone::S_OK && timer >= 0) {
            panel->GetClock(&panel_now);
            wait = std::min(wait, due - panel_now);
        }
    }
    if (session_.program_state() == kflow::RunState::Running)
        wait = std::min(wait, session_.program_wakes_at() - now);
    timer_.start(static_cast<int>(std::clamp<std::int64_t>(wait, 0, kIdleMs)));
}

}  // namespace window
