// A stand-in for the window, driving the stage as a window does: its timer brings the clock to
// real time in uneven steps, its message box stays open while its event loop runs on
// (time passes, the user clicks at the panel behind it), its tone lasts as long as it sounds, and
// its project files are kept in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "stage.h"
#include "support/session_reads.h"

namespace stage_testing {

class WindowServices : public kestrone::IHostServices {
  public:
    virtual ~WindowServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t ms) noexcept override;

    // What the window's event loop does while a box is up or a tone sounds.
    std::function<void()> while_box_open;
    std::function<void(std::int32_t ms)> while_tone;
    std::vector<std::string> messages;
    std::vector<std::pair<std::int32_t, std::int32_t>> tones;
};

// Project files by name.
class MemoryFiles {
  public:
    host::ProjectCodec codec();
    std::map<std::string, host::ProjectContents> files;
};

class WindowDouble {
  public:
    WindowDouble();

    // The window's timer fires `gap` milliseconds of real time after the last: the stage's
    // clock is brought there. The ticks raised.
    std::int64_t elapse(std::int64_t gap);
    std::int64_t real_now() const { return real_now_; }

    // Calls by name, as a window's menu or a test would.
    kestrone::HRESULT call(const std::string& name, std::vector<kestrone::Variant> args,
                           bool write = false);
    // The robot's motors through macro 9, SetMotors: forward at these speeds, 0 to 255.
    void set_motors(std::int32_t left, std::int32_t right);
    // A field or an element's property as a number (Boolean True is -1).
    int field(const std::string& name, std::int32_t index = -1) {
        return testing_support::session_field(session, name, index);
    }
    int property(const std::string& element, std::int32_t index, const std::string& property) {
        return testing_support::session_property(session, element, index, property);
    }
    std::int32_t element_id(const std::string& element) {
        return testing_support::session_element(session, element);
    }

    WindowServices services;
    MemoryFiles files;
    stage::Stage stage{services, files.codec()};
    host::ComponentSession& session = stage.session();

  private:
    std::int64_t real_now_ = 0;
};

// The path of a file of examples/.
std::string example_path(const std::string& name);

}  // namespace stage_testing
