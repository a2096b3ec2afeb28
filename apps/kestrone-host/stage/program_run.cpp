#include "program_run.h"

#include <algorithm>

#include "run_driver.h"
#include "session_busy.h"
#include "user_file.h"

namespace stage {

using kestrone::HRESULT;
using kflow::Pause;
using kflow::RunState;

namespace {
bool fail_with(std::string* error, std::string why) {
    if (error) *error = std::move(why);
    return false;
}

// The macro table exists once the component knows the host's version.
bool component_ready(host::ComponentSession& session) {
    kestrone::Variant ready;
    return session.field("bInitialised", std::nullopt, "", &ready) == kestrone::S_OK &&
           !ready.is_array() && ready.type() == kestrone::VarType::Boolean && ready.as_boolean();
}
}  // namespace

bool ProgramRun::load(host::ComponentSession& session, const std::string& path,
                      std::string* error) {
    std::string source, unread;
    if (!host::read_user_file(path, host::kLargestTextFile, "a robot program", &source, &unread))
        return fail_with(error, "cannot read the program " + path + ": " + unread);
    return load_text(session, source, path, error);
}

bool ProgramRun::load_text(host::ComponentSession& session, std::string_view source,
                           const std::string& path, std::string* error) {
    if (session.in_call()) return fail_with(error, "a call in progress holds the session");
    kestrone::IKestroneComponentV5* component = session.component();
    if (!component) return fail_with(error, "the component offers no host interface");
    if (!component_ready(session)) {
        const HRESULT hr = session.make_ready();
        if (kestrone::failed(hr))
            return fail_with(error, "the component could not take the host's version (" +
                                        kflow::status_words(hr) + ")");
    }
    std::string why;
    auto macros = kflow::MacroTable::read(*component, &why);
    if (!macros) return fail_with(error, why);
    kflow::CheckedProgram checked = kflow::check_program(source, path, *macros);
    if (!checked.program)
        return fail_with(error, checked.faults.empty()
                                    ? path + ": the program does not pass its checks"
                                    : kflow::format_diagnostic(path, checked.faults.front()));
    retire();
    // Breakpoints belong to the lines of the program they were set in.
    breakpoints_.clear();
    session_ = &session;
    path_ = path;
    program_ = std::make_unique<kflow::Program>(std::move(*checked.program));
    interpreter_ = std::make_unique<kflow::Interpreter>(*program_, *component);
    return true;
}

void ProgramRun::retire() {
    if (interpreter_) {
        {
            host::ComponentSession::Busy b(*session_);
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

HRESULT ProgramRun::start(std::int64_t now) {
    if (!interpreter_) return host::kNoObject;
    if (session_->in_call()) return host::kSessionBusy;
    host::ComponentSession::Busy b(*session_);
    interpreter_->stop();
    any_run_ = true;
    wake_at_ = now;
    debugging_ = paused_ = false;
    return interpreter_->start();
}

std::optional<std::int64_t> ProgramRun::wakes_at() const {
    if (!running() || paused_) return std::nullopt;
    return wake_at_;
}

Pause ProgramRun::run_slice(std::int64_t now, std::uint64_t max_steps) {
    if (!interpreter_) return {Pause::Why::Halted};
    // Re-entered from inside a call: the program goes on once that call has returned.
    if (session_->in_call()) return {Pause::Why::Slice};
    if (now < wake_at_ && running())
        return {Pause::Why::Delay, static_cast<std::uint16_t>(wake_at_ - now)};
    if (paused_) return {Pause::Why::Break};
    Pause p;
    {
        host::ComponentSession::Busy b(*session_);
        if (!debugging_) {
            p = interpreter_->resume(max_steps);
        } else {
            const auto stop_at = [this](int line) {
                return goal_ == Goal::Step || breakpoints_.count(line) > 0 ||
                       (goal_ == Goal::RunTo && line == goal_line_);
            };
            p = interpreter_->resume_debug(max_steps, stop_at, at_stop_);
            at_stop_ = false;
        }
    }
    if (p.why == Pause::Why::Delay) wake_at_ = now + p.delay_ms;
    if (p.why == Pause::Why::Break) paused_ = at_stop_ = true;
    return p;
}

HRESULT ProgramRun::debug(std::int64_t now) {
    const HRESULT hr = start(now);
    if (kestrone::failed(hr)) return hr;
    debugging_ = true;
    goal_ = Goal::Step;
    // Nothing has run yet: the first statement is where it stops.
    at_stop_ = false;
    run_slice(now, 1);
    return hr;
}

void ProgramRun::resume_towards(Goal goal, std::int64_t now) {
    if (!debugging()) return;
    goal_ = goal;
    if (!paused_) return;
    paused_ = false;
    // A delay it was stopped in goes on for what was left of it.
    wake_at_ = now + left_of_delay_;
    left_of_delay_ = 0;
}

void ProgramRun::step(std::int64_t now) {
    resume_towards(Goal::Step, now);
}

void ProgramRun::go_on(std::int64_t now) {
    resume_towards(Goal::GoOn, now);
}

void ProgramRun::run_to(int line, std::int64_t now) {
    goal_line_ = line;
    resume_towards(Goal::RunTo, now);
}

void ProgramRun::pause(std::int64_t now) {
    if (!running() || paused_) return;
    debugging_ = true;
    if (wake_at_ > now) {
        paused_ = true;
        at_stop_ = false;
        left_of_delay_ = wake_at_ - now;
    } else {
        goal_ = Goal::Step;
    }
}

int ProgramRun::where() const {
    return interpreter_ && running() ? interpreter_->next_line() : 0;
}

std::optional<int> ProgramRun::set_breakpoint(int line) {
    if (!interpreter_) return std::nullopt;
    const std::vector<int>& lines = interpreter_->statement_lines();
    const auto it = std::lower_bound(lines.begin(), lines.end(), line);
    if (it == lines.end()) return std::nullopt;
    breakpoints_.insert(*it);
    return *it;
}

std::vector<std::pair<std::string, std::int16_t>> ProgramRun::variables() const {
    std::vector<std::pair<std::string, std::int16_t>> out;
    if (interpreter_ && interpreter_->state() != RunState::Ready) {
        for (const kflow::Variable& v : program_->variables)
            out.emplace_back(v.name, interpreter_->variable(v.name).value_or(0));
        return out;
    }
    return last_values_;
}

void ProgramRun::stop(std::string why) {
    if (!interpreter_) return;
    host::ComponentSession::Busy b(*session_);
    interpreter_->request_stop(std::move(why));
}

void ProgramRun::stop_out_of_time(std::int64_t clock_ms) {
    if (running()) stop(kflow::out_of_time_text(*interpreter_, clock_ms));
}

void ProgramRun::stop_out_of_steps(std::uint64_t budget) {
    if (running()) stop(kflow::out_of_steps_text(*interpreter_, budget));
}

RunState ProgramRun::state() const {
    return interpreter_ ? interpreter_->state() : RunState::Ready;
}

int ProgramRun::line() const {
    if (!interpreter_ || interpreter_->state() == RunState::Ready) return 0;
    return interpreter_->place().line;
}

const std::string& ProgramRun::message() const {
    static const std::string none;
    return interpreter_ ? interpreter_->message() : none;
}

std::optional<std::int16_t> ProgramRun::variable(std::string_view name) const {
    if (interpreter_ && interpreter_->state() != RunState::Ready)
        return interpreter_->variable(name);
    for (const auto& [n, value] : last_values_)
        if (n == name) return value;
    return std::nullopt;
}

}  // namespace stage
