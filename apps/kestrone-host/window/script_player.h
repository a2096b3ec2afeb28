// Plays a console script in the window in real time: each line runs through the console's own
// line protocol against the window's session, and `advance MS` waits while the clock brings the
// session on by exactly MS milliseconds, the wheels turning meanwhile.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "action_recorder.h"
#include "clock_driver.h"
#include "console_session.h"

namespace window {

class ScriptPlayer : public QObject {
    Q_OBJECT
  public:
    // `answers` is the stream the console writes to; each line played is noted in `recorder`.
    ScriptPlayer(console::ConsoleSession& console, std::ostringstream& answers, ClockDriver& clock,
                 ActionRecorder& recorder, QObject* parent = nullptr);

    // Reads the script; false with `error` when the file cannot be read.
    bool load(const std::string& path, std::string* error);
    void set_lines(std::vector<std::string> lines);
    // Runs the lines up to the first `advance` now, the rest as the clock reaches them.
    void play();
    void stop();
    bool playing() const { return playing_; }
    // Lines answered with `fail` or `error`, each with its answer.
    const std::vector<std::string>& failures() const { return failures_; }

  signals:
    // A line ran: the object may have been replaced or the panel changed.
    void line_played(const QString& line);
    void finished();

  private:
    void step();
    void finish();
    // The number of milliseconds of an `advance` line, or nullopt for any other line.
    static std::optional<std::int64_t> advance_of(const std::string& line);
    void run_line(const std::string& line);

    console::ConsoleSession& console_;
    std::ostringstream& answers_;
    ClockDriver& clock_;
    ActionRecorder& recorder_;
    std::vector<std::string> lines_;
    std::size_t next_ = 0;
    bool playing_ = false;
    std::vector<std::string> failures_;
};

}  // namespace window
