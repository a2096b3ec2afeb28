// The type library: every member of the two interfaces with its kind, arguments and result, as
// data, so that a host can call any of them by name (IKestroneDispatch).
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

// Query reads a property, Set writes one (its last argument is the value written), Call runs a
// procedure.
enum class InvokeKind : std::uint8_t { Query, Set, Call };

// VarType::Variant marks a tagged-value argument or result; VarType::Empty a member without result.
struct ParamInfo {
    std::string_view name;
    VarType type;
    bool by_ref;
};

struct MemberInfo {
    std::string_view name;
    InvokeKind kind;
    VarType result;
    std::uint8_t param_count;
    std::array<ParamInfo, 9> params;
};

enum class Interface : std::uint8_t { ComponentV5, Rovanta };

namespace typelib_detail {
using K = InvokeKind;
using T = VarType;
inline constexpr ParamInfo In(std::string_view n, T t) {
    return {n, t, false};
}
inline constexpr ParamInfo Ref(std::string_view n, T t) {
    return {n, t, true};
}
template <class... P>
constexpr MemberInfo M(std::string_view name, K kind, T result, P... params) {
    return {name, kind, result, static_cast<std::uint8_t>(sizeof...(P)), {params...}};
}
}  // namespace typelib_detail

// IKestroneComponentV5, in the order of its vtable.
inline constexpr auto kComponentV5Members = [] {
    using namespace typelib_detail;
    constexpr T L = T::Long, S = T::String, V = T::Variant, E = T::Empty;
    return std::array{
        M("MultipleAllowed", K::Query, L),
        M("MacroNames", K::Query, V),
        M("MacroIsFunction", K::Query, L, In("lMacroID", L)),
        M("MacroParameters", K::Query, V, In("lMacroID", L)),
        M("MacroCode", K::Query, S, In("lMacroID", L)),
        M("IsSimulating", K::Query, L),
        M("PinCount", K::Query, L),
        M("HasInitialisation", K::Query, L),
        M("HasInterrupts", K::Query, L),
        M("HasExclusiveInts", K::Query, L),
        M("InitialisationCode", K::Query, S),
        M("InterruptCode", K::Query, S),
        M("ExclusiveInterrupts", K::Query, V),
        M("PinName", K::Query, S, In("PinID", L)),
        M("DesiredPort", K::Query, L, In("PinID", L)),
        M("Direction", K::Query, L, In("PinID", L)),
        M("PortMandatory", K::Query, L, In("PinID", L)),
        M("SamePortAsID", K::Query, L, In("PinID", L)),
        M("Description", K::Query, S),
        M("DesiredBit", K::Query, L, In("PinID", L)),
        M("BitMandatory", K::Query, L, In("PinID", L)),
        M("Port", K::Query, L, In("PinID", L)),
        M("Port", K::Set, E, In("PinID", L), In("RHS", L)),
        M("Bit", K::Query, L, In("PinID", L)),
        M("Bit", K::Set, E, In("PinID", L), In("RHS", L)),
        M("ConnectedOK", K::Query, L),
        M("StartSimulation", K::Call, E),
        M("StopSimulation", K::Call, E),
        M("SimIODirection", K::Query, L, In("PinID", L)),
        M("SimReadPins", K::Call, E, Ref("pVal", V)),
        M("SimWritePins", K::Call, E, In("NewVal", V)),
        M("SimMacroCall", K::Call, E, In("lMacroID", L), In("vParams", V), Ref("pRetVal", L),
          Ref("pvAffected", V), Ref("pCycles", L)),
        M("KeyDown", K::Call, E, In("lElementID", L)),
        M("KeyUp", K::Call, E, In("lElementID", L)),
        M("SupportsKeys", K::Query, L),
        M("IsAnalogue", K::Query, L),
        M("MacroIsPrivate", K::Query, L, In("lMacroID", L)),
        M("ClockSpeed", K::Set, E, In("RHS", L)),
        M("PICAnalogueBits", K::Set, E, In("RHS", L)),
        M("ADCCaptureCode", K::Set, E, In("RHS", S)),
        M("ADCReadHighCode", K::Set, E, In("RHS", S)),
        M("ADCReadLowCode", K::Set, E, In("RHS", S)),
        M("TargetController", K::Set, E, In("RHS", S)),
        M("ADCReadIntCode", K::Set, E, In("RHS", S)),
        M("KestroneVersion", K::Set, E, In("RHS", L)),
        M("ComponentVersion", K::Query, L),
        M("GeneralMethod", K::Call, E, In("lID", L), Ref("pVal", V)),
        M("GeneralPut", K::Set, E, In("lID", L), Ref("RHS", V)),
        M("GeneralGet", K::Query, V, In("lID", L)),
        M("KtxFilename", K::Set, E, In("RHS", S)),
        M("VNodeCount", K::Query, L),
        M("VNodeProtocol", K::Query, L, In("lIdx", L)),
        M("VNodeName", K::Query, S, In("lIdx", L)),
        M("VNodeMsgRead", K::Query, V, In("lIdx", L), Ref("lSize", L)),
        M("VNodeMsgWrite", K::Set, E, In("lIdx", L), In("lSize", L), Ref("msg", V)),
        M("MacroCodeOverride", K::Call, E, Ref("pVal", S)),
        M("CodeFilename", K::Query, S),
        M("DefinesCode", K::Query, S),
        M("ReadCustomImages", K::Query, S, In("lID", L)),
        M("WriteCustomImages", K::Set, E, In("lID", L), In("RHS", S)),
        M("SimMacroCall2", K::Call, E, In("lMacroID", L), In("vParams", V), Ref("pRetVal", V),
          Ref("pvAffected", V), Ref("pCycles", L)),
        M("Refresh", K::Call, E),
    };
}();
static_assert(kComponentV5Members.size() == 62, "the host interface has 62 operations");

