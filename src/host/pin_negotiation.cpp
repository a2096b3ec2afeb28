// Where each pin sits, as the host asks before it generates code, and the simulated levels of
// all pins as one array. The pins are fixed: nothing here moves a pin, only SimValue changes.
#include "host/rovanta_component.h"
#include "platform/vb_numeric.h"

namespace rovanta {

namespace {
// A guarded query answers 0 for an id outside Pins, without a word.
template <class Get>
Long guarded(const VbArray<KTPin>& pins, Long PinID, Get get) {
    if (!pins.in_bounds(PinID)) return 0;
    return get(pins(PinID));
}
}  // namespace

Long Rovanta::DesiredPort(Long PinID) const {
    return pin_table.Pins(PinID).DesiredPort;
}
Long Rovanta::Direction(Long PinID) const {
    return guarded(pin_table.Pins, PinID, [](const KTPin& p) { return p.Direction; });
}
Long Rovanta::PortMandatory(Long PinID) const {
    return guarded(pin_table.Pins, PinID,
                   [](const KTPin& p) { return host_boolean(p.PortMandatory); });
}
Long Rovanta::SamePortAsID(Long PinID) const {
    return guarded(pin_table.Pins, PinID, [](const KTPin& p) { return p.SamePortAsID; });
}
Long Rovanta::DesiredBit(Long PinID) const {
    return guarded(pin_table.Pins, PinID, [](const KTPin& p) { return p.DesiredBit; });
}
Long Rovanta::BitMandatory(Long PinID) const {
    return guarded(pin_table.Pins, PinID,
                   [](const KTPin& p) { return host_boolean(p.BitMandatory); });
}
Long Rovanta::Port(Long PinID) const {
    return guarded(pin_table.Pins, PinID, [](const KTPin& p) { return p.Port; });
}
Long Rovanta::Bit(Long PinID) const {
    return guarded(pin_table.Pins, PinID, [](const KTPin& p) { return p.Bit; });
}

// The host may try to move a pin; it is told no once the macros are loaded, and before that it
// is ignored without a word. Either way it is not a failure. (The two words differ on purpose.)
void Rovanta::LetPort(Long /*PinID*/, Long /*RHS*/) {
    if (link.bInitialised) MsgBox("Cannot change pins for this component");
}
void Rovanta::LetBit(Long /*PinID*/, Long /*RHS*/) {
    if (link.bInitialised) MsgBox("Cannot change ports for this component");
}

// -1 in Port or Bit marks a pin without a place. Every pin is looked at, the fallback one too.
Long Rovanta::ConnectedOK() const {
    bool ok = true;
    for (Long i = pin_table.Pins.lbound(); i <= pin_table.Pins.ubound(); ++i) {
        if (pin_table.Pins(i).Bit == -1) ok = false;
        if (pin_table.Pins(i).Port == -1) ok = false;
    }
    return host_boolean(ok);
}

void Rovanta::SimReadPins(Variant& pVal) {
    if (pin_table.lPinCount >= 1) {
        std::vector<Variant> levels;
        levels.reserve(static_cast<std::size_t>(pin_table.lPinCount));
        for (Long i = 0; i <= pin_table.lPinCount - 1; ++i)
            levels.push_back(Variant::boolean(pin_table.Pins(i).SimValue));
        pVal = Variant::array(kestrone::VarType::Boolean, 0, std::move(levels));
    }
    link.bPinsChanged = true;
}

namespace {
// NewVal(i) as the runtime indexes a tagged value: error 13 when it holds no array, error 9
// outside the array's bounds.
const Variant& element(const Variant& v, Long i) {
    if (!v.is_array()) vb::raise_error(vb::kTypeMismatch);
    const kestrone::SafeArray& a = v.as_array();
    if (i < a.lower || i > a.upper()) vb::raise_error(vb::kSubscriptOutOfRange);
    return a.items[static_cast<std::size_t>(i - a.lower)];
}
}  // namespace

// A failing element ends the call there: the pins before it keep their new levels, and the
// flag is not raised.
void Rovanta::SimWritePins(const Variant& NewVal) {
    for (Long i = 0; i <= pin_table.lPinCount - 1; ++i)
        pin_table.Pins(i).SimValue = vb::to_boolean(element(NewVal, i));
    link.bPinsChanged = true;
}

}  // namespace rovanta
