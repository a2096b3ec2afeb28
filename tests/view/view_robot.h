// The real module behind a host session, with the panel's Qt view rendering it offscreen: the
// tests drive the robot as console scripts would and read the pixels where the layout puts things.
#pragma once

#include <QColor>
#include <QImage>
#include <cstdint>
#include <string>
#include <vector>

#include "component_session.h"
#include "kestrone/panel.h"

namespace view_testing {

class QuietServices : public kestrone::IHostServices {
  public:
    virtual ~QuietServices() = default;
    void ShowMessage(const std::string&) noexcept override {}
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}
};

class ViewRobot {
  public:
    ViewRobot();

    kestrone::IKestronePanel& panel() { return *session.panel(); }
    QImage render(int zoom = 1, int ratio = 1);
    std::int32_t id(const std::string& element, std::int32_t index = -1);
    kestrone::ElementView look(const std::string& element, std::int32_t index = -1);
    kestrone::ElementInfo info(const std::string& element, std::int32_t index = -1);
    // The element's box in whole panel pixels.
    QRect box(const std::string& element, std::int32_t index = -1);

    // Macro `number` through SimMacroCall with these 16-bit arguments, the simulation started.
    void macro(std::int32_t number, const std::vector<std::int16_t>& args = {});
    void advance(std::int64_t ms);
    void click(const std::string& element);
    void arrow(const std::string& element, std::int32_t index, bool up, int times = 1);

    QuietServices services;
    host::ComponentSession session{services};

  private:
    bool started_ = false;
};

// The colour of one pixel, without alpha, as 0xRRGGBB.
std::uint32_t rgb_at(const QImage& image, int x, int y);
// How many pixels of `r` have colour `rgb`.
int count_colour(const QImage& image, const QRect& r, std::uint32_t rgb);

}  // namespace view_testing
