#include "view_robot.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "panel_view.h"
#include "picture_cache.h"
#include "pixel_geometry.h"

namespace view_testing {

using kestrone::S_OK;
using kestrone::Variant;

QImage ViewRobot::render(int zoom, int ratio) {
    return panelqt::render_panel(panel(), zoom, ratio);
}

kestrone::ElementView ViewRobot::look(const std::string& element, std::int32_t index) {
    kestrone::ElementView view;
    EXPECT_EQ(panel().GetElementView(id(element, index), &view), S_OK);
    return view;
}

kestrone::ElementInfo ViewRobot::info(const std::string& element, std::int32_t index) {
    kestrone::ElementInfo info;
    EXPECT_EQ(panel().GetElement(id(element, index), &info), S_OK);
    return info;
}

QRect ViewRobot::box(const std::string& element, std::int32_t index) {
    return panelqt::pixel_rect(look(element, index).box);
}

void ViewRobot::macro(std::int32_t number, const std::vector<std::int16_t>& args) {
    if (!started_) {
        ASSERT_EQ(session.start_simulation(), S_OK);
        started_ = true;
    }
    StageRobot::macro(number, args);
}

void ViewRobot::advance(std::int64_t ms) {
    ASSERT_TRUE(kestrone::succeeded(session.bring_panel_to(session.now() + ms)));
}

void ViewRobot::click(const std::string& element) {
    ASSERT_EQ(session.click(id(element)), S_OK);
}

void ViewRobot::put(const std::string& element, std::int32_t index, const std::string& property,
                    const Variant& value) {
    ASSERT_EQ(session.put_element_property(element, index < 0 ? std::nullopt : std::optional(index),
                                           property, value),
              S_OK)
        << element << "(" << index << ")." << property;
}

QImage ViewRobot::picture(kestrone::PictureRole role) {
    std::int32_t width = 0, height = 0;
    std::vector<std::uint8_t> rgba;
    EXPECT_EQ(panel().GetPicture(static_cast<std::uint32_t>(role), &width, &height, &rgba), S_OK);
    return panelqt::image_from_rgba(width, height, rgba);
}

namespace {
int distance(std::uint32_t a, std::uint32_t b) {
    int d = 0;
    for (const int shift : {0, 8, 16})
        d +=
            std::abs(static_cast<int>((a >> shift) & 0xFF) - static_cast<int>((b >> shift) & 0xFF));
    return d;
}
}  // namespace

int count_ink(const QImage& image, const QRect& r, std::uint32_t ink, std::uint32_t paper) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x) {
            const std::uint32_t c = rgb_at(image, x, y);
            if (distance(c, ink) < distance(c, paper)) ++n;
        }
    return n;
}

int count_ink(const QImage& image, const QRect& r, kestrone::Rgba ink, kestrone::Rgba paper) {
    return count_ink(image, r, rgb(ink), rgb(paper));
}

int mismatches(const QImage& image, const QImage& picture, QPoint at, const QRect& cut,
               const QRegion& hidden) {
    int bad = 0, seen = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QPoint p = at + QPoint(x, y);
            const QRgb c = picture.pixel(x, y);
            if (qAlpha(c) != 255 || !cut.contains(p) || hidden.contains(p)) continue;
            ++seen;
            if ((c & 0xFFFFFFu) != rgb_at(image, p.x(), p.y())) ++bad;
        }
    return seen == 0 ? -1 : bad;
}

std::uint32_t rgb(kestrone::Rgba c) {
    return std::uint32_t(c.red) << 16 | std::uint32_t(c.green) << 8 | c.blue;
}

std::uint32_t rgb_at(const QImage& image, int x, int y) {
    return image.pixel(x, y) & 0xFFFFFFu;
}

int count_colour(const QImage& image, const QRect& r, std::uint32_t rgb) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            if (rgb_at(image, x, y) == rgb) ++n;
    return n;
}

}  // namespace view_testing
