#include "host/field_table.h"

#include <array>

namespace rovanta {

using kestrone::VarType;

namespace {
Variant I(Integer v) {
    return Variant::integer(v);
}
Variant L(Long v) {
    return Variant::long_(v);
}
Variant B(bool v) {
    return Variant::boolean(v);
}
Variant S(const std::string& v) {
    return Variant::string(v);
}

template <class T, std::size_t N>
Variant array_of(VarType type, const std::array<T, N>& a) {
    std::vector<Variant> items;
    for (const T& v : a) {
        if constexpr (std::is_same_v<T, Variant>)
            items.push_back(v);
        else if constexpr (std::is_same_v<T, Integer>)
            items.push_back(I(v));
        else
            items.push_back(L(v));
    }
    return Variant::array(type, 0, std::move(items));
}

struct Field {
    std::string_view name;
    Variant (*get)(const Rovanta&);
};

// Scalars and arrays of values, in the order of declaration.
const Field kFields[] = {
    {"iVersionMajor", [](const Rovanta& r) { return I(r.link.iVersionMajor); }},
    {"iVersionMinor", [](const Rovanta& r) { return I(r.link.iVersionMinor); }},
    {"VERSION_STRING", [](const Rovanta& r) { return S(r.link.VERSION_STRING); }},
    {"bSimulating", [](const Rovanta& r) { return B(r.run.bSimulating); }},
    {"bHasExclusiveInts", [](const Rovanta& r) { return B(r.definition.bHasExclusiveInts); }},
    {"lExclusiveInterrupts", [](const Rovanta& r) { return r.ExclusiveInterrupts(); }},
    {"bMultipleAllowed", [](const Rovanta& r) { return B(r.definition.bMultipleAllowed); }},
    {"bIsAnalogue", [](const Rovanta& r) { return B(r.definition.bIsAnalogue); }},
    {"sDescription", [](const Rovanta& r) { return S(r.definition.sDescription); }},
    {"lSupportsKeys", [](const Rovanta& r) { return L(r.definition.lSupportsKeys); }},
    {"sInitialisationCode", [](const Rovanta& r) { return S(r.definition.sInitialisationCode); }},
    {"sInterruptCode", [](const Rovanta& r) { return S(r.definition.sInterruptCode); }},
    {"TargetController", [](const Rovanta& r) { return S(r.target.TargetController); }},
    {"ClockSpeed", [](const Rovanta& r) { return L(r.target.ClockSpeed); }},
    {"ADCCaptureCode", [](const Rovanta& r) { return S(r.target.ADCCaptureCode); }},
    {"ADCReadHighCode", [](const Rovanta& r) { return S(r.target.ADCReadHighCode); }},
    {"ADCReadLowCode", [](const Rovanta& r) { return S(r.target.ADCReadLowCode); }},
    {"ADCReadIntCode", [](const Rovanta& r) { return S(r.target.ADCReadIntCode); }},
    {"PICAnalogueBits", [](const Rovanta& r) { return L(r.target.PICAnalogueBits); }},
    {"lPinCount", [](const Rovanta& r) { return L(r.pin_table.lPinCount); }},
    {"lMacroCount", [](const Rovanta& r) { return L(r.macro_table.lMacroCount); }},
    {"lADCVal", [](const Rovanta& r) { return array_of(VarType::Long, r.sensors.lADCVal); }},
    {"lSliderPos", [](const Rovanta& r) { return array_of(VarType::Long, r.sensors.lSliderPos); }},
    {"vSliderMax",
     [](const Rovanta& r) { return array_of(VarType::Variant, r.sensors.vSliderMax); }},
    {"vSliderMin",
     [](const Rovanta& r) { return array_of(VarType::Variant, r.sensors.vSliderMin); }},
    {"iADCMax", [](const Rovanta& r) { return I(r.sensors.iADCMax); }},
    {"iWheelPhase",
     [](const Rovanta& r) { return array_of(VarType::Integer, r.motors.iWheelPhase); }},
    {"iMotorSpeed",
     [](const Rovanta& r) { return array_of(VarType::Integer, r.motors.iMotorSpeed); }},
    {"bSwitchLatch", [](const Rovanta& r) { return B(r.run.bSwitchLatch); }},
    {"iWheelTravel",
     [](const Rovanta& r) { return array_of(VarType::Integer, r.motors.iWheelTravel); }},
    {"iWheelCentre",
     [](const Rovanta& r) { return array_of(VarType::Integer, r.motors.iWheelCentre); }},
    {"bInitialised", [](const Rovanta& r) { return B(r.link.bInitialised); }},
    {"sCodeFile", [](const Rovanta& r) { return S(r.link.sCodeFile); }},
    {"sKtxFile", [](const Rovanta& r) { return S(r.link.sKtxFile); }},
    {"bPinsChanged", [](const Rovanta& r) { return B(r.link.bPinsChanged); }},
    {"HelpFile", [](const Rovanta& r) { return S(r.App.HelpFile); }},
};

struct Member {
    std::string_view name;
    Variant (*get)(const KTPin&);
};
const Member kPinMembers[] = {
    {"PinName", [](const KTPin& p) { return S(p.PinName); }},
    {"Direction", [](const KTPin& p) { return L(p.Direction); }},
    {"DesiredPort", [](const KTPin& p) { return L(p.DesiredPort); }},
    {"PortMandatory", [](const KTPin& p) { return B(p.PortMandatory); }},
    {"SamePortAsID", [](const KTPin& p) { return L(p.SamePortAsID); }},
    {"DesiredBit", [](const KTPin& p) { return L(p.DesiredBit); }},
    {"BitMandatory", [](const KTPin& p) { return B(p.BitMandatory); }},
    {"SimValue", [](const KTPin& p) { return B(p.SimValue); }},
    {"AnalogueSim", [](const KTPin& p) { return Variant::double_(p.AnalogueSim); }},
    {"Port", [](const KTPin& p) { return L(p.Port); }},
    {"Bit", [](const KTPin& p) { return L(p.Bit); }},
};

struct MacroMember {
    std::string_view name;
    Variant (*get)(const KTMacro&);
};
const MacroMember kMacroMembers[] = {
    {"MacroName", [](const KTMacro& m) { return S(m.MacroName); }},
    {"IsFunction", [](const KTMacro& m) { return B(m.IsFunction); }},
    {"IsPrivate", [](const KTMacro& m) { return B(m.IsPrivate); }},
    {"MacroParams", [](const KTMacro& m) { return m.MacroParams; }},
};

template <class Table, class Record>
FieldLookup read_record(const Table& members, const VbArray<Record>& records,
                        const std::int32_t* index, std::string_view member, Variant& out) {
    for (const auto& m : members) {
        if (m.name != member) continue;
        if (!index) return FieldLookup::UnknownMember;  // a record array has no value of its own
        out = m.get(records(*index));
        return FieldLookup::Found;
    }
    return FieldLookup::UnknownMember;
}
}  // namespace

FieldLookup read_field(const Rovanta& r, std::string_view name, const std::int32_t* index,
                       std::string_view member, Variant& out) {
    if (name == "Pins") return read_record(kPinMembers, r.pin_table.Pins, index, member, out);
    if (name == "Macros")
        return read_record(kMacroMembers, r.macro_table.Macros, index, member, out);
    Variant value;
    bool known = false;
    for (const Field& f : kFields)
        if (f.name == name) {
            value = f.get(r);
            known = true;
            break;
        }
    if (!known) {
        const SettingInfo* s = find_setting(name);
        if (!s) return FieldLookup::UnknownField;
        value = r.GetSetting(*s);
    }
    if (!member.empty()) return FieldLookup::UnknownMember;
    if (!index) {
        out = std::move(value);
        return FieldLookup::Found;
    }
    if (!value.is_array()) return FieldLookup::UnknownMember;
    const kestrone::SafeArray& a = value.as_array();
    if (*index < a.lower || *index > a.upper()) vb::raise_error(vb::kSubscriptOutOfRange);
    out = a.items[static_cast<std::size_t>(*index - a.lower)];
    return FieldLookup::Found;
}

}  // namespace rovanta
