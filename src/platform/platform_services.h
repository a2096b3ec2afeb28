// The platform services the component calls on: the message box and the tone. The host lends
// its own; without one, messages are answered at once and tones are silent.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kestrone/services.h"

namespace platform {

class Services {
  public:
    explicit Services(kestrone::IHostServices* host = nullptr) : host_(host) {}
    void set_host(kestrone::IHostServices* host) { host_ = host; }

    // Modal: returns when the user has closed it.
    void message_box(const std::string& text) const {
        Hold hold(*this);
        if (host_) host_->ShowMessage(text);
    }
    // Beep: returns when the tone has ended; its result is ignored.
    void beep(std::int32_t hertz, std::int32_t milliseconds) const {
        Hold hold(*this);
        if (host_) host_->PlayTone(hertz, milliseconds);
    }
    // True while a message box or a tone holds the thread: a timer tick that a host's event
    // loop delivers meanwhile has to wait.
    bool holding() const { return holds_ > 0; }

  private:
    struct Hold {
        explicit Hold(const Services& s) : s_(s) { ++s_.holds_; }
        ~Hold() { --s_.holds_; }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        const Services& s_;
    };
    kestrone::IHostServices* host_;
    mutable int holds_ = 0;
};

// Records every message and tone, for the tests.
class RecordingServices : public kestrone::IHostServices {
  public:
    virtual ~RecordingServices() = default;
    struct Tone {
        std::int32_t hertz, milliseconds;
        bool operator==(const Tone&) const = default;
    };
    void ShowMessage(const std::string& text) noexcept override { messages.push_back(text); }
    void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override {
        tones.push_back({hertz, milliseconds});
    }
    std::vector<std::string> messages;
    std::vector<Tone> tones;
};

}  // namespace platform
