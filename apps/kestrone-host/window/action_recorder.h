// What the user does in the window, kept as a console script: each action as the console line it
// amounts to, with `advance MS` for the time on the session's clock between two actions, so that
// `kestrone-host console < FILE` brings a fresh object to the same state.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace window {

class ActionRecorder {
  public:
    // `now` is the session's clock, read when an action is noted.
    explicit ActionRecorder(std::function<std::int64_t()> now);

    // Notes one line, after an `advance` for the time since the last one.
    void note(const std::string& line);
    // Forgets everything; time counts from `origin` on.
    void restart(std::int64_t origin);
    const std::vector<std::string>& lines() const { return lines_; }
    // The whole script, a comment line first.
    std::string script() const;
    // Writes the script; false with `error` when the file cannot be written.
    bool save(const std::string& path, std::string* error) const;

  private:
    std::function<std::int64_t()> now_;
    std::int64_t last_ = 0;
    std::vector<std::string> lines_;
};

// A pointer coordinate as the console reads it back to the same float.
std::string coordinate_text(float value);

}  // namespace window
