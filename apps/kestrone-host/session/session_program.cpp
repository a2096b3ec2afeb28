// The session's running program: a .kflow file checked against the component's macros, started,
// driven in slices or to its end on the session's clock, and stopped.
#include "component_session.h"
#include "session_busy.h"
#include "user_file.h"

namespace host {

using kestrone::HRESULT;
using kflow::Pause;
using kflow::RunState;

namespace {

// A program's delays on a clock the session moves.
class SessionClock : public kflow::Clock {
  public:
    explicit SessionClock(std::function<void(std::uint16_t)> wait) : wait_(std::move(wait)) {}
    void wait(std::uint16_t ms) override { wait_(ms); }

  private:
    std::function<void(std::uint16_t)> wait_;
};

bool fail_with(std::string* error, std::string why) {
    if (error) *error = std::move(why);
    return false;
}

}  // namespace

bool ComponentSession::load_program(const std::string& path, std::string* error) {
    if (busy()) return fail_with(error, "a call in progress holds the session");
    if (!component_) return fail_with(error, "the component offers no host interface");
    std::string source, unread;
    if (!read_user_file(path, kLargestTextFile, "a robot program", &source, &unread))
        return fail_with(error, "cannot read the program " + path + ": " + unread);
    // The macro table exists once the component knows the host's version.
    kestrone::Variant ready;
    if (field("bInitialised", std::nullopt, "", &ready) != kestrone::S_OK || ready.is_array() ||
        ready.type() != kestrone::VarType::Boolean || !ready.as_boolean()) {
        const HRESULT hr = make_ready();
        if (kestrone::failed(hr))
            return fail_with(error, "the component could not take the host's version (" +
                                        kflow::status_words(hr) + ")");
    }
    std::string why;
    auto macros = kflow::MacroTable::read(*component_.get(), &why);
    if (!macros) return fail_with(error, why);
    kflow::CheckedProgram checked = kflow::check_program(source, path, *macros);
    if (!checked.program)
        return fail_with(error, checked.faults.empty()
                                    ? path + ": the program does not pass its checks"
                                    : kflow::format_diagnostic(path, checked.faults.front()));
    retire_program();
    program_ = std::make_unique<kflow::Program>(std::move(*checked.program));
    interpreter_ = std::make_unique<kflow::Interpreter>(*program_, *component_.get());
    return true;
}

// The program goes; its variables stay as the last run's, if it ran.
void ComponentSession::retire_program() {
    if (interpreter_) {
        {
            Busy b(depth_);
            interpreter_->stop();
        }
        if (interpreter_->state() != RunState::Ready) {
            last_values_.clear();
            for (const kflow::Variable& v : program_->variables)
                last_values_.emplace_back(v.name, interpreter_->variable(v.name).value_or(0));
        }
    }
    interpreter_.reset();
    program_.reset();
}

HRESULT ComponentSession::start_program() {
    if (busy()) return kSessionBusy;
    if (!interpreter_) return kNoObject;
    Busy b(depth_);
    interpreter_->stop();
    any_run_ = true;
    const HRESULT hr = interpreter_->start();
    wake_at_ = now();
    return hr;
}

Pause ComponentSession::drive_program(std::uint64_t max_steps) {
    if (!interpreter_) return {Pause::Why::Halted};
    // Re-entered from inside a call: the program goes on once that call has returned.
    if (busy()) return {Pause::Why::Slice};
    if (interpreter_->state() != RunState::Running) return interpreter_->resume(0);
    const std::int64_t at = now();
    if (at < wake_at_) return {Pause::Why::Delay, static_cast<std::uint16_t>(wake_at_ - at)};
    Pause p;
    {
        Busy b(depth_);
        p = interpreter_->resume(max_steps);
    }
    if (p.why == Pause::Why::Delay) wake_at_ = now() + p.delay_ms;
    return p;
}

kflow::RunOutcome ComponentSession::run_program(const kflow::RunLimits& limits) {
    using End = kflow::RunOutcome::End;
    if (busy()) return {End::Failed, 0, "a call in progress holds the session"};
    if (!interpreter_) return {End::Failed, 0, "no program is loaded"};
    if (!panel_) return {End::Failed, 0, "the component offers no panel to keep time"};
    Busy b(depth_);
    interpreter_->stop();
    any_run_ = true;
    // A run is asked between its delays, of its whole limit; each delay goes in one piece.
    ProgressCheck check = std::move(progress_);
    progress_ = nullptr;
    std::int64_t waited = 0;
    SessionClock clock([&](std::uint16_t ms) {
        advance(ms);
        waited += ms;
        if (check && !check(waited, limits.clock_ms))
            interpreter_->request_stop("the program was interrupted at line " +
                                       std::to_string(interpreter_->place().line));
    });
    const kflow::RunOutcome outcome = kflow::run_to_end(*interpreter_, clock, limits);
    progress_ = std::move(check);
    return outcome;
}

void ComponentSession::stop_program(std::string why) {
    if (!interpreter_) return;
    Busy b(depth_);
    interpreter_->request_stop(std::move(why));
}

RunState ComponentSession::program_state() const {
    return interpreter_ ? interpreter_->state() : RunState::Ready;
}

int ComponentSession::program_line() const {
    if (!interpreter_ || interpreter_->state() == RunState::Ready) return 0;
    return interpreter_->place().line;
}

const std::string& ComponentSession::program_message() const {
    static const std::string none;
    return interpreter_ ? interpreter_->message() : none;
}

std::optional<std::int16_t> ComponentSession::variable(std::string_view name) const {
    if (interpreter_ && interpreter_->state() != RunState::Ready)
        return interpreter_->variable(name);
    for (const auto& [n, value] : last_values_)
        if (n == name) return value;
    return std::nullopt;
}

bool ComponentSession::has_run() const {
    return any_run_;
}

}  // namespace host
