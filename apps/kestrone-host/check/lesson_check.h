// One program checked against a lesson: a fresh robot, the lesson's settings and arena, the
// simulation started, then the lesson's checks in order until one of them does not answer `ok`.
#pragma once

#include <string>

#include "kestrone/services.h"
#include "lesson.h"

namespace lesson {

// A class is checked without a face: messages and tones go nowhere, and a message is answered
// as a user's OK would.
class QuietServices : public kestrone::IHostServices {
  public:
    virtual ~QuietServices() = default;
    void ShowMessage(const std::string&) noexcept override {}
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}
};

// What every program of a class is checked with.
struct CheckSetup {
    const Lesson* lesson = nullptr;
    std::string lesson_name;  // the lesson's file, for the messages about its settings and arena
    std::string folder;       // where the checks find the files they name
    std::string module;       // the component module
};

// A program under check: the name it goes by in the results and its messages, and its text.
struct ProgramSource {
    std::string name;
    std::string text;
};

struct CheckResult {
    bool passed = false;
    std::int64_t simulated_ms = 0;  // the robot's clock when the checks ended
    std::string message;            // why it failed: the line that failed and its answer
};

CheckResult check_program(const CheckSetup& setup, const ProgramSource& program);

// The message of a failed check line: its answer after the line, unless the answer is the
// program's own fault, which already says where it is.
std::string failure_message(const std::string& line, const std::string& answer,
                            const std::string& program_name);

}  // namespace lesson
