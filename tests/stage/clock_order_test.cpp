// The stage's one clock, as a listener sees it: every tick of either wheel and every step of the
// world, in time order, however unevenly the clock is brought on. A small model of the two
// timers and the world's 10 ms steps says what must come.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "window_double.h"

namespace {

using stage::ClockEvent;
using stage_testing::example_path;
using stage_testing::WindowDouble;

// (moment, 0 for a tick or 1 for a world step, timer): the order the stage promises.
using Event = std::tuple<std::int64_t, int, std::int32_t>;

class Recorder : public stage::ClockListener {
  public:
    void on_clock(const ClockEvent& e) override {
        if (e.kind == ClockEvent::Kind::Tick) seen.emplace_back(e.at, 0, e.timer);
        if (e.kind == ClockEvent::Kind::WorldStep) seen.emplace_back(e.at, 1, -1);
        if (e.kind == ClockEvent::Kind::Reached) reached.push_back(e.at);
    }
    std::vector<Event> seen;
    std::vector<std::int64_t> reached;
};

TEST(ClockOrder, AListenerSeesEveryTickAndWorldStepInTimeOrder) {
    WindowDouble w;
    std::string error;
    ASSERT_TRUE(w.stage.world_driver().load_file(example_path("open_floor.world"), &error))
        << error;
    ASSERT_EQ(w.session.start_simulation(), kestrone::S_OK);
    w.elapse(3);  // off the world's grid, so that its steps and the ticks interleave
    const std::int64_t start = w.stage.now();
    w.set_motors(200, 150);  // both timers restart now
    const std::int64_t interval[2] = {w.property("Timer1", 0, "Interval"),
                                      w.property("Timer1", 1, "Interval")};
    ASSERT_NE(interval[0], interval[1]);
    Recorder listener;
    w.stage.subscribe(listener);
    for (std::int64_t gap : {7, 13, 100, 1, 0, 250, 97, 532})
        w.elapse(gap);
    w.stage.unsubscribe(listener);
    const std::int64_t end = w.stage.now();
    ASSERT_EQ(end, start + 1000);

    std::vector<Event> model;
    for (std::int32_t timer : {0, 1})
        for (std::int64_t t = start + interval[timer]; t <= end; t += interval[timer])
            model.emplace_back(t, 0, timer);
    for (std::int64_t t = start - start % 10 + 10; t <= end; t += 10)
        model.emplace_back(t, 1, -1);
    std::sort(model.begin(), model.end());
    EXPECT_EQ(listener.seen, model);
    // Each bring-up ends where it was asked to, the last at the end.
    EXPECT_EQ(listener.reached.back(), end);
    EXPECT_TRUE(std::is_sorted(listener.reached.begin(), listener.reached.end()));
}

}  // namespace
