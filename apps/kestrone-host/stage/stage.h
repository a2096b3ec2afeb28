// The stage: what a running robot needs, under every face. It owns the robots' sessions (one
// for now; nothing outside the stage assumes one), the world they drive in, the program, and the
// one clock that brings them all to a moment: panel ticks, world steps and program slices in time
// order, each told to the clock's listeners. The console feeds it virtual time, the window real
// time. Qt-free.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "clock_listener.h"
#include "component_session.h"
#include "program_run.h"
#include "run_driver.h"
#include "session_port.h"
#include "world.h"
#include "world_driver.h"

namespace stage {

// Long work stopped by the face (a user's Ctrl-C) before its end.
inline constexpr kestrone::HRESULT kInterrupted = static_cast<kestrone::HRESULT>(0x80004004u);

// Told between the slices of a long advance or run with the milliseconds done of those asked for
// (a run: of its limit); false stops the work there.
using ProgressCheck = std::function<bool(std::int64_t done_ms, std::int64_t total_ms)>;

class Stage {
  public:
    // `services` receive the component's messages and tones; they must outlive the stage.
    explicit Stage(kestrone::IHostServices& services, host::ProjectCodec codec = {});
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // ---- The robots: a face works on the one in focus.
    host::ComponentSession& session() { return *robots_[focus_]->session; }
    const host::ComponentSession& session() const { return *robots_[focus_]->session; }
    std::size_t robot_count() const { return robots_.size(); }

    // ---- The world the robot in focus drives in.
    world::World& world() { return world_; }
    world::WorldDriver& world_driver() { return *robots_[focus_]->driver; }

    // ---- The program, run on the robot in focus.
    ProgramRun& program() { return program_; }
    bool load_program(const std::string& path, std::string* error);
    // From text a face holds, named `name` in messages (ProgramRun::load_text).
    bool load_program_text(std::string_view source, const std::string& name, std::string* error);
    // Starts it now: it then runs as the clock is brought on.
    kestrone::HRESULT start_program();
    // Starts it and runs it to its end, each delay bringing the clock on (the console's way). A
    // program that reaches a limit is halted at the line it had reached.
    kflow::RunOutcome run_program(const kflow::RunLimits& limits = {});
    // Starts it under the debugger, stopped before its first statement.
    kestrone::HRESULT debug_program();
    // Brings the clock on while a debugged program runs: until the debugger stops it, it ends, it
    // reaches the limits of a run (counted from its debug), or `until` (where it is then stopped).
    // Finished also when it was stopped; the outcome's message says why it ended otherwise.
    kflow::RunOutcome drive_debugged(const kflow::RunLimits& limits,
                                     std::optional<std::int64_t> until = std::nullopt);
    // Steps of a program run between two looks at a face's event loop (a loop without delays
    // still yields); the console's run takes its whole budget in one.
    void set_slice_steps(std::uint64_t steps) { slice_steps_ = steps; }

    // ---- The clock.
    std::int64_t now() const { return session().now(); }
    // Brings the clock to `when` (never back): every tick, world step and program slice due on
    // the way, in time order (at one moment: ticks, then the world, then the program). While the
    // component holds the thread the ticks are kept and the program waits. `ticks` counts the
    // ticks raised. With a progress check it goes in slices and may end with kInterrupted.
    kestrone::HRESULT bring_to(std::int64_t when, std::int64_t* ticks = nullptr);
    kestrone::HRESULT advance(std::int64_t ms, std::int64_t* ticks = nullptr);
    // When something is next due (a tick, a world step, the program's next slice); nullopt
    // when nothing is. A face that keeps real time sleeps until then.
    std::optional<std::int64_t> next_due() const;
    // The program ran out of its slice without a delay at the last bring_to: it wants to go on
    // at once, after the face's events.
    bool program_yielded() const { return yielded_; }

    void subscribe(ClockListener& listener);
    void unsubscribe(ClockListener& listener);
    // Tells the listeners that something may have changed off the clock, now: every command
    // calls it when it has run, and a face calls it after whatever it did to the robot outside a
    // command.
    void changed();
    void set_progress_check(ProgressCheck check) { progress_ = std::move(check); }

  private:
    // The face's services as the component sees them: each tone is told to the listeners at
    // its start, before the face plays it.
    class ToneTap : public kestrone::IHostServices {
      public:
        ToneTap(Stage& stage, kestrone::IHostServices& face) : stage_(stage), face_(face) {}
        virtual ~ToneTap() = default;
        void ShowMessage(const std::string& text) noexcept override { face_.ShowMessage(text); }
        void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override;

      private:
        Stage& stage_;
        kestrone::IHostServices& face_;
    };
    struct Robot {
        std::unique_ptr<host::ComponentSession> session;
        std::unique_ptr<world::SessionPort> port;
        std::unique_ptr<world::WorldDriver> driver;
    };
    struct Due {
        enum class Kind : std::uint8_t { Tick, WorldStep, Program } kind;
        std::int64_t at;
        std::size_t robot;
    };
    std::optional<Due> next_event(std::int64_t when) const;
    bool held() const;
    kestrone::HRESULT bring_clock_to(std::int64_t when, std::int64_t* raised);
    kestrone::HRESULT bring_in_slices(std::int64_t when, std::int64_t* raised);
    void run_program_slice(std::int64_t at);
    kflow::RunOutcome drive(const kflow::RunLimits& limits, std::int64_t started,
                            std::optional<std::int64_t> until);
    void notify(const ClockEvent& event);

    ToneTap services_;
    world::World world_;
    std::vector<std::unique_ptr<Robot>> robots_;
    std::size_t focus_ = 0;
    ProgramRun program_;
    std::vector<ClockListener*> listeners_;
    ProgressCheck progress_;
    std::uint64_t slice_steps_ = 2000;
    std::int64_t stepped_to_ = 0;  // the world has taken every step up to here
    std::int64_t program_started_ = 0;
    bool yielded_ = false;
    bool program_rests_ = false;
};

}  // namespace stage
