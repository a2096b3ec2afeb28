// A log of the robot's signals on the stage's clock: one sample at its start and one at each
// moment something changed, never polling. It listens to the clock (ticks, world steps, program
// slices) and to what faces do off the clock (commands, tones), and reads at each event only what
// that event can change.
//
// A tone sounds on the log from the moment it was asked for, for its length on the clock: in the
// console, where a tone takes no time, the program goes on meanwhile. A new tone replaces the one
// sounding; one of no length or no pitch silences it.
//
// Memory is bounded: the log keeps the newest hour of the clock (and at most 4,194,304 changes,
// 64 MB); older moments are folded into its first, which then stands at the cut with every signal
// as it was there.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "signal_reader.h"
#include "signals.h"
#include "stage.h"

namespace signal_log {

struct LogLimits {
    std::int64_t keep_ms = 60 * 60 * 1000;
    std::size_t keep_changes = std::size_t{1} << 22;
};

class SignalLog : public stage::ClockListener {
  public:
    // The stage must outlive the log.
    explicit SignalLog(stage::Stage& stage, LogLimits limits = {});
    ~SignalLog() override;
    SignalLog(const SignalLog&) = delete;
    SignalLog& operator=(const SignalLog&) = delete;

    // Starts anew: time 0 is the stage's present moment, where the first sample is taken.
    void start();
    // Ends it at the present moment (a tone that ended by then included); it stays readable.
    void stop();
    // Time 0 on the stage's clock.
    std::int64_t started_at() const { return start_; }
    // The first moment kept (0 until the oldest were folded) and the latest.
    std::int64_t first_ms() const { return first_at_; }
    std::int64_t last_ms() const { return open_at_; }
    // An arena was loaded at some moment: x, y and theta have values.
    bool had_arena() const { return had_arena_; }

    // Every signal's value at `ms` from the start (before the first moment kept: the first's).
    Values at(std::int64_t ms) const;
    // The latest moment at or before `from_ms` (the first kept, if none), with every signal
    // marked changed; then every later moment up to `to_ms`, in time order, each with the
    // signals that changed at it. While running, the latest moment may still change.
    void replay(std::int64_t from_ms, std::int64_t to_ms,
                const std::function<void(const Moment&)>& each) const;

    void on_clock(const stage::ClockEvent& event) override;

  private:
    struct Change {
        std::int64_t at;
        std::int32_t value;
        Signal signal;
    };
    // Every signal's values once a change has applied: a place to start a lookup from.
    struct Key {
        std::uint64_t upto;  // changes applied, counted from the log's start
        std::int64_t at;
        Values values;
    };

    void move_to(std::int64_t at);
    void commit();
    void fold_oldest();
    // Where a lookup of `ms` starts: the values, the moment they stand at, the change after.
    const Key* key_before(std::int64_t ms) const;

    stage::Stage& stage_;
    SignalReader reader_;
    LogLimits limits_;
    bool running_ = false;
    bool had_arena_ = false;
    std::int64_t start_ = 0;

    Values first_{};  // at first_at_
    std::int64_t first_at_ = 0;
    std::deque<Change> changes_;  // after first_at_, in time order
    std::uint64_t folded_ = 0;    // changes folded into first_
    std::deque<Key> keys_;

    Values committed_{};  // once every change kept has applied
    Values current_{};    // the open moment's values, as read so far
    std::int64_t open_at_ = 0;
    std::optional<std::int64_t> tone_ends_;
};

}  // namespace signal_log
