// Plays a console script in the window in real time: each line is read as a command and run
// through the action runner against the window's stage, and `advance MS` waits while the clock
// brings the stage on by exactly MS milliseconds, the wheels turning meanwhile. While a box or a
// tone holds the thread the script waits too: a line never reaches a held panel.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "action_runner.h"
#include "real_time_clock.h"

namespace window {

class ScriptPlayer : public QObject {
    Q_OBJECT
  public:
    ScriptPlayer(ActionRunner& runner, RealTimeClock& clock, QObject* parent = nullptr);

    // Reads the script; false with `error` when the file cannot be read.
    bool load(const std::string& path, std::string* error);
    void set_lines(std::vector<std::string> lines, std::string name = "script");
    // Runs the lines up to the first `advance` now, the rest as the clock reaches them.
    void play();
    void stop();
    bool playing() const { return playing_; }
    // Lines answered with `fail` or `error`: "SCRIPT:LINE: TEXT: ANSWER" each.
    const std::vector<std::string>& failures() const { return failures_; }

  signals:
    // A line ran: the object may have been replaced or the panel changed.
    void line_played(const QString& line);
    void finished();

  private:
    void step();
    void finish();
    void run_line(std::size_t index);

    ActionRunner& runner_;
    RealTimeClock& clock_;
    std::string name_;
    std::vector<std::string> lines_;
    std::size_t next_ = 0;
    bool playing_ = false;
    bool stepping_ = false;
    std::vector<std::string> failures_;
};

}  // namespace window
