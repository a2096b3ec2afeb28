// Timers and input while the component holds the thread: a host whose event loop keeps running
// inside a message box or a tone, and calls back into the panel from there.
#include <gtest/gtest.h>

#include <functional>

#include "host/rovanta_object.h"
#include "kestrone/status.h"
#include "simulation_fixture.h"

namespace {

using kestrone::HRESULT;
using kestrone::PointerAction;
using kestrone::S_FALSE;
using kestrone::S_OK;
using sim_testing::params;

// While a box is open or a tone sounds, the host's loop wakes at each tick that NextTick names
// until the hold has lasted its time, then once more at its end; and the user presses and
// releases the button on the LDR's panel.
class BusyHost final : public kestrone::IHostServices {
  public:
    virtual ~BusyHost() = default;
    void ShowMessage(const std::string&) noexcept override { run_loop(message_ms); }
    void PlayTone(std::int32_t, std::int32_t ms) noexcept override { run_loop(ms); }

    kestrone::IKestronePanel* panel = nullptr;
    rovanta::Rovanta* core = nullptr;
    std::int64_t message_ms = 0;  // how long the user takes to close a box

    std::vector<std::int64_t> wakeups;
    std::vector<HRESULT> statuses;  // of every call made from inside
    std::int64_t ticks_inside = 0;
    std::array<std::int16_t, 2> phases_inside{-1, -1};
    std::int32_t ldr_inside = -1;

  private:
    void run_loop(std::int64_t ms) {
        if (!panel) return;
        std::int64_t start = 0, due = 0, ticks = 0;
        std::int32_t timer = -1;
        panel->GetClock(&start);
        // Bounded: a NextTick that never moved on would come back here again and again.
        for (int i = 0; i < 20; ++i) {
            panel->NextTick(&due, &timer);
            if (timer < 0 || due > start + ms) break;
            wakeups.push_back(due);
            statuses.push_back(panel->AdvanceTo(due, &ticks));
            ticks_inside += ticks;
        }
        statuses.push_back(panel->AdvanceTo(start + ms, &ticks));
        ticks_inside += ticks;
        statuses.push_back(panel->Tick(1));
        statuses.push_back(panel->Pointer(PointerAction::Down, 1, 0, 20, 60));
        statuses.push_back(panel->Pointer(PointerAction::Up, 1, 0, 20, 60));
        phases_inside = core->motors.iWheelPhase;
        ldr_inside = core->sensors.lADCVal[0];
    }
};

// The busy host is made before the robot that calls on it.
struct BusyHostFirst {
    BusyHost host;
};
class HeldRobot : public BusyHostFirst, public sim_testing::SimRobot {
  public:
    HeldRobot() : SimRobot(21, &host) {
        host.panel = &view();
        host.core = &r();
    }
    HRESULT call(std::int32_t id, const kestrone::Variant& p) { return SimRobot::call(id, p); }
};

TEST(PanelHold, TicksDueInABoxOrAToneComeOnceEachAfterItAndKeepTheirPhase) {
    // A tone of 370 ms, from 256 x 1 + 114; and a box that the user closes after 370 ms.
    const std::pair<const char*, std::function<HRESULT(HeldRobot&)>> holds[] = {
        {"tone",
         [](HeldRobot& r) {
             return r.call(15, params({44, 1, 114}));
         }},
        {"message box",
         [](HeldRobot& r) {
             kestrone::Variant ret, affected;
             std::int32_t cycles = 0;
             return r.object().SimMacroCall2(0, params({}), &ret, &affected, &cycles);
         }},
    };
    for (const auto& [what, hold] : holds) {
        SCOPED_TRACE(what);
        HeldRobot robot;
        robot.host.message_ms = 370;
        ASSERT_EQ(robot.object().StartSimulation(), S_OK);
        ASSERT_EQ(robot.call(4, params({100})), S_OK);  // both wheels forwards, timers at 100 ms
        std::int64_t ticks = -1, due = -1;
        std::int32_t timer = -1;
        ASSERT_EQ(robot.view().AdvanceTo(50, &ticks), S_OK);
        EXPECT_EQ(ticks, 0);

        ASSERT_EQ(hold(robot), S_OK);  // the hold runs from 50 to 420
        // Inside: the loop woke at each due time in turn, and nothing reached the component.
        EXPECT_EQ(robot.host.wakeups, (std::vector<std::int64_t>{100, 200, 300, 400}));
        for (HRESULT hr : robot.host.statuses)
            EXPECT_EQ(hr, S_FALSE);
        EXPECT_EQ(robot.host.ticks_inside, 0);
        EXPECT_EQ(robot.host.phases_inside, (std::array<std::int16_t, 2>{0, 0}));
        EXPECT_EQ(robot.host.ldr_inside, robot.core().sensors.lADCVal[0]);
        EXPECT_EQ(robot.core().panel.captured(), -1);

        // Free again: one kept tick a timer, due at once, the lower index first.
        robot.view().NextTick(&due, &timer);
        EXPECT_EQ(due, 420);
        EXPECT_EQ(timer, 0);
        ASSERT_EQ(robot.view().AdvanceTo(420, &ticks), S_OK);
        EXPECT_EQ(ticks, 2);
        EXPECT_EQ(robot.core().motors.iWheelPhase, (std::array<std::int16_t, 2>{1, 1}));
        // Then on the old beat: 500, not 520.
        robot.view().NextTick(&due, &timer);
        EXPECT_EQ(due, 500);
        ASSERT_EQ(robot.view().AdvanceTo(500, &ticks), S_OK);
        EXPECT_EQ(ticks, 2);
        EXPECT_EQ(robot.core().motors.iWheelPhase, (std::array<std::int16_t, 2>{2, 2}));
    }
}

}  // namespace
