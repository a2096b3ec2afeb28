// The settings as properties of the control: a read gives the field, a write stores the value
// with no range test. bReturnInt alone acts at once: it selects the sensors' full scale.
#include "core/rovanta.h"
#include "platform/vb_numeric.h"

namespace rovanta {

Variant Rovanta::GetSetting(const SettingInfo& setting) const {
    if (setting.text) return Variant::string(settings.*setting.text);
    return Variant::integer(settings.*setting.integer);
}

void Rovanta::LetSetting(const SettingInfo& setting, const Variant& value) {
    if (setting.text) {
        settings.*setting.text = vb::to_string(value);
        return;
    }
    const Integer v = vb::to_integer(value);
    settings.*setting.integer = v;
    if (setting.integer == &Settings::bReturnInt) {
        iADCMax = v != 0 ? Integer{1023} : Integer{255};
        // The bars stay; every value is worked out afresh from its bar's place.
        for (Integer i = 0; i <= 4; ++i)
            ShowSliderValue(i);
    }
}

}  // namespace rovanta
