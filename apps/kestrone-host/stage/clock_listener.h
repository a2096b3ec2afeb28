// What keeps step with the stage's clock: the recorder, a window's repaint, a log of the signals,
// a view of the running program. Each is told every event in time order as it happens; none asks
// the panel anything about time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace stage {

struct ClockEvent {
    enum class Kind : std::uint8_t {
        Tick,       // a wheel timer of `robot` ticked
        WorldStep,  // the world moved the robot and set the inputs it owns
        Program,    // the program ran a slice; `line` is where it stands
        Reached,    // the clock came to `at`: everything due by then is done
        Changed,    // a face's command or other action ran at `at`: anything may have changed
        Tone,       // the robot asked for a tone of `hertz` for `length_ms` at `at`
    };
    Kind kind = Kind::Reached;
    std::int64_t at = 0;  // milliseconds on the stage's clock
    std::int32_t timer = -1;
    std::size_t robot = 0;
    int line = 0;
    std::int32_t hertz = 0;  // a Tone's, as the component passed them
    std::int32_t length_ms = 0;
};

class ClockListener {
  public:
    virtual ~ClockListener() = default;
    // Called on the clock's own thread, inside the stage's work: a listener reads what it needs
    // and returns; it does not move the clock.
    virtual void on_clock(const ClockEvent& event) = 0;
};

}  // namespace stage
