// Every variable of the program with its value, as the program runs (at most at the display's
// rate) and where it stands; what changed at the last step of the debugger is highlighted.
#pragma once

#include <QTableWidget>
#include <QTimer>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "program_run.h"

namespace window {

using Values = std::vector<std::pair<std::string, std::int16_t>>;

// The names whose values differ between two looks (a name new to `now` counts as changed).
std::vector<bool> changed_between(const Values& before, const Values& now);

class VariablesView : public QTableWidget {
    Q_OBJECT
  public:
    // The longest the view lags behind the program, in milliseconds: a display's frame or two.
    static constexpr int kFrameMs = 33;

    explicit VariablesView(stage::ProgramRun& program, QWidget* parent = nullptr);

    // A run begins: its values now are what the first step is measured against.
    void restart();
    // The program may have moved on: shown within a frame; at once when it has just stopped.
    void follow();
    // The values shown and which are highlighted.
    Values shown() const { return shown_; }
    std::vector<bool> highlighted() const { return highlighted_; }

  private:
    void show_now();

    stage::ProgramRun& program_;
    QTimer frame_;
    Values shown_;
    std::vector<bool> highlighted_;
    // The values at the last stop and at the one before, and which stop that was.
    Values last_stop_, stop_before_;
    std::uint64_t stop_steps_ = ~std::uint64_t{0};
};

}  // namespace window
