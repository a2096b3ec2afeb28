#include "real_time_clock.h"

#include <algorithm>
#include <chrono>

namespace window {

namespace {
// The timer's longest sleep when nothing is due: the status line and the ceiling are looked at.
constexpr std::int64_t kIdleMs = 50;
// How often the clock looks again while a service holds the thread.
constexpr std::int64_t kHeldMs = 10;
// The shortest sleep while ticks are due: a wheel at full speed ticks every 2 ms, both together
// up to 1,000 times a second, and each wake-up costs far more than the tick. Ticks due meanwhile
// are delivered together, in order and each at its own moment of the stage's clock; a quarter of
// a display frame is too short a batch for anyone to see.
constexpr std::int64_t kBatchMs = 4;
}  // namespace

std::int64_t steady_ms() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

RealTimeClock::RealTimeClock(stage::Stage& stage, SteadyClock clock, QObject* parent)
    : QObject(parent), stage_(stage), clock_(std::move(clock)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &RealTimeClock::pulse);
    stage_.subscribe(*this);
}

RealTimeClock::~RealTimeClock() {
    stage_.unsubscribe(*this);
}

void RealTimeClock::start() {
    real_origin_ = clock_();
    stage_origin_ = stage_.now();
    window_start_ = real_origin_;
    window_start_ticks_ = ticks_;
    started_ = true;
    timer_.start(0);
}

void RealTimeClock::stop() {
    started_ = false;
    timer_.stop();
}

std::int64_t RealTimeClock::target() const {
    // Before the start real time stands for nothing yet; held, it stands for nothing either.
    if (!started_ || stage_.program().paused()) return stage_.now();
    std::int64_t when = stage_origin_ + (clock_() - real_origin_);
    if (ceiling_) when = std::min(when, *ceiling_);
    return std::max(when, stage_.now());
}

void RealTimeClock::pulse() {
    if (held_ && !stage_.program().paused()) {
        // The held time is not made up: the stage goes on from where it stood.
        real_origin_ = clock_();
        stage_origin_ = stage_.now();
    }
    stage_.bring_to(target());
    held_ = stage_.program().paused();
    measure(clock_());
    emit advanced();
    if (started_) schedule();
}

void RealTimeClock::on_clock(const stage::ClockEvent& event) {
    if (event.kind == stage::ClockEvent::Kind::Tick && event.robot == 0) ++ticks_[event.timer];
}

std::int64_t RealTimeClock::ticks(int timer) const {
    const auto it = ticks_.find(timer);
    return it == ticks_.end() ? 0 : it->second;
}

double RealTimeClock::rate(int timer) const {
    const auto it = rates_.find(timer);
    return it == rates_.end() ? 0.0 : it->second;
}

void RealTimeClock::measure(std::int64_t real_now) {
    const std::int64_t span = real_now - window_start_;
    if (span < 1000) return;
    for (const auto& [timer, count] : ticks_) {
        rates_[timer] = static_cast<double>(count - window_start_ticks_[timer]) * 1000.0 /
                        static_cast<double>(span);
    }
    window_start_ticks_ = ticks_;
    window_start_ = real_now;
}

// Wakes when the stage has something due, or a little later with nothing due.
void RealTimeClock::schedule() {
    if (stage_.session().in_call()) {
        // A kept tick is due at once but cannot be raised: look again a little later.
        timer_.start(static_cast<int>(kHeldMs));
        return;
    }
    std::int64_t wait = kIdleMs;
    const std::int64_t now = stage_.now();
    if (held_) {
        // Nothing is due while held: the clock only looks whether the program goes on.
        timer_.start(static_cast<int>(kIdleMs));
        return;
    }
    if (ceiling_ && *ceiling_ > now) wait = std::min(wait, *ceiling_ - now);
    if (const auto due = stage_.next_due()) wait = std::min(wait, *due - now);
    wait = stage_.program_yielded() ? 0 : std::max(wait, kBatchMs);
    timer_.start(static_cast<int>(std::min(wait, kIdleMs)));
}

}  // namespace window
