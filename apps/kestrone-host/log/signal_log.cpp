#include "signal_log.h"

#include <algorithm>

namespace signal_log {

namespace {
// A lookup starts from the latest key before its moment: it applies at most this many changes.
constexpr std::uint64_t kKeyEvery = 1024;
}  // namespace

SignalLog::SignalLog(stage::Stage& stage, LogLimits limits)
    : stage_(stage), reader_(stage), limits_(limits) {}

SignalLog::~SignalLog() {
    if (running_) stage_.unsubscribe(*this);
}

void SignalLog::start() {
    stage_.subscribe(*this);
    running_ = true;
    start_ = stage_.now();
    changes_.clear();
    keys_.clear();
    folded_ = 0;
    tone_ends_.reset();
    current_.fill(0);
    reader_.read_all(current_);
    had_arena_ = current_[kX] != kAbsent;
    first_ = committed_ = current_;
    first_at_ = open_at_ = 0;
}

void SignalLog::stop() {
    if (!running_) return;
    move_to(stage_.now() - start_);
    commit();
    stage_.unsubscribe(*this);
    running_ = false;
}

void SignalLog::on_clock(const stage::ClockEvent& e) {
    using Kind = stage::ClockEvent::Kind;
    if (!running_) return;
    move_to(e.at - start_);
    switch (e.kind) {
        case Kind::Tick:
            reader_.read_tick(current_);
            break;
        case Kind::Reached:
            reader_.read_wheels(current_);
            break;
        case Kind::WorldStep:
            reader_.read_world(current_);
            break;
        case Kind::Program:
            reader_.read_program(current_);
            break;
        case Kind::Changed:
            reader_.read_all(current_);
            break;
        case Kind::Tone: {
            reader_.read_program(current_);
            const bool sounds = e.hertz > 0 && e.length_ms > 0;
            current_[kToneHz] = sounds ? e.hertz : 0;
            tone_ends_.reset();
            if (sounds) tone_ends_ = open_at_ + e.length_ms;
            break;
        }
    }
    had_arena_ = had_arena_ || current_[kX] != kAbsent;
}

// The open moment is done once the clock has passed it; a tone that ended on the way is a
// moment of its own.
void SignalLog::move_to(std::int64_t at) {
    if (tone_ends_ && *tone_ends_ < at) {
        if (*tone_ends_ > open_at_) {
            commit();
            open_at_ = *tone_ends_;
        }
        current_[kToneHz] = 0;
        tone_ends_.reset();
    }
    if (at > open_at_) {
        commit();
        open_at_ = at;
    }
    if (tone_ends_ && *tone_ends_ <= at) {
        current_[kToneHz] = 0;
        tone_ends_.reset();
    }
}

void SignalLog::commit() {
    // What changed at the first moment is part of it.
    if (changes_.empty() && open_at_ == first_at_) {
        first_ = committed_ = current_;
        return;
    }
    bool any = false;
    for (std::size_t s = 0; s < kSignalCount; ++s) {
        if (current_[s] == committed_[s]) continue;
        changes_.push_back({open_at_, current_[s], static_cast<Signal>(s)});
        any = true;
    }
    if (!any) return;
    committed_ = current_;
    const std::uint64_t total = folded_ + changes_.size();
    if (total - (keys_.empty() ? 0 : keys_.back().upto) >= kKeyEvery)
        keys_.push_back({total, open_at_, committed_});
    fold_oldest();
}

void SignalLog::fold_oldest() {
    while (!changes_.empty() && (changes_.size() > limits_.keep_changes ||
                                 open_at_ - changes_.front().at > limits_.keep_ms)) {
        const std::int64_t at = changes_.front().at;
        while (!changes_.empty() && changes_.front().at == at) {
            first_[changes_.front().signal] = changes_.front().value;
            changes_.pop_front();
            ++folded_;
        }
        first_at_ = at;
    }
    while (!keys_.empty() && keys_.front().upto <= folded_)
        keys_.pop_front();
}

const SignalLog::Key* SignalLog::key_before(std::int64_t ms) const {
    const auto after = std::upper_bound(keys_.begin(), keys_.end(), ms,
                                        [](std::int64_t t, const Key& k) { return t < k.at; });
    return after == keys_.begin() ? nullptr : &*std::prev(after);
}

Values SignalLog::at(std::int64_t ms) const {
    if (ms >= open_at_) return current_;
    const Key* key = key_before(ms);
    Values v = key ? key->values : first_;
    for (std::size_t i = key ? key->upto - folded_ : 0; i < changes_.size() && changes_[i].at <= ms;
         ++i)
        v[changes_[i].signal] = changes_[i].value;
    return v;
}

void SignalLog::replay(std::int64_t from_ms, std::int64_t to_ms,
                       const std::function<void(const Moment&)>& each) const {
    const bool open = current_ != committed_;
    Moment m;
    m.changed.set();
    if (open && from_ms >= open_at_) {
        m.at_ms = open_at_;
        m.values = current_;
        each(m);
        return;
    }
    const Key* key = key_before(from_ms);
    m.values = key ? key->values : first_;
    m.at_ms = key ? key->at : first_at_;
    std::size_t i = key ? key->upto - folded_ : 0;
    for (; i < changes_.size() && changes_[i].at <= from_ms; ++i) {
        m.values[changes_[i].signal] = changes_[i].value;
        m.at_ms = changes_[i].at;
    }
    each(m);
    while (i < changes_.size() && changes_[i].at <= to_ms) {
        m.at_ms = changes_[i].at;
        m.changed.reset();
        for (; i < changes_.size() && changes_[i].at == m.at_ms; ++i) {
            m.values[changes_[i].signal] = changes_[i].value;
            m.changed.set(changes_[i].signal);
        }
        each(m);
    }
    if (!open || open_at_ > to_ms || open_at_ <= m.at_ms) return;
    m.changed.reset();
    for (std::size_t s = 0; s < kSignalCount; ++s)
        m.changed.set(s, current_[s] != committed_[s]);
    m.at_ms = open_at_;
    m.values = current_;
    each(m);
}

}  // namespace signal_log
