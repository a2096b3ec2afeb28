#include "program_run.h"

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
    if (session.in_call()) return fail_with(error, "a call in progress holds the session");
    kestrone::IKestroneComponentV5* component = session.component();
    if (!component) return fail_with(error, "the component offers no host interface");
    std::string source, unread;
    if (!host::read_user_file(path, host::kLargestTextFile, "a robot program", &source, &unread))
        return fail_with(error, "cannot read the program " + path + ": " + unread);
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
    return interpreter_->start();
}

std::optional<std::int64_t> ProgramRun::wakes_at() const {
    if (!running()) return std::nullopt;
    return wake_at_;
}

Pause ProgramRun::run_slice(std::int64_t now, std::uint64_t max_steps) {
    if (!interpreter_) return {Pause::Why::Halted};
    // Re-entered from inside a call: the program goes on once that call has returned.
    if (session_->in_call()) return {Pause::Why::Slice};
    if (now < wake_at_ && running())
        return {Pause::Why::Delay, static_cast<std::uint16_t>(wake_at_ - now)};
    Pause p;
    {
        host::ComponentSession::Busy b(*session_);
        p = interpreter_->resume(max_steps);
    }
    if (p.why == Pause::Why::Delay) wake_at_ = now + p.delay_ms;
    return p;
}

void ProgramRun::stop(std::string why) {
    if (!interpreter_) return;
    host::ComponentSession::Busy b(*session_);
    interpreter_->request_stop(std::move(why));
}

void ProgramRun::stop_out_of_time(std::int64_t clock_ms) {
    if (running()) stop(kflow::out_of_time_text(*interpreter_, clock_ms));
}

void ProgramRun::stop_out_of_steps() {
    if (running()) stop(kflow::out_of_steps_text(*interpreter_));
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
