// The real component module, loaded and made ready as a host does, with the panel's clock moved
// by the test: the demonstrations run against it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/panel.h"
#include "kestrone/services.h"
#include "macro_table.h"
#include "run_driver.h"

namespace program_testing {

struct Tone {
    std::int32_t hertz, ms;
    bool operator==(const Tone&) const = default;
};

class RecordingServices : public kestrone::IHostServices {
  public:
    virtual ~RecordingServices() = default;
    void ShowMessage(const std::string& text) noexcept override { messages.push_back(text); }
    void PlayTone(std::int32_t hertz, std::int32_t ms) noexcept override {
        tones.push_back({hertz, ms});
    }
    std::vector<std::string> messages;
    std::vector<Tone> tones;
};

class RobotSession {
  public:
    RobotSession();
    kestrone::IKestroneComponentV5& component() { return *component_.get(); }
    kestrone::IKestronePanel& panel() { return *panel_.get(); }
    const kflow::MacroTable& macros() const { return macros_; }

    // A field of the component as a number: iMotorSpeed(0), lADCVal(3); an index of -1 for a
    // field that is no array.
    int field(const std::string& name, std::int32_t index);
    bool visible(const std::string& element, std::int32_t index);
    bool led_lit(int led) { return visible("imageLedOn", led) && !visible("imageLedOff", led); }
    // What a user does on the panel: a sensor's arrows set to a value, a check box clicked.
    void set_sensor(std::int32_t sensor, std::int32_t value);
    void click(const std::string& element);

    RecordingServices services;

  private:
    kestrone::ComPtr<kestrone::IUnknown> object_;
    kestrone::ComPtr<kestrone::IKestroneComponentV5> component_;
    kestrone::ComPtr<kestrone::IKestronePanel> panel_;
    kestrone::ComPtr<kestrone::IKestroneInspection> fields_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> elements_;
    kflow::MacroTable macros_;
};

// The panel's clock, with the user's actions at given moments: each runs when the clock reaches
// it, before the program's next step.
class ScriptedClock : public kflow::Clock {
  public:
    explicit ScriptedClock(kestrone::IKestronePanel& panel) : panel_(panel) {}
    void at(std::int64_t ms, std::function<void()> action) {
        script_.emplace(ms, std::move(action));
    }
    void wait(std::uint16_t ms) override;
    std::int64_t now() const { return now_; }
    std::int64_t ticks() const { return ticks_; }

  private:
    void advance_to(std::int64_t t);
    kestrone::IKestronePanel& panel_;
    std::multimap<std::int64_t, std::function<void()>> script_;
    std::int64_t now_ = 0, ticks_ = 0;
};

// The text of a file of examples/.
std::string example(const std::string& name);

}  // namespace program_testing
