// Calls by name: each member of the type library has a thunk that converts its arguments as the
// host's call would, calls the typed operation and hands back the result and by-ref arguments.
#include <array>

#include "host/guarded_call.h"
#include "host/rovanta_object.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::HRESULT;
using kestrone::IKestroneComponentV5;
using kestrone::IRovanta;

namespace {
using I = IKestroneComponentV5;
using Thunk = HRESULT (*)(RovantaObject&, Variant* a, Variant* r);

std::int32_t L(const Variant& v) {
    return vb::to_long(v);
}
std::string S(const Variant& v) {
    return vb::to_string(v);
}

// Queries without arguments.
template <HRESULT (I::*M)(std::int32_t*) noexcept>
HRESULT q_long(RovantaObject& o, Variant*, Variant* r) {
    std::int32_t v = 0;
    const HRESULT hr = (o.*M)(&v);
    *r = Variant::long_(v);
    return hr;
}
template <HRESULT (I::*M)(std::string*) noexcept>
HRESULT q_string(RovantaObject& o, Variant*, Variant* r) {
    std::string v;
    const HRESULT hr = (o.*M)(&v);
    *r = Variant::string(std::move(v));
    return hr;
}
template <HRESULT (I::*M)(Variant*) noexcept>
HRESULT q_variant(RovantaObject& o, Variant*, Variant* r) {
    return (o.*M)(r);
}
// Queries by one 32-bit id.
template <HRESULT (I::*M)(std::int32_t, std::int32_t*) noexcept>
HRESULT q_long_by_id(RovantaObject& o, Variant* a, Variant* r) {
    std::int32_t v = 0;
    const HRESULT hr = (o.*M)(L(a[0]), &v);
    *r = Variant::long_(v);
    return hr;
}
template <HRESULT (I::*M)(std::int32_t, std::string*) noexcept>
HRESULT q_string_by_id(RovantaObject& o, Variant* a, Variant* r) {
    std::string v;
    const HRESULT hr = (o.*M)(L(a[0]), &v);
    *r = Variant::string(std::move(v));
    return hr;
}
template <HRESULT (I::*M)(std::int32_t, Variant*) noexcept>
HRESULT q_variant_by_id(RovantaObject& o, Variant* a, Variant* r) {
    return (o.*M)(L(a[0]), r);
}
// Writes and calls.
template <HRESULT (I::*M)(std::int32_t) noexcept>
HRESULT c_long(RovantaObject& o, Variant* a, Variant*) {
    return (o.*M)(L(a[0]));
}
template <HRESULT (I::*M)(const std::string&) noexcept>
HRESULT c_string(RovantaObject& o, Variant* a, Variant*) {
    return (o.*M)(S(a[0]));
}
template <HRESULT (I::*M)(std::int32_t, std::int32_t) noexcept>
HRESULT c_long_long(RovantaObject& o, Variant* a, Variant*) {
    return (o.*M)(L(a[0]), L(a[1]));
}
template <HRESULT (I::*M)() noexcept>
HRESULT c_none(RovantaObject& o, Variant*, Variant*) {
    return (o.*M)();
}

HRESULT sim_read_pins(RovantaObject& o, Variant* a, Variant*) {
    return o.SimReadPins(&a[0]);
}
HRESULT sim_write_pins(RovantaObject& o, Variant* a, Variant*) {
    return o.SimWritePins(a[0]);
}
HRESULT sim_macro_call(RovantaObject& o, Variant* a, Variant*) {
    std::int32_t ret = L(a[2]), cycles = L(a[4]);
    const HRESULT hr = o.SimMacroCall(L(a[0]), a[1], &ret, &a[3], &cycles);
    a[2] = Variant::long_(ret);
    a[4] = Variant::long_(cycles);
    return hr;
}
HRESULT sim_macro_call2(RovantaObject& o, Variant* a, Variant*) {
    std::int32_t cycles = L(a[4]);
    const HRESULT hr = o.SimMacroCall2(L(a[0]), a[1], &a[2], &a[3], &cycles);
    a[4] = Variant::long_(cycles);
    return hr;
}
HRESULT general_method(RovantaObject& o, Variant* a, Variant*) {
    return o.GeneralMethod(L(a[0]), &a[1]);
}
HRESULT general_put(RovantaObject& o, Variant* a, Variant*) {
    return o.put_GeneralPut(L(a[0]), &a[1]);
}
HRESULT vnode_msg_read(RovantaObject& o, Variant* a, Variant* r) {
    std::int32_t size = L(a[1]);
    const HRESULT hr = o.get_VNodeMsgRead(L(a[0]), &size, r);
    a[1] = Variant::long_(size);
    return hr;
}
HRESULT vnode_msg_write(RovantaObject& o, Variant* a, Variant*) {
    return o.put_VNodeMsgWrite(L(a[0]), L(a[1]), &a[2]);
}
HRESULT macro_code_override(RovantaObject& o, Variant* a, Variant*) {
    std::string text = S(a[0]);
    const HRESULT hr = o.MacroCodeOverride(&text);
    a[0] = Variant::string(std::move(text));
    return hr;
}
HRESULT write_custom_images(RovantaObject& o, Variant* a, Variant*) {
    return o.put_WriteCustomImages(L(a[0]), S(a[1]));
}

// In the order of kComponentV5Members.
constexpr std::array<Thunk, 62> kComponentThunks{
    q_long<&I::get_MultipleAllowed>,
    q_variant<&I::get_MacroNames>,
    q_long_by_id<&I::get_MacroIsFunction>,
    q_variant_by_id<&I::get_MacroParameters>,
    q_string_by_id<&I::get_MacroCode>,
    q_long<&I::get_IsSimulating>,
    q_long<&I::get_PinCount>,
    q_long<&I::get_HasInitialisation>,
    q_long<&I::get_HasInterrupts>,
    q_long<&I::get_HasExclusiveInts>,
    q_string<&I::get_InitialisationCode>,
    q_string<&I::get_InterruptCode>,
    q_variant<&I::get_ExclusiveInterrupts>,
    q_string_by_id<&I::get_PinName>,
    q_long_by_id<&I::get_DesiredPort>,
    q_long_by_id<&I::get_Direction>,
    q_long_by_id<&I::get_PortMandatory>,
    q_long_by_id<&I::get_SamePortAsID>,
    q_string<&I::get_Description>,
    q_long_by_id<&I::get_DesiredBit>,
    q_long_by_id<&I::get_BitMandatory>,
    q_long_by_id<&I::get_Port>,
    c_long_long<&I::put_Port>,
    q_long_by_id<&I::get_Bit>,
    c_long_long<&I::put_Bit>,
    q_long<&I::get_ConnectedOK>,
    c_none<&I::StartSimulation>,
    c_none<&I::StopSimulation>,
    q_long_by_id<&I::get_SimIODirection>,
    sim_read_pins,
    sim_write_pins,
    sim_macro_call,
    c_long<&I::KeyDown>,
    c_long<&I::KeyUp>,
    q_long<&I::get_SupportsKeys>,
    q_long<&I::get_IsAnalogue>,
    q_long_by_id<&I::get_MacroIsPrivate>,
    c_long<&I::put_ClockSpeed>,
    c_long<&I::put_PICAnalogueBits>,
    c_string<&I::put_ADCCaptureCode>,
    c_string<&I::put_ADCReadHighCode>,
    c_string<&I::put_ADCReadLowCode>,
    c_string<&I::put_TargetController>,
    c_string<&I::put_ADCReadIntCode>,
    c_long<&I::put_KestroneVersion>,
    q_long<&I::get_ComponentVersion>,
    general_method,
    general_put,
    q_variant_by_id<&I::get_GeneralGet>,
    c_string<&I::put_KtxFilename>,
    q_long<&I::get_VNodeCount>,
    q_long_by_id<&I::get_VNodeProtocol>,
    q_string_by_id<&I::get_VNodeName>,
    vnode_msg_read,
    vnode_msg_write,
    macro_code_override,
    q_string<&I::get_CodeFilename>,
    q_string<&I::get_DefinesCode>,
    q_string_by_id<&I::get_ReadCustomImages>,
    write_custom_images,
    sim_macro_call2,
    c_none<&I::Refresh>,
};

// _Rovanta's own members, in the order of kRovantaMembers.
HRESULT rv_major_get(RovantaObject& o, Variant*, Variant* r) {
    std::int16_t v = 0;
    const HRESULT hr = o.get_iVersionMajor(&v);
    *r = Variant::integer(v);
    return hr;
}
HRESULT rv_major_put(RovantaObject& o, Variant* a, Variant*) {
    return o.put_iVersionMajor(vb::to_integer(a[0]));
}
HRESULT rv_minor_get(RovantaObject& o, Variant*, Variant* r) {
    std::int16_t v = 0;
    const HRESULT hr = o.get_iVersionMinor(&v);
    *r = Variant::integer(v);
    return hr;
}
HRESULT rv_minor_put(RovantaObject& o, Variant* a, Variant*) {
    return o.put_iVersionMinor(vb::to_integer(a[0]));
}
HRESULT rv_version_get(RovantaObject& o, Variant*, Variant* r) {
    std::string v;
    const HRESULT hr = o.get_VERSION_STRING(&v);
    *r = Variant::string(std::move(v));
    return hr;
}
HRESULT rv_version_put(RovantaObject& o, Variant* a, Variant*) {
    return o.put_VERSION_STRING(S(a[0]));
}
HRESULT rv_ini(RovantaObject& o, Variant* a, Variant* r) {
    std::string v;
    const HRESULT hr = o.GetIniKeyValue(S(a[0]), S(a[1]), S(a[2]), &v);
    *r = Variant::string(std::move(v));
    return hr;
}
HRESULT rv_code(RovantaObject& o, Variant* a, Variant* r) {
    std::string v;
    const HRESULT hr = o.GetCodeFromFile(S(a[0]), &v);
    *r = Variant::string(std::move(v));
    return hr;
}
HRESULT rv_setup_pin(RovantaObject& o, Variant* a, Variant*) {
    return o.setupAPin(L(a[0]), S(a[1]), L(a[2]), vb::to_boolean(a[3]), L(a[4]), L(a[5]),
                       vb::to_boolean(a[6]), L(a[7]), vb::to_boolean(a[8]));
}

constexpr std::array<Thunk, 14> kRovantaThunks{
    rv_major_get,
    rv_major_put,
    rv_minor_get,
    rv_minor_put,
    rv_version_get,
    rv_version_put,
    rv_ini,
    rv_code,
    q_long<&I::get_VNodeCount>,
    q_long_by_id<&I::get_VNodeProtocol>,
    q_string_by_id<&I::get_VNodeName>,
    vnode_msg_read,
    vnode_msg_write,
    rv_setup_pin,
};
static_assert(kRovantaThunks.size() == kestrone::kRovantaMembers.size());

HRESULT invoke_setting(RovantaObject& o, int setting, bool write, Variant* a, Variant* r) {
    const bool text = setting >= kestrone::kFirstStringSetting;
    if (text) {
        if (write) return o.put_StringSetting(setting, S(a[0]));
        std::string v;
        const HRESULT hr = o.get_StringSetting(setting, &v);
        *r = Variant::string(std::move(v));
        return hr;
    }
    if (write) return o.put_IntegerSetting(setting, vb::to_integer(a[0]));
    std::int16_t v = 0;
    const HRESULT hr = o.get_IntegerSetting(setting, &v);
    *r = Variant::integer(v);
    return hr;
}
}  // namespace

