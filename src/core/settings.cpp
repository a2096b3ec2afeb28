#include "core/settings.h"

#include "platform/vb_numeric.h"

namespace rovanta {

const SettingInfo* find_setting(std::string_view key) {
    for (const SettingInfo& s : kSettings)
        if (s.key == key) return &s;
    return nullptr;
}

namespace {
template <std::int16_t Settings::*Field>
std::string decimal(const Settings& s) {
    return vb::cstr(std::int64_t{s.*Field});
}
template <std::string Settings::*Field>
std::string text(const Settings& s) {
    return s.*Field;
}
// The bias toward the left goes to one token as a magnitude, toward the right to the other.
// The magnitude is an Integer operation: -32768 has none and overflows.
std::string bias_left(const Settings& s) {
    const vb::Integer magnitude =
        s.iMotorBias < 0 ? vb::sub(vb::Integer{0}, s.iMotorBias) : vb::Integer{0};
    return vb::cstr(std::int64_t{magnitude});
}
std::string bias_right(const Settings& s) {
    return vb::cstr(s.iMotorBias < 0 ? 0 : std::int64_t{s.iMotorBias});
}
}  // namespace

const std::array<SettingToken, 16> kSettingTokens{{
    {"%a", decimal<&Settings::bReturnInt>},
    {"%b", decimal<&Settings::iThreshL>},
    {"%c", decimal<&Settings::iThreshF>},
    {"%d", decimal<&Settings::iThreshR>},
    {"%e", decimal<&Settings::iThreshMic>},
    {"%f", decimal<&Settings::iThreshLdr>},
    {"%g", decimal<&Settings::bUseI2C>},
    {"%h", decimal<&Settings::bWaitForButton>},
    {"%i", decimal<&Settings::bDummyBool1>},
    {"%j", decimal<&Settings::bDummyBool2>},
    {"%k", decimal<&Settings::iDummyInt1>},
    {"%l", decimal<&Settings::iDummyInt2>},
    {"%m", text<&Settings::sDummyString1>},
    {"%n", text<&Settings::sDummyString2>},
    {"%o", bias_left},
    {"%p", bias_right},
}};

}  // namespace rovanta
