// The fifteen settings: their fields, and one table with their keys, start values, load
// defaults and tokens, in the order in which the store walks them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "kestrone/variant.h"

namespace rovanta {

// The b settings are Integers like the others: any value may stand in them.
struct Settings {
    std::int16_t bReturnInt = 0;
    std::int16_t iThreshL = 0;
    std::int16_t iThreshF = 0;
    std::int16_t iThreshR = 0;
    std::int16_t iThreshMic = 0;
    std::int16_t iThreshLdr = 0;
    std::int16_t bUseI2C = 0;
    std::int16_t bWaitForButton = 0;
    std::int16_t iMotorBias = 0;
    std::int16_t bDummyBool1 = 0;
    std::int16_t bDummyBool2 = 0;
    std::int16_t iDummyInt1 = 0;
    std::int16_t iDummyInt2 = 0;
    std::string sDummyString1;
    std::string sDummyString2;
};

struct SettingInfo {
    std::string_view key;             // the property's name and the store's key
    std::int16_t Settings::*integer;  // null for a string setting
    std::string Settings::*text;      // null for an Integer setting
    std::int16_t start;               // value after start-up
    std::int16_t load_default;        // default when the store lacks the key
};

// In the order of the store's walks; the string settings start empty and load as empty.
inline constexpr std::array<SettingInfo, 15> kSettings{{
    {"bReturnInt", &Settings::bReturnInt, nullptr, 0, 0},
    {"iThreshL", &Settings::iThreshL, nullptr, 200, 200},
    {"iThreshF", &Settings::iThreshF, nullptr, 200, 200},
    {"iThreshR", &Settings::iThreshR, nullptr, 200, 200},
    {"iThreshMic", &Settings::iThreshMic, nullptr, 128, 128},
    {"iThreshLdr", &Settings::iThreshLdr, nullptr, 128, 128},
    {"bUseI2C", &Settings::bUseI2C, nullptr, 128, 0},
    {"bWaitForButton", &Settings::bWaitForButton, nullptr, 1, 1},
    {"bDummyBool1", &Settings::bDummyBool1, nullptr, 0, 0},
    {"bDummyBool2", &Settings::bDummyBool2, nullptr, 0, 0},
    {"iDummyInt1", &Settings::iDummyInt1, nullptr, 0, 0},
    {"iDummyInt2", &Settings::iDummyInt2, nullptr, 0, 0},
    {"sDummyString1", nullptr, &Settings::sDummyString1, 0, 0},
    {"sDummyString2", nullptr, &Settings::sDummyString2, 0, 0},
    {"iMotorBias", &Settings::iMotorBias, nullptr, 0, 0},
}};

// The setting of that name, or null.
const SettingInfo* find_setting(std::string_view key);

// A setting as its property gives it, and a write with no range test (a value that does not
// convert raises its Basic error and changes nothing).
kestrone::Variant get_setting(const Settings& settings, const SettingInfo& setting);
void let_setting(Settings& settings, const SettingInfo& setting, const kestrone::Variant& value);

// The tokens of the code text, "%a" to "%p", with the text each stands for.
struct SettingToken {
    std::string_view token;
    std::string (*text)(const Settings&);
};
extern const std::array<SettingToken, 16> kSettingTokens;

}  // namespace rovanta
