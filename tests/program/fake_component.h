// A component of the test's own behind the host interface: it lists the macros it is given,
// records every simulation call in order, and answers function macros from a rule of the
// test's. The interpreter cannot tell it from a module.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kestrone/component_v5.h"

namespace program_testing {

struct FakeMacro {
    std::string name;
    std::string returns = "void";
    std::vector<std::string> param_types;  // one C type word per parameter
    bool is_private = false;
};

// One call as the component saw it.
struct SimCall {
    std::int32_t id;
    std::vector<kestrone::Variant> args;
    bool operator==(const SimCall&) const = default;
};

class FakeComponent : public kestrone::IKestroneComponentV5 {
  public:
    explicit FakeComponent(std::vector<FakeMacro> macros) : macros_(std::move(macros)) {}
    virtual ~FakeComponent() = default;

    // The Rovanta robot's table as the code file gives it: ids 0 to 20.
    static std::vector<FakeMacro> robot_macros();

    // The result of a function macro: by default the low bits of a count of all calls made.
    std::function<std::int32_t(std::int32_t id, std::size_t call)> result =
        [](std::int32_t, std::size_t call) { return static_cast<std::int32_t>(call * 37 + 11); };
    // The id of the first macro, as the component numbers them; and what it says of its pins.
    std::int32_t first_id = 0;
    std::int32_t pin_count = 0;
    // A macro that fails with this status (0: none).
    std::int32_t failing_id = -1;
    kestrone::HRESULT failure = 0;

    int starts = 0, stops = 0;
    std::vector<SimCall> calls;
    // Every event in order: "start", "stop", or the macro's name.
    std::vector<std::string> events;

    kestrone::HRESULT QueryInterface(const kestrone::Guid&, void**) noexcept override {
        return kestrone::E_NOINTERFACE;
    }
    std::uint32_t AddRef() noexcept override { return 1; }
    std::uint32_t Release() noexcept override { return 1; }

    kestrone::HRESULT get_MacroNames(kestrone::Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsFunction(std::int32_t id, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_MacroParameters(std::int32_t id,
                                          kestrone::Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsPrivate(std::int32_t id, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_PinCount(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT StartSimulation() noexcept override;
    kestrone::HRESULT StopSimulation() noexcept override;
    kestrone::HRESULT SimMacroCall(std::int32_t id, const kestrone::Variant& vParams,
                                   std::int32_t* pRetVal, kestrone::Variant* pvAffected,
                                   std::int32_t* pCycles) noexcept override;

    // Nothing else is asked by a running program.
#define U(signature)                                \
    kestrone::HRESULT signature noexcept override { \
        return kestrone::E_NOTIMPL;                 \
    }
    // clang-format off
    U(get_MultipleAllowed(std::int32_t*)) U(get_MacroCode(std::int32_t, std::string*))
    U(get_IsSimulating(std::int32_t*)) U(get_HasInitialisation(std::int32_t*))
    U(get_HasInterrupts(std::int32_t*)) U(get_HasExclusiveInts(std::int32_t*))
    U(get_InitialisationCode(std::string*)) U(get_InterruptCode(std::string*))
    U(get_ExclusiveInterrupts(kestrone::Variant*)) U(get_PinName(std::int32_t, std::string*))
    U(get_DesiredPort(std::int32_t, std::int32_t*)) U(get_Direction(std::int32_t, std::int32_t*))
    U(get_PortMandatory(std::int32_t, std::int32_t*))
    U(get_SamePortAsID(std::int32_t, std::int32_t*)) U(get_Description(std::string*))
    U(get_DesiredBit(std::int32_t, std::int32_t*)) U(get_BitMandatory(std::int32_t, std::int32_t*))
    U(get_Port(std::int32_t, std::int32_t*)) U(put_Port(std::int32_t, std::int32_t))
    U(get_Bit(std::int32_t, std::int32_t*)) U(put_Bit(std::int32_t, std::int32_t))
    U(get_ConnectedOK(std::int32_t*)) U(get_SimIODirection(std::int32_t, std::int32_t*))
    U(SimReadPins(kestrone::Variant*)) U(SimWritePins(const kestrone::Variant&))
    U(KeyDown(std::int32_t)) U(KeyUp(std::int32_t)) U(get_SupportsKeys(std::int32_t*))
    U(get_IsAnalogue(std::int32_t*)) U(put_ClockSpeed(std::int32_t))
    U(put_PICAnalogueBits(std::int32_t)) U(put_ADCCaptureCode(const std::string&))
    U(put_ADCReadHighCode(const std::string&)) U(put_ADCReadLowCode(const std::string&))
    U(put_TargetController(const std::string&)) U(put_ADCReadIntCode(const std::string&))
    U(put_KestroneVersion(std::int32_t)) U(get_ComponentVersion(std::int32_t*))
    U(GeneralMethod(std::int32_t, kestrone::Variant*))
    U(put_GeneralPut(std::int32_t, kestrone::Variant*))
    U(get_GeneralGet(std::int32_t, kestrone::Variant*)) U(put_KtxFilename(const std::string&))
    U(get_VNodeCount(std::int32_t*)) U(get_VNodeProtocol(std::int32_t, std::int32_t*))
    U(get_VNodeName(std::int32_t, std::string*))
    U(get_VNodeMsgRead(std::int32_t, std::int32_t*, kestrone::Variant*))
    U(put_VNodeMsgWrite(std::int32_t, std::int32_t, kestrone::Variant*))
    U(MacroCodeOverride(std::string*)) U(get_CodeFilename(std::string*))
    U(get_DefinesCode(std::string*)) U(get_ReadCustomImages(std::int32_t, std::string*))
    U(put_WriteCustomImages(std::int32_t, const std::string&))
    U(SimMacroCall2(std::int32_t, const kestrone::Variant&, kestrone::Variant*, kestrone::Variant*, std::int32_t*))
    U(Refresh())
    // clang-format on
#undef U

                                                                                        private
        : const FakeMacro& macro(std::int32_t id) const {
        return macros_.at(static_cast<std::size_t>(std::int64_t{id} - first_id));
    }
    std::vector<FakeMacro> macros_;
};

}  // namespace program_testing
