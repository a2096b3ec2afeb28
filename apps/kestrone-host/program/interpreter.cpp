#include "interpreter.h"

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
    pause_ = {Pause::Why::Slice, 0};
    in_step_ = true;
    try {
        for (std::uint64_t n = 0; n < max_steps && !stop_requested_; ++n)
            if (!step()) break;
    } catch (const Fault& f) {
        fail(f);
    }
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

bool Interpreter::step() {
    const Step& s = code_.steps[pc_];
    last_ = pc_++;
    ++steps_;
    switch (s.op) {
        case StepOp::Set: {
            const std::int16_t v = eval(s.expr);
            const bool is_byte = program_.variables[static_cast<std::size_t>(s.slot)].is_byte;
            values_[static_cast<std::size_t>(s.slot)] = is_byte ? pic::low_byte(v) : v;
            return true;
        }
        case StepOp::Call:
            eval(s.expr);
            return true;
        case StepOp::Delay:
            pause_ = {Pause::Why::Delay, pic::as_unsigned(eval(s.expr))};
            return false;
        case StepOp::JumpUnless:
            if (eval(s.expr) == 0) pc_ = static_cast<std::size_t>(s.target);
            return true;
        case StepOp::Jump:
            pc_ = static_cast<std::size_t>(s.target);
            return true;
        case StepOp::RepeatStart:
            counters_[static_cast<std::size_t>(s.slot)] = pic::as_unsigned(eval(s.expr));
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

std::int16_t Interpreter::eval(ExprId id) {
    const Expr& e = program_.expr(id);
    switch (e.kind) {
        case ExprKind::Literal:
            return e.value;
        case ExprKind::Variable:
            return values_[static_cast<std::size_t>(e.ref)];
        case ExprKind::Call:
            return call(e);
        case ExprKind::Unary: {
            const std::int16_t v = eval(e.lhs);
            if (e.op == Op::Negate) return pic::neg(v);
            if (e.op == Op::Not) return v == 0 ? 1 : 0;
            return static_cast<std::int16_t>(~v);
        }
        case ExprKind::Binary:
            return binary(e);
    }
    return 0;
}

std::int16_t Interpreter::binary(const Expr& e) {
    const std::int16_t a = eval(e.lhs);
    // The right side of && and || is not evaluated when the left decides: a macro there is
    // not called.
    if (e.op == Op::And) return a != 0 && eval(e.rhs) != 0 ? 1 : 0;
    if (e.op == Op::Or) return a != 0 || eval(e.rhs) != 0 ? 1 : 0;
    const std::int16_t b = eval(e.rhs);
    switch (e.op) {
        case Op::Multiply:
            return pic::mul(a, b);
        case Op::Divide:
        case Op::Remainder:
            if (b == 0)
                throw Fault{e.at, e.op == Op::Divide ? "division by 0"
                                                     : "remainder of a division by 0 ('%')"};
            return e.op == Op::Divide ? pic::div(a, b) : pic::rem(a, b);
        case Op::Add:
            return pic::add(a, b);
        case Op::Subtract:
            return pic::sub(a, b);
        case Op::ShiftLeft:
            return pic::shl(a, b);
        case Op::ShiftRight:
            return pic::shr(a, b);
        case Op::Less:
            return a < b;
        case Op::LessEqual:
            return a <= b;
        case Op::Greater:
            return a > b;
        case Op::GreaterEqual:
            return a >= b;
        case Op::Equal:
            return a == b;
        case Op::NotEqual:
            return a != b;
        case Op::BitAnd:
            return static_cast<std::int16_t>(a & b);
        case Op::BitXor:
            return static_cast<std::int16_t>(a ^ b);
        case Op::BitOr:
            return static_cast<std::int16_t>(a | b);
        default:
            return 0;
    }
}

std::int16_t Interpreter::call(const Expr& e) {
    MacroCall& c = calls_[static_cast<std::size_t>(e.ref)];
    // All arguments first: one of them may itself call this macro, which reuses its array.
    std::int16_t small[8];
    std::vector<std::int16_t> large;
    std::int16_t* values = small;
    if (e.args.size() > 8) {
        large.resize(e.args.size());
        values = large.data();
    }
    for (std::size_t k = 0; k < e.args.size(); ++k)
        values[k] = narrow_to(c.params[k], eval(e.args[k]));
    auto& items = c.args.as_array().items;
    for (std::size_t k = 0; k < e.args.size(); ++k)
        items[k] = Variant::integer(values[k]);
    std::int32_t result = 0, cycles = 0;
    Variant affected;
    const kestrone::HRESULT hr =
        component_.SimMacroCall(e.ref, c.args, &result, &affected, &cycles);
    // Pins that the macro changed are shown only when the host asks the panel to redraw.
    if (affected.is_array()) component_.Refresh();
    if (kestrone::failed(hr))
        throw Fault{e.at,
                    "the component failed to run '" + e.name + "' (" + status_words(hr) + ")"};
    return narrow_to(c.result, pic::wrap(result));
}

}  // namespace kflow
