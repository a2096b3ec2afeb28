// The settings as properties of the control: a read gives the field, a write stores the value
// with no range test.
#include "core/settings.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::Variant;

Variant get_setting(const Settings& settings, const SettingInfo& setting) {
    if (setting.text) return Variant::string(settings.*setting.text);
    return Variant::integer(settings.*setting.integer);
}

void let_setting(Settings& settings, const SettingInfo& setting, const Variant& value) {
    if (setting.text)
        settings.*setting.text = vb::to_string(value);
    else
        settings.*setting.integer = vb::to_integer(value);
}

}  // namespace rovanta