HRESULT RovantaObject::Invoke(kestrone::Interface iface, std::int32_t member, Variant* args,
                              std::int32_t argc, Variant* result) noexcept {
    Variant ignored;
    if (!result) result = &ignored;
    const kestrone::MemberInfo* info = nullptr;
    Thunk thunk = nullptr;
    int setting = -1;
    bool setting_write = false;
    if (iface == kestrone::Interface::ComponentV5) {
        if (member < 0 || member >= static_cast<std::int32_t>(kComponentThunks.size()))
            return kestrone::DISP_E_UNKNOWNNAME;
        info = &kestrone::kComponentV5Members[static_cast<std::size_t>(member)];
        thunk = kComponentThunks[static_cast<std::size_t>(member)];
    } else {
        const std::int32_t own = static_cast<std::int32_t>(kRovantaThunks.size());
        if (member < 0 ||
            member >= own + 2 * static_cast<std::int32_t>(kestrone::kSettingNames.size()))
            return kestrone::DISP_E_UNKNOWNNAME;
        if (member < own) {
            info = &kestrone::kRovantaMembers[static_cast<std::size_t>(member)];
            thunk = kRovantaThunks[static_cast<std::size_t>(member)];
        } else {
            setting = (member - own) / 2;
            setting_write = (member - own) % 2 == 1;
        }
    }
    const int expected = info ? info->param_count : (setting_write ? 1 : 0);
    if (argc != expected || (expected > 0 && !args)) return kestrone::DISP_E_BADPARAMCOUNT;
    HRESULT status = kestrone::S_OK;
    const HRESULT hr = guarded_call([&] {
        status = info ? thunk(*this, args, result)
                      : invoke_setting(*this, setting, setting_write, args, result);
    });
    return kestrone::failed(hr) ? hr : status;
}

}  // namespace rovanta