// The fifteen settings in their declared order; the two last are strings, the others Integers.
inline constexpr std::array<std::string_view, 15> kSettingNames{
    "bReturnInt",  "iThreshL",   "iThreshF",   "iThreshR",       "iThreshMic",
    "iThreshLdr",  "iMotorBias", "bUseI2C",    "bWaitForButton", "bDummyBool1",
    "bDummyBool2", "iDummyInt1", "iDummyInt2", "sDummyString1",  "sDummyString2"};
inline constexpr int kFirstStringSetting = 13;

// _Rovanta, in its order. The settings' properties stand between the node operations and
// setupAPin; they are listed by kSettingNames and dispatched through the setting accessors.
inline constexpr auto kRovantaMembers = [] {
    using namespace typelib_detail;
    constexpr T I = T::Integer, L = T::Long, S = T::String, V = T::Variant, B = T::Boolean,
                E = T::Empty;
    return std::array{
        M("iVersionMajor", K::Query, I),
        M("iVersionMajor", K::Set, E, In("RHS", I)),
        M("iVersionMinor", K::Query, I),
        M("iVersionMinor", K::Set, E, In("RHS", I)),
        M("VERSION_STRING", K::Query, S),
        M("VERSION_STRING", K::Set, E, In("RHS", S)),
        M("GetIniKeyValue", K::Call, S, In("lpApplicationName", S), In("lpKeyName", S),
          In("lpDefault", S)),
        M("GetCodeFromFile", K::Call, S, In("lpCodeName", S)),
        M("IKestroneComponentV5_VNodeCount", K::Query, L),
        M("IKestroneComponentV5_VNodeProtocol", K::Query, L, In("lIdx", L)),
        M("IKestroneComponentV5_VNodeName", K::Query, S, In("lIdx", L)),
        M("IKestroneComponentV5_VNodeMsgRead", K::Query, V, In("lIdx", L), Ref("lSize", L)),
        M("IKestroneComponentV5_VNodeMsgWrite", K::Set, E, In("lIdx", L), In("lSize", L),
          Ref("msg", V)),
        M("setupAPin", K::Call, E, In("ArrayNumber", L), In("PinName", S), In("PortAorB", L),
          In("MustUseThatPort", B), In("SamePortAsPinX", L), In("PinNum", L),
          In("MustUseThatPin", B), In("PinDirection", L), In("PinValue", B)),
    };
}();

// Dispatch by name and number. A Rovanta member number below kRovantaMembers.size() is that
// entry; the settings follow it: kRovantaMembers.size() + 2 * setting is the read, + 1 the write.
inline constexpr Guid IID_IKestroneDispatch{
    0x8C3F2D11, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x06}};

class IKestroneDispatch : public IUnknown {
  public:
    // args holds the arguments in declared order, a write's value last; each is converted to its
    // parameter's type as a host's call would, and by-reference ones come back with their values
    // after the call. result receives the result, if the member has one.
    virtual HRESULT Invoke(Interface iface, std::int32_t member, Variant* args, std::int32_t argc,
                           Variant* result) noexcept = 0;

  protected:
    ~IKestroneDispatch() = default;
};

// The member description of a setting's read or write.
inline constexpr MemberInfo setting_member(int setting, InvokeKind kind) {
    using namespace typelib_detail;
    const T type = setting >= kFirstStringSetting ? T::String : T::Integer;
    return kind == K::Query ? M(kSettingNames[setting], K::Query, type)
                            : M(kSettingNames[setting], K::Set, T::Empty, In("RHS", type));
}

}  // namespace kestrone
