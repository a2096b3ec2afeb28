#include "view_robot.h"

#include <gtest/gtest.h>

#include "panel_view.h"
#include "pixel_geometry.h"

namespace view_testing {

using kestrone::S_OK;
using kestrone::Variant;

ViewRobot::ViewRobot() {
    std::string error;
    EXPECT_TRUE(session.load_module(KESTRONE_MODULE, &error)) << error;
    EXPECT_EQ(session.create_object(), S_OK);
    EXPECT_EQ(session.make_ready(), S_OK);
}

QImage ViewRobot::render(int zoom, int ratio) {
    return panelqt::render_panel(panel(), zoom, ratio);
}

std::int32_t ViewRobot::id(const std::string& element, std::int32_t index) {
    std::int32_t found = -1;
    EXPECT_EQ(
        session.find_element(element, index < 0 ? std::nullopt : std::optional(index), &found),
        S_OK)
        << element << "(" << index << ")";
    return found;
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
    std::vector<Variant> values;
    for (const std::int16_t a : args)
        values.push_back(Variant::integer(a));
    const Variant params = Variant::array(kestrone::VarType::Variant, 0, values);
    const auto op = host::ComponentSession::find_operation("SimMacroCall", false);
    ASSERT_TRUE(op.has_value());
    std::vector<Variant> call_args = {Variant::long_(number), params, Variant::long_(0), Variant(),
                                      Variant::long_(0)};
    Variant result;
    ASSERT_EQ(session.call(*op, call_args, &result), S_OK) << "macro " << number;
}

void ViewRobot::advance(std::int64_t ms) {
    ASSERT_EQ(session.advance(ms), S_OK);
}

void ViewRobot::click(const std::string& element) {
    ASSERT_EQ(session.click(id(element)), S_OK);
}

void ViewRobot::arrow(const std::string& element, std::int32_t index, bool up, int times) {
    for (int i = 0; i < times; ++i)
        ASSERT_EQ(session.arrow(id(element, index), up), S_OK);
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
