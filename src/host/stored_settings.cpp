// Saving and loading the settings: the pins' places first ("Port0", "Bit0", ...), then the
// fifteen settings in the order of kSettings. Every key is written on every save; a load sets
// each setting through its property the moment it is read, so bReturnInt's change of full scale
// comes before any later key.
#include "host/stored_settings.h"

#include "host/rovanta_component.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::IKestroneStore;

std::string port_key(std::int32_t index) {
    return "Port" + vb::cstr(std::int64_t{index});
}
std::string bit_key(std::int32_t index) {
    return "Bit" + vb::cstr(std::int64_t{index});
}

namespace {
void write(IKestroneStore& bag, const std::string& key, const Variant& value) {
    const kestrone::HRESULT hr = bag.WriteProperty(key, value);
    if (kestrone::failed(hr)) throw StoreFailure(hr);
}

Variant read(IKestroneStore& bag, const std::string& key, const Variant& default_value) {
    Variant value;
    const kestrone::HRESULT hr = bag.ReadProperty(key, default_value, &value);
    if (kestrone::failed(hr)) throw StoreFailure(hr);
    return value;
}

// The default of a setting as the load asks for it: a 16-bit number, or empty text.
Variant load_default(const SettingInfo& s) {
    return s.text ? Variant::string({}) : Variant::integer(s.load_default);
}
}  // namespace

void Rovanta::UserControl_WriteProperties(IKestroneStore& PropBag) {
    for (Long i = 0; i <= pin_table.Pins.ubound(); ++i) {
        write(PropBag, port_key(i), Variant::long_(pin_table.Pins(i).Port));
        write(PropBag, bit_key(i), Variant::long_(pin_table.Pins(i).Bit));
    }
    for (const SettingInfo& s : kSettings)
        write(PropBag, std::string(s.key), GetSetting(s));
}

void Rovanta::UserControl_ReadProperties(IKestroneStore& PropBag) {
    // The pins' places are read and checked as 32-bit numbers, and go nowhere: the pins stay as
    // the definition file gave them.
    const Variant unplaced = Variant::integer(-1);
    for (Long i = 0; i <= pin_table.Pins.ubound(); ++i) {
        (void)vb::to_long(read(PropBag, port_key(i), unplaced));
        (void)vb::to_long(read(PropBag, bit_key(i), unplaced));
    }
    for (const SettingInfo& s : kSettings)
        LetSetting(s, read(PropBag, std::string(s.key), load_default(s)));
}

}  // namespace rovanta
