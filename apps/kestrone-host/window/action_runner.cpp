#include "action_runner.h"

namespace window {

ActionRunner::ActionRunner(commands::Context& context, RealTimeClock& clock,
                           ActionRecorder& recorder, std::function<void()> after)
    : context_(context), clock_(clock), recorder_(recorder), after_(std::move(after)) {}

commands::Reply ActionRunner::perform(const commands::Command& command) {
    clock_.pulse();
    const commands::Reply reply = command.execute(context_);
    if (reply.kind != commands::Reply::Kind::Fail) recorder_.note(command);
    if (after_) after_();
    return reply;
}

std::optional<commands::Reply> ActionRunner::input(const commands::Command& command) {
    if (context_.stage.session().in_call()) return std::nullopt;
    return perform(command);
}

}  // namespace window
