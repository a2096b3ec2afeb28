#include "support/stage_robot.h"

#include <gtest/gtest.h>

namespace testing_support {

using kestrone::Variant;

void KeepingServices::ShowMessage(const std::string& text) noexcept {
    messages.push_back(text);
    if (while_box_open) while_box_open();
}

void KeepingServices::PlayTone(std::int32_t hertz, std::int32_t ms) noexcept {
    tones.emplace_back(hertz, ms);
    if (while_tone) while_tone(ms);
}

StageRobot::StageRobot() {
    std::string error;
    EXPECT_TRUE(session.load_module(KESTRONE_MODULE, &error)) << error;
    EXPECT_EQ(session.create_object(), kestrone::S_OK);
    EXPECT_EQ(session.make_ready(), kestrone::S_OK);
}

kestrone::HRESULT StageRobot::call(const std::string& name, std::vector<Variant> args, bool write) {
    const auto op = host::ComponentSession::find_operation(name, write);
    EXPECT_TRUE(op.has_value()) << name;
    if (!op) return kestrone::DISP_E_UNKNOWNNAME;
    Variant result;
    return session.call(*op, args, &result);
}

void StageRobot::macro(std::int32_t number, const std::vector<std::int16_t>& args) {
    std::vector<Variant> values;
    for (const std::int16_t a : args)
        values.push_back(Variant::integer(a));
    const Variant params = Variant::array(kestrone::VarType::Variant, 0, values);
    EXPECT_EQ(call("SimMacroCall", {Variant::long_(number), params, Variant::long_(0), Variant(),
                                    Variant::long_(0)}),
              kestrone::S_OK)
        << "macro " << number;
}

}  // namespace testing_support
