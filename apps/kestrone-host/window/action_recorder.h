// What the user does in the window, kept as a console script: each action as the command it
// amounts to, with `advance MS` for the time on the stage's clock between two actions, so that
// `kestrone-host console < FILE` brings a fresh object to the same state.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "command.h"

namespace window {

class ActionRecorder {
  public:
    // `now` is the stage's clock, read when an action is noted.
    explicit ActionRecorder(std::function<std::int64_t()> now);

    // Notes one command, after an `advance` for the time since the last one.
    void note(const commands::Command& command);
    template <class Data>
    requires(!std::derived_from<Data, commands::Command>) void note(const Data& command) {
        note(commands::CommandOf<Data>(command));
    }
    // A comment for the reader of the script: what the console has no command for.
    void note_comment(const std::string& text);
    // Forgets everything; time counts from `origin` on.
    void restart(std::int64_t origin);
    const std::vector<std::string>& lines() const { return lines_; }
    // The whole script, a comment line first.
    std::string script() const;
    // Writes the script; false with `error` when the file cannot be written.
    bool save(const std::string& path, std::string* error) const;

  private:
    void add(const std::string& line);
    std::function<std::int64_t()> now_;
    std::int64_t last_ = 0;
    std::vector<std::string> lines_;
};

}  // namespace window
