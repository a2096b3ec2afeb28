// The pin table, built once at start-up from the definition sections.
#include "core/rovanta_core.h"
#include "platform/vb_numeric.h"

namespace rovanta {

void RovantaCore::setupAPin(Long ArrayNumber, const std::string& PinName, Long PortAorB,
                            bool MustUseThatPort, Long SamePortAsPinX, Long PinNum,
                            bool MustUseThatPin, Long PinDirection, bool PinValue) {
    KTPin& pin = pin_table.Pins(ArrayNumber);
    pin = KTPin{};
    pin.DesiredPort = PortAorB;
    pin.PortMandatory = MustUseThatPort;
    pin.SamePortAsID = SamePortAsPinX;
    pin.Port = PortAorB;
    pin.PinName = PinName;
    pin.Direction = PinDirection;
    pin.DesiredBit = PinNum;
    pin.BitMandatory = MustUseThatPin;
    pin.Bit = PinNum;
    pin.SimValue = PinValue;
}

void RovantaCore::BuildPinTable() {
    pin_table.lPinCount = vb::text_to_long(GetIniKeyValue("Pins", "Count", "0"));
    if (pin_table.lPinCount == 0) {
        // The fallback pin: direction 2 and no shared port, unlike a pin the file names.
        pin_table.Pins.redim(0, 0);
        setupAPin(0, "XX", 0, false, -1, 0, false, 2, false);
        return;
    }
    pin_table.Pins.redim(0, vb::sub(pin_table.lPinCount, Long{1}));
    for (Long i = 1; i <= pin_table.lPinCount; ++i) {
        const std::string key = vb::str(i);
        const std::string name = GetIniKeyValue("Pins", key, "");
        const Long port = vb::text_to_long(GetIniKeyValue("PinPort", key, "0"));
        const Long bit = vb::text_to_long(GetIniKeyValue("PinDesiredBit", key, "0"));
        const Long direction = vb::text_to_long(GetIniKeyValue("PinDirection", key, "3"));
        const bool must_use_port =
            vb::text_to_boolean(GetIniKeyValue("PinMustUsePort", key, "False"));
        const bool must_use_pin = vb::text_to_boolean(GetIniKeyValue("PinMustUsePin", key, "0"));
        const Long same_port = vb::text_to_long(GetIniKeyValue("SamePortAsPinX", key, "0"));
        const bool value = vb::text_to_boolean(GetIniKeyValue("PinValue", key, "0"));
        setupAPin(i - 1, name, port, must_use_port, same_port, bit, must_use_pin, direction, value);
    }
}

std::string RovantaCore::PinName(Long PinID) const {
    return pin_table.Pins.in_bounds(PinID) ? pin_table.Pins(PinID).PinName : std::string();
}

}  // namespace rovanta
