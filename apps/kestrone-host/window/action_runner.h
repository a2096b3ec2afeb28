// The user's actions in the window as commands: the stage is brought to now first, so that an
// action lands at its moment; the command runs against the stage; and what ran is recorded, so
// that the recording replays it. A face's action and a played script's line take this one way.
#pragma once

#include <concepts>
#include <functional>
#include <optional>

#include "action_recorder.h"
#include "command.h"
#include "real_time_clock.h"

namespace window {

class ActionRunner {
  public:
    // `after` is told once a command has run (the views follow).
    ActionRunner(commands::Context& context, RealTimeClock& clock, ActionRecorder& recorder,
                 std::function<void()> after);

    // Runs it; recorded unless the console could not have run it either (a `fail`).
    commands::Reply perform(const commands::Command& command);
    template <class Data>
    requires(!std::derived_from<Data, commands::Command>) commands::Reply perform(Data command) {
        return perform(commands::CommandOf<Data>(std::move(command)));
    }
    // The user's input to the panel: nothing while a box or a tone holds the thread (the panel
    // would take none; nullopt), so that a replay delivers nothing the window did not.
    std::optional<commands::Reply> input(const commands::Command& command);
    template <class Data>
    requires(!std::derived_from<Data, commands::Command>) std::optional<commands::Reply> input(
        Data command) {
        return input(commands::CommandOf<Data>(std::move(command)));
    }

    commands::Context& context() { return context_; }

  private:
    commands::Context& context_;
    RealTimeClock& clock_;
    ActionRecorder& recorder_;
    std::function<void()> after_;
};

}  // namespace window
