// The timers on the panel's clock. A tick runs on the component's one thread, so it never runs
// while the component holds that thread (a message box or a tone): a timer that comes due then
// keeps one tick for when the thread is free, and keeps its phase; missed ticks don't pile up.
#include <algorithm>
#include <limits>

#include "panel/panel_model.h"
#include "platform/basic_error.h"

namespace panel {

namespace {

// The clock's end: a tick due there or later never comes.
constexpr std::int64_t kEndOfTime = std::numeric_limits<std::int64_t>::max();

// `ms` after `t`, or the end of time rather than a wrap.
std::int64_t later(std::int64_t t, std::int64_t ms) {
    return t >= kEndOfTime - ms ? kEndOfTime : t + ms;
}

bool running(const Element& e) {
    return e.interval > 0 && e.enabled && e.next_due != kEndOfTime;
}

unsigned bit(int timer) {
    return 1u << static_cast<unsigned>(timer);
}

}  // namespace

void Panel::restart_timer(Element& e) {
    e.next_due = later(now_, e.interval);
    // A period that starts afresh owes nothing: a kept tick goes with the old one.
    kept_ &= ~bit(e.index);
}

void Panel::set_interval(int id, std::int32_t ms) {
    if (ms < 0 || ms > 65535) vb::raise_error(vb::kInvalidPropertyValue);
    Element& e = mut(id);
    const bool changed = e.interval != ms;
    e.interval = ms;
    // Every write restarts the period, also one of the same value.
    restart_timer(e);
    if (changed) touch(e);
}

void Panel::set_timer_enabled(int id, bool v) {
    Element& e = mut(id);
    if (e.enabled == v) return;
    e.enabled = v;
    restart_timer(e);
    touch(e);
}

bool Panel::next_tick(std::int64_t* due, int* timer) const {
    bool any = false;
    for (int t = 0; t < timer_count(); ++t) {
        const Element& e = at(ids_.Timer1[static_cast<std::size_t>(t)]);
        if (!running(e)) continue;
        if (!any || e.next_due < *due) {
            *due = e.next_due;
            *timer = t;
            any = true;
        }
    }
    return any;
}

void Panel::tick(int timer) {
    const int id = member(ids_.Timer1, timer);
    raise(&at(id), Event::Timer);
}

void Panel::keep_tick(int timer) {
    member(ids_.Timer1, timer);
    kept_ |= bit(timer);
}

int Panel::kept_tick() const {
    for (int t = 0; t < timer_count(); ++t)
        if (kept_ & bit(t)) return t;
    return -1;
}

bool Panel::raise_next(std::int64_t end, std::int64_t* at, int* timer) {
    if (const int kept = kept_tick(); kept >= 0) {
        kept_ &= ~bit(kept);
        *at = now_;
        *timer = kept;
        tick(kept);
        return true;
    }
    std::int64_t due = 0;
    int t = -1;
    if (!next_tick(&due, &t) || due > end) return false;
    now_ = std::max(now_, due);
    // The next one is due a period on, unless the tick itself writes the Interval.
    Element& e = mut(ids_.Timer1[static_cast<std::size_t>(t)]);
    e.next_due = later(due, e.interval);
    *at = due;
    *timer = t;
    tick(t);
    return true;
}

std::int64_t Panel::advance_to(std::int64_t end, bool held) {
    std::int64_t ticks = 0;
    if (held) {
        for (int t = 0; t < timer_count(); ++t) {
            Element& e = mut(ids_.Timer1[static_cast<std::size_t>(t)]);
            if (!running(e) || e.next_due > end) continue;
            kept_ |= bit(t);
            // On by whole periods past `end`: the timer keeps its phase.
            const std::int64_t periods = (end - e.next_due) / e.interval + 1;
            e.next_due = periods >= (kEndOfTime - e.next_due) / e.interval
                             ? kEndOfTime
                             : e.next_due + periods * e.interval;
        }
    } else {
        // A tick may hold the thread and re-enter: every pass looks afresh.
        std::int64_t at = 0;
        int timer = -1;
        while (raise_next(end, &at, &timer))
            ++ticks;
    }
    now_ = std::max(now_, end);
    return ticks;
}

}  // namespace panel
