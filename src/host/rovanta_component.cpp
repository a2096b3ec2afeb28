#include "host/rovanta_component.h"

namespace rovanta {

Rovanta::Rovanta(platform::ModuleFacts app, const platform::Services& services)
    : RovantaCore(std::move(app), services) {
    UserControl_Initialize();
}

void Rovanta::UserControl_Initialize() {
    RovantaCore::StartUp();
    // The bars read the full scale that the sensors' own step sets; the wheels and the heading
    // come last.
    bars.StartUp();
    simulation.StartUp();
}

void Rovanta::LetSetting(const SettingInfo& setting, const Variant& value) {
    let_setting(settings, setting, value);
    if (setting.integer == &Settings::bReturnInt) bars.SelectFullScale(settings.bReturnInt);
}

}  // namespace rovanta
