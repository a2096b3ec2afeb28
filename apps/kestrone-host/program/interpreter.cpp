#include "interpreter.h"

#include <algorithm>

#include "pic_int.h"

namespace kflow {

using kestrone::Variant;

Interpreter::Interpreter(const Program& program, kestrone::IKestroneComponentV5& component)
    : program_(program), component_(component), code_(lay_out(program)) {
    calls_.resize(program.macros.macros().size());
    for (std::int32_t id : program.used_macros) {
        const MacroInfo& m = program.macros.at(id);
        MacroCall& c = calls_[static_cast<std::size_t>(id)];
        c.result = ctype_of(m.returns);
        std::vector<Variant> items;
        for (const MacroParam& p : m.params) {
            c.params.push_back(ctype_of(p.type));
            items.push_back(Variant::integer(0));
        }
        c.args = Variant::array(kestrone::VarType::Variant, 0, std::move(items));
    }
    stack_.resize(static_cast<std::size_t>(std::max(1, code_.exprs.depth)));
    lines_ = kflow::statement_lines(code_);
}

kestrone::HRESULT Interpreter::start() {
    values_.assign(program_.variables.size(), 0);
    counters_.assign(static_cast<std::size_t>(code_.counters), 0);
    pc_ = last_ = 0;
    steps_ = 0;
    stop_requested_ = false;
    message_.clear();
    const kestrone::HRESULT hr = component_.StartSimulation();
    if (kestrone::failed(hr)) {
        state_ = RunState::Failed;
        message_ = program_.file + ": the component could not start a simulation (" +
                   status_words(hr) + ")";
        return hr;
    }
    state_ = RunState::Running;
    return hr;
}

Pause Interpreter::resume(std::uint64_t max_steps) {
    if (state_ == RunState::Finished) return {Pause::Why::Finished};
    if (state_ == RunState::Failed) return {Pause::Why::Failed};
    if (state_ != RunState::Running) return {Pause::Why::Halted};
    // Asked from inside one of its own steps: the program goes on once that step has returned.
    if (in_step_) return {Pause::Why::Slice};
    pause_ = {Pause::Why::Slice, 0};
    in_step_ = true;
    // Counted once for the slice: a step that ends it, or fails, counts as run.
    std::uint64_t n = 0;
    try {
        while (n < max_steps && !stop_requested_) {
            ++n;
            if (!step()) break;
        }
    } catch (const Fault& f) {
        fail(f);
    }
    steps_ += n;
    in_step_ = false;
    if (stop_requested_) {
        stop_requested_ = false;
        stop(std::move(stop_why_));
    }
    return pause_;
}

void Interpreter::stop(std::string why) {
    if (state_ != RunState::Running) return;
    message_ = std::move(why);
    finish(RunState::Halted, Pause::Why::Halted);
}

void Interpreter::request_stop(std::string why) {
    if (!in_step_) return stop(std::move(why));
    if (state_ != RunState::Running) return;
    stop_requested_ = true;
    stop_why_ = std::move(why);
}

Place Interpreter::place() const {
    return code_.steps[last_].at;
}

int Interpreter::next_line() const {
    if (state_ != RunState::Running) return 0;
    // In a delay the program stands in its statement; else before the next step's.
    const Step& s = pause_.why == Pause::Why::Delay ? code_.steps[last_] : code_.steps[pc_];
    return s.op == StepOp::End ? 0 : s.at.line;
}

Pause Interpreter::resume_debug(std::uint64_t max_steps,
                                const std::function<bool(int line)>& stop_at, bool leave_first) {
    if (state_ != RunState::Running || in_step_) return resume(0);
    Pause p{Pause::Why::Slice, 0};
    bool first = leave_first;
    for (std::uint64_t n = 0; n < max_steps;) {
        const Step& s = code_.steps[pc_];
        if (!first && s.starts && stop_at(s.at.line)) return pause_ = {Pause::Why::Break, 0};
        first = false;
        if (s.op == StepOp::Mark) {  // its line passed, one statement at a time
            last_ = pc_;
            pc_ = static_cast<std::size_t>(s.next);
            continue;
        }
        p = resume(1);
        ++n;
        if (p.why != Pause::Why::Slice) return p;
    }
    return p;
}

bool Interpreter::in_loop() const {
    for (std::size_t j = last_; j < code_.steps.size(); ++j) {
        const int back = code_.steps[j].next;
        if (back >= 0 && static_cast<std::size_t>(back) <= last_) return true;
    }
    return false;
}

std::optional<std::int16_t> Interpreter::variable(std::string_view name) const {
    const int slot = program_.slot_of(name);
    if (slot < 0 || static_cast<std::size_t>(slot) >= values_.size()) return std::nullopt;
    return values_[static_cast<std::size_t>(slot)];
}

void Interpreter::finish(RunState state, Pause::Why why) {
    state_ = state;
    pause_ = {why, 0};
    component_.StopSimulation();
}

void Interpreter::fail(const Fault& f) {
    message_ = format_diagnostic(program_.file, {f.at, f.text});
    finish(RunState::Failed, Pause::Why::Failed);
}

inline bool Interpreter::step() {
again:
    const Step& s = code_.steps[pc_];
    last_ = pc_;
    pc_ = static_cast<std::size_t>(s.next);
    switch (s.op) {
        case StepOp::Mark:
            goto again;  // no work, and no step of the count
        case StepOp::Set:
            values_[static_cast<std::size_t>(s.slot)] = narrow_to(s.stored, eval(s.code));
            return true;
        case StepOp::SetCall: {
            if (s.code >= 0) run(s.code);  // the arguments
            const std::int16_t v = call(s.macro, stack_.data(), s.call);
            values_[static_cast<std::size_t>(s.slot)] = narrow_to(s.stored, v);
            return true;
        }
        case StepOp::Call:
            if (s.code >= 0) run(s.code);
            call(s.macro, stack_.data(), s.call);
            return true;
        case StepOp::Delay:
            pause_ = {Pause::Why::Delay, pic::as_unsigned(eval(s.code))};
            return false;
        case StepOp::JumpUnless:
            if (eval(s.code) == 0) pc_ = static_cast<std::size_t>(s.target);
            return true;
        case StepOp::Jump:
            return true;
        case StepOp::RepeatStart:
            counters_[static_cast<std::size_t>(s.slot)] = pic::as_unsigned(eval(s.code));
            return true;
        case StepOp::RepeatNext: {
            std::uint16_t& left = counters_[static_cast<std::size_t>(s.slot)];
            if (left == 0)
                pc_ = static_cast<std::size_t>(s.target);
            else
                --left;
            return true;
        }
        case StepOp::Stop:
        case StepOp::End:
            finish(RunState::Finished, Pause::Why::Finished);
            return false;
    }
    return false;
}

std::int16_t* Interpreter::run(int at) {
    std::int16_t* top = stack_.data();
    for (const Instr* i = &code_.exprs.code[static_cast<std::size_t>(at)];; ++i) {
        switch (i->code) {
            case CodeOp::Literal:
                *top++ = i->value;
                break;
            case CodeOp::Variable:
                *top++ = values_[static_cast<std::size_t>(i->ref)];
                break;
            case CodeOp::Call: {
                top -= calls_[static_cast<std::size_t>(i->ref)].params.size();
                *top = narrow_to(calls_[static_cast<std::size_t>(i->ref)].result,
                                 call(i->ref, top, i->source));
                ++top;
                break;
            }
            case CodeOp::Unary:
                top[-1] = pic::unary(i->op, top[-1]);
                break;
            case CodeOp::Binary:
                --top;
                top[-1] = binary(*i, top[-1], top[0]);
                break;
            case CodeOp::AndThen:
            case CodeOp::OrElse:
                // The left side decides: 0 for &&, anything else for ||.
                if ((top[-1] != 0) == (i->code == CodeOp::OrElse)) {
                    top[-1] = i->code == CodeOp::OrElse;
                    i = &code_.exprs.code[static_cast<std::size_t>(i->ref)] - 1;
                } else {
                    --top;
                }
                break;
            case CodeOp::Truth:
                top[-1] = top[-1] != 0;
                break;
            case CodeOp::End:
                return top;
        }
    }
}

std::int16_t Interpreter::binary(const Instr& i, std::int16_t a, std::int16_t b) const {
    if (b == 0 && (i.op == Op::Divide || i.op == Op::Remainder))
        throw Fault{program_.expr(i.source).at,
                    i.op == Op::Divide ? "division by 0" : "remainder of a division by 0 ('%')"};
    return pic::apply(i.op, a, b);
}

inline std::int16_t Interpreter::call(std::int32_t macro, const std::int16_t* args, ExprId source) {
    MacroCall& c = calls_[static_cast<std::size_t>(macro)];
    auto& items = c.args.as_array().items;
    for (std::size_t k = 0; k < c.params.size(); ++k)
        items[k] = Variant::integer(narrow_to(c.params[k], args[k]));
    std::int32_t result = 0, cycles = 0;
    const kestrone::HRESULT hr =
        component_.SimMacroCall(macro, c.args, &result, &affected_, &cycles);
    // Pins that the macro changed are shown only when the host asks the panel to redraw. The
    // value is emptied again for the next call, which may leave it as it is.
    if (affected_.is_array()) {
        affected_ = Variant();
        component_.Refresh();
    }
    if (kestrone::failed(hr)) call_failed(source, hr);
    return pic::wrap(result);
}

void Interpreter::call_failed(ExprId source, kestrone::HRESULT hr) const {
    const Expr& e = program_.expr(source);
    throw Fault{e.at, "the component failed to run '" + e.name + "' (" + status_words(hr) + ")"};
}

}  // namespace kflow
