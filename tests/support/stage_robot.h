// The real module on a stage of its own, its object made and made ready as the host makes it. Its
// services keep every message and tone, and run what a test gives them while a box is up or a tone
// sounds, as a window's event loop runs on meanwhile.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "stage.h"
#include "support/session_reads.h"

namespace testing_support {

class KeepingServices : public kestrone::IHostServices {
  public:
    virtual ~KeepingServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t ms) noexcept override;

    std::function<void()> while_box_open;
    std::function<void(std::int32_t ms)> while_tone;
    std::vector<std::string> messages;
    std::vector<std::pair<std::int32_t, std::int32_t>> tones;
};

class StageRobot {
  public:
    StageRobot();

    // A call by name, as a script or a window's menu makes it; its status.
    kestrone::HRESULT call(const std::string& name, std::vector<kestrone::Variant> args = {},
                           bool write = false);
    // Macro `number` through SimMacroCall with these 16-bit arguments.
    void macro(std::int32_t number, const std::vector<std::int16_t>& args);
    // A field or an element's property as a number (Boolean True is -1); an element's id.
    int field(const std::string& name, std::int32_t index = -1) {
        return session_field(session, name, index);
    }
    int property(const std::string& element, std::int32_t index, const std::string& property) {
        return session_property(session, element, index, property);
    }
    std::int32_t id(const std::string& element, std::int32_t index = -1) {
        return session_element(session, element, index);
    }

    KeepingServices services;
    stage::Stage stage{services};
    host::ComponentSession& session = stage.session();
};

}  // namespace testing_support
