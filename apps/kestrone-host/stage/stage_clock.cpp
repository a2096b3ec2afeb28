// The stage's one clock: everything that keeps time is brought to a moment here, in time order.
#include <algorithm>
#include <chrono>
#include <limits>

#include "stage.h"

namespace stage {

using kestrone::HRESULT;
using kflow::Pause;

namespace {
constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();

// The first multiple of `period` of the panel's clock after `after`, on the session's clock.
std::int64_t next_multiple(const host::ComponentSession& session, std::int64_t after,
                           std::int64_t period) {
    const std::int64_t panel_after = after - (session.now() - session.panel_clock());
    const std::int64_t to_go = period - ((panel_after % period) + period) % period;
    return after > kFarthest - to_go ? kFarthest : after + to_go;
}
}  // namespace

bool Stage::held() const {
    return std::any_of(robots_.begin(), robots_.end(),
                       [](const auto& r) { return r->session->in_call(); });
}

// At one moment: ticks (robot by robot), then the world, then the program.
std::optional<Stage::Due> Stage::next_event(std::int64_t when) const {
    std::optional<Due> next;
    const auto consider = [&](Due::Kind kind, std::int64_t at, std::size_t robot) {
        if (at <= when && (!next || at < next->at)) next = Due{kind, at, robot};
    };
    const bool holding = held();
    for (std::size_t r = 0; r < robots_.size(); ++r) {
        std::int64_t at = 0;
        // Held, a tick is kept instead: the bring-up at the end keeps one a timer.
        if (!holding && robots_[r]->session->next_tick(&at)) consider(Due::Kind::Tick, at, r);
    }
    if (world_.loaded() && session().panel())
        consider(Due::Kind::WorldStep, next_multiple(session(), stepped_to_, world::kStepMs),
                 focus_);
    if (!holding && !program_rests_)
        if (const auto wake = program_.wakes_at())
            consider(Due::Kind::Program, std::max(*wake, now()), focus_);
    return next;
}

std::optional<std::int64_t> Stage::next_due() const {
    std::optional<std::int64_t> next;
    const auto take = [&next](std::int64_t at) {
        if (!next || at < *next) next = at;
    };
    for (const auto& robot : robots_) {
        std::int64_t at = 0;
        if (robot->session->next_tick(&at)) take(at);
    }
    if (world_.loaded() && session().panel())
        take(next_multiple(session(), std::max(stepped_to_, now()), world::kStepMs));
    if (const auto wake = program_.wakes_at()) take(std::max(*wake, now()));
    return next;
}

HRESULT Stage::advance(std::int64_t ms, std::int64_t* ticks) {
    if (ms < 0) return kestrone::E_INVALIDARG;
    const std::int64_t from = now();
    return bring_to(from > kFarthest - ms ? kFarthest : from + ms, ticks);
}

HRESULT Stage::bring_to(std::int64_t when, std::int64_t* ticks) {
    if (ticks) *ticks = 0;
    if (!session().panel()) return host::kNoObject;
    std::int64_t raised = 0;
    const HRESULT hr = progress_ ? bring_in_slices(when, &raised) : bring_clock_to(when, &raised);
    if (ticks) *ticks = raised;
    return hr;
}

HRESULT Stage::bring_clock_to(std::int64_t when, std::int64_t* raised) {
    yielded_ = program_rests_ = false;
    // Every step up to the present is behind: the world steps at the moments still to come.
    stepped_to_ = now();
    while (const std::optional<Due> due = next_event(when)) {
        host::ComponentSession& s = *robots_[due->robot]->session;
        if (due->kind == Due::Kind::Tick) {
            std::int64_t at = 0;
            std::int32_t timer = -1;
            // A tick that could not be raised (the thread was taken meanwhile) waits for the
            // bring-up below.
            if (!s.raise_next_tick(due->at, &at, &timer)) break;
            ++*raised;
            notify({ClockEvent::Kind::Tick, at, timer, due->robot});
            continue;
        }
        std::int64_t n = 0;
        s.bring_panel_to(due->at, &n);
        *raised += n;
        if (due->kind == Due::Kind::WorldStep) {
            stepped_to_ = due->at;
            robots_[due->robot]->driver->step();
            notify({ClockEvent::Kind::WorldStep, due->at, -1, due->robot});
        } else {
            run_program_slice(due->at);
        }
    }
    HRESULT hr = kestrone::S_OK;
    for (auto& robot : robots_) {
        std::int64_t n = 0;
        const HRESULT h = robot->session->bring_panel_to(std::max(when, robot->session->now()), &n);
        if (kestrone::failed(h)) hr = h;
        *raised += n;
    }
    notify({ClockEvent::Kind::Reached, now(), -1, focus_});
    return hr;
}

void Stage::run_program_slice(std::int64_t at) {
    const Pause p = program_.run_slice(at, slice_steps_ ? slice_steps_ : 1);
    // A slice used up, or a delay of nothing: the program rests until the next bring-up, so
    // that a face's events come between.
    yielded_ = p.why == Pause::Why::Slice;
    program_rests_ = yielded_ || (p.why == Pause::Why::Delay && p.delay_ms == 0);
    notify({ClockEvent::Kind::Program, at, -1, focus_, program_.line()});
}

// Slices of the clock that grow while they pass quickly, so that the check is asked a few times
// a second however dense the ticks are.
HRESULT Stage::bring_in_slices(std::int64_t when, std::int64_t* raised) {
    using Clock = std::chrono::steady_clock;
    const std::int64_t from = now();
    std::int64_t slice = 16;
    while (true) {
        const std::int64_t at = now();
        if (at >= when) return kestrone::S_OK;
        const std::int64_t to = when - at > slice ? at + slice : when;
        const auto started = Clock::now();
        std::int64_t ticks = 0;
        const HRESULT hr = bring_clock_to(to, &ticks);
        *raised += ticks;
        // A clock that did not move would never get there.
        if (kestrone::failed(hr) || now() <= at) return hr;
        if (to < when && !progress_(to - from, when - from)) return kInterrupted;
        if (Clock::now() - started < std::chrono::milliseconds(50) &&
            slice < (std::int64_t{1} << 61))
            slice *= 2;
    }
}

}  // namespace stage
