// The stage's parts and its program; the clock is in stage_clock.cpp.
#include "stage.h"

#include <algorithm>

namespace stage {

using kestrone::HRESULT;
using kflow::Pause;

Stage::Stage(kestrone::IHostServices& services, host::ProjectCodec codec)
    : services_(*this, services) {
    auto robot = std::make_unique<Robot>();
    robot->session = std::make_unique<host::ComponentSession>(services_, std::move(codec));
    robot->port = std::make_unique<world::SessionPort>(*robot->session);
    robot->driver = std::make_unique<world::WorldDriver>(world_, *robot->port);
    // The program holds the object's interfaces: it goes before them.
    robot->session->on_release([this] { program_.retire(); });
    robots_.push_back(std::move(robot));
}

Stage::~Stage() {
    program_.retire();
    for (auto& robot : robots_)
        robot->session->on_release(nullptr);
}

void Stage::subscribe(ClockListener& listener) {
    if (std::find(listeners_.begin(), listeners_.end(), &listener) == listeners_.end())
        listeners_.push_back(&listener);
}

void Stage::unsubscribe(ClockListener& listener) {
    listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), &listener),
                     listeners_.end());
}

void Stage::notify(const ClockEvent& event) {
    // A listener may unsubscribe itself on the way.
    const std::vector<ClockListener*> now = listeners_;
    for (ClockListener* l : now)
        if (std::find(listeners_.begin(), listeners_.end(), l) != listeners_.end())
            l->on_clock(event);
}

void Stage::changed() {
    notify({ClockEvent::Kind::Changed, now(), -1, focus_});
}

void Stage::ToneTap::PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept {
    ClockEvent tone{ClockEvent::Kind::Tone, stage_.now(), -1, stage_.focus_};
    tone.hertz = hertz;
    tone.length_ms = milliseconds;
    try {
        stage_.notify(tone);
    } catch (...) {
        // A listener that could not keep it (out of memory) does not stop the tone.
    }
    face_.PlayTone(hertz, milliseconds);
}

bool Stage::load_program(const std::string& path, std::string* error) {
    return program_.load(session(), path, error);
}

bool Stage::load_program_text(std::string_view source, const std::string& name,
                              std::string* error) {
    return program_.load_text(session(), source, name, error);
}

HRESULT Stage::start_program() {
    yielded_ = false;
    program_started_ = now();
    return program_.start(now());
}

HRESULT Stage::debug_program() {
    yielded_ = false;
    program_started_ = now();
    return program_.debug(now());
}

kflow::RunOutcome Stage::drive_debugged(const kflow::RunLimits& limits,
                                        std::optional<std::int64_t> until) {
    return drive(limits, program_started_, until);
}

kflow::RunOutcome Stage::run_program(const kflow::RunLimits& limits) {
    using End = kflow::RunOutcome::End;
    if (session().in_call()) return {End::Failed, 0, "a call in progress holds the session"};
    if (!program_.loaded()) return {End::Failed, 0, "no program is loaded"};
    if (!session().panel()) return {End::Failed, 0, "the component offers no panel to keep time"};
    if (kestrone::failed(start_program())) return {End::Failed, 0, program_.message()};
    return drive(limits, program_started_, std::nullopt);
}

kflow::RunOutcome Stage::drive(const kflow::RunLimits& limits, std::int64_t started,
                               std::optional<std::int64_t> until) {
    using End = kflow::RunOutcome::End;
    // A run is asked between its delays, of its whole limit; each delay goes in one piece.
    const ProgressCheck check = std::exchange(progress_, nullptr);
    const std::uint64_t slice = slice_steps_;
    End end = End::Finished;
    while (program_.running() && !program_.paused()) {
        slice_steps_ = limits.steps - std::min(limits.steps, program_.steps());
        const std::int64_t wake = program_.wakes_at().value_or(now());
        if (slice_steps_ == 0) {
            end = End::OutOfSteps;
        } else if (until && wake > *until) {
            bring_to(*until);
            program_.pause(now());
            break;
        } else if (wake - started > limits.clock_ms) {
            bring_to(started + limits.clock_ms);
            program_.stop_out_of_time(limits.clock_ms);
            end = End::OutOfTime;
            break;
        } else {
            // The ticks and world steps up to the program's moment, then its slice there.
            bring_to(wake);
            if (!yielded_) {
                if (check && now() > started && !check(now() - started, limits.clock_ms))
                    program_.stop("the program was interrupted at line " +
                                  std::to_string(program_.line()));
                continue;
            }
            end = End::OutOfSteps;
        }
        program_.stop_out_of_steps(limits.steps);
        break;
    }
    progress_ = check;
    slice_steps_ = slice;
    if (end == End::Finished && program_.state() == kflow::RunState::Halted) end = End::Halted;
    if (end == End::Finished && program_.state() == kflow::RunState::Failed) end = End::Failed;
    return {end, now() - started, program_.message()};
}

}  // namespace stage
