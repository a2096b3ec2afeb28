// The platform as the window gives it to the component: a modal message box captioned with the
// project's name, and a tone on the sound card. Both hold the thread until they are done; the
// event loop runs on meanwhile (the clock keeps time, held), but no user input reaches the panel.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

#include "alsa_tone.h"
#include "kestrone/services.h"

namespace window {

class WindowServices : public kestrone::IHostServices {
  public:
    // `caption` gives the project's name at the moment a box is shown.
    explicit WindowServices(std::function<QString()> caption);
    virtual ~WindowServices() = default;

    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override;

    // True while a box is up or a tone sounds: the clock must not deliver ticks meanwhile.
    bool in_call() const { return depth_ > 0; }
    // The window over which boxes are shown.
    void set_parent(QWidget* parent) { parent_ = parent; }
    // Tests close the box themselves: called with it once it is up, instead of the user.
    void set_box_handler(std::function<void(QWidget* box)> handler) {
        box_handler_ = std::move(handler);
    }
    int messages_shown() const { return messages_; }
    int tones_played() const { return tones_; }

  private:
    std::function<QString()> caption_;
    QWidget* parent_ = nullptr;
    std::function<void(QWidget*)> box_handler_;
    AlsaTone tone_;
    int depth_ = 0;
    int messages_ = 0;
    int tones_ = 0;
};

// The text of a message as a box shows it: CR, LF and CR LF each break a line.
QString message_lines(const std::string& text);

}  // namespace window
