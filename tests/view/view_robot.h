// The real module on a stage, with the panel's Qt view rendering it offscreen: the tests drive the
// robot as console scripts would and read the pixels where the layout puts things.
#pragma once

#include <QColor>
#include <QImage>
#include <QRegion>
#include <cstdint>
#include <string>
#include <vector>

#include "kestrone/panel.h"
#include "support/stage_robot.h"

namespace view_testing {

class ViewRobot : public testing_support::StageRobot {
  public:
    kestrone::IKestronePanel& panel() { return *session.panel(); }
    QImage render(int zoom = 1, int ratio = 1);
    kestrone::ElementView look(const std::string& element, std::int32_t index = -1);
    kestrone::ElementInfo info(const std::string& element, std::int32_t index = -1);
    // The element's box in whole panel pixels.
    QRect box(const std::string& element, std::int32_t index = -1);

    // Macro `number` with these 16-bit arguments, the simulation started.
    void macro(std::int32_t number, const std::vector<std::int16_t>& args = {});
    void advance(std::int64_t ms);
    void click(const std::string& element);
    // A property written as a program would write it, its events raised.
    void put(const std::string& element, std::int32_t index, const std::string& property,
             const kestrone::Variant& value);
    // The picture of that role as the panel hands it out.
    QImage picture(kestrone::PictureRole role);

  private:
    bool started_ = false;
};

// A colour of the panel's, and one pixel's colour without alpha, as 0xRRGGBB.
std::uint32_t rgb(kestrone::Rgba c);
std::uint32_t rgb_at(const QImage& image, int x, int y);
// How many pixels of `r` have colour `rgb`.
int count_colour(const QImage& image, const QRect& r, std::uint32_t rgb);
// How many pixels of `r` are nearer to `ink` than to `paper`: text, smoothed at its edges.
int count_ink(const QImage& image, const QRect& r, std::uint32_t ink, std::uint32_t paper);
int count_ink(const QImage& image, const QRect& r, kestrone::Rgba ink, kestrone::Rgba paper);

// The opaque pixels of `picture`, its top left at `at`, that lie in `cut` and differ from the
// image there, those in `hidden` left out; -1 when none lies in `cut` out of `hidden`.
int mismatches(const QImage& image, const QImage& picture, QPoint at, const QRect& cut,
               const QRegion& hidden = {});

}  // namespace view_testing
