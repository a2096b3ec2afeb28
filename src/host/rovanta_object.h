// The Rovanta object as the host reaches it: the host's interface, the control's own members,
// calls by name and inspection, over one core object. No exception leaves it: every failure
// becomes the status 0x800A0000 + its Basic error number.
#pragma once

#include <atomic>
#include <memory>

#include "core/rovanta.h"
#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/property_page.h"
#include "kestrone/rovanta.h"
#include "kestrone/store.h"
#include "kestrone/typelib.h"

namespace rovanta {

// The number of live objects and class factory locks of the module.
std::atomic<long>& module_lock_count();

class RovantaObject final : public kestrone::IKestroneComponentV5,
                            public kestrone::IRovanta,
                            public kestrone::IKestroneDispatch,
                            public kestrone::IKestroneInspection,
                            public kestrone::IKestronePersist,
                            public kestrone::IKestronePropertyPages {
  public:
    // Creates the object; the messages of creation go to `host` (none: answered at once). A
    // failure of creation comes back as its status, with no object.
    static kestrone::HRESULT create(const platform::ModuleFacts& app, kestrone::IHostServices* host,
                                    RovantaObject** out) noexcept;

    Rovanta& core() { return *core_; }

    // IUnknown (one for all interfaces)
    kestrone::HRESULT QueryInterface(const kestrone::Guid& iid, void** ppv) noexcept override;
    std::uint32_t AddRef() noexcept override;
    std::uint32_t Release() noexcept override;

    // IKestroneComponentV5
    kestrone::HRESULT get_MultipleAllowed(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_MacroNames(Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsFunction(std::int32_t lMacroID,
                                          std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_MacroParameters(std::int32_t lMacroID, Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroCode(std::int32_t lMacroID, std::string* pVal) noexcept override;
    kestrone::HRESULT get_IsSimulating(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_PinCount(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_HasInitialisation(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_HasInterrupts(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_HasExclusiveInts(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_InitialisationCode(std::string* pVal) noexcept override;
    kestrone::HRESULT get_InterruptCode(std::string* pVal) noexcept override;
    kestrone::HRESULT get_ExclusiveInterrupts(Variant* pVal) noexcept override;
    kestrone::HRESULT get_PinName(std::int32_t PinID, std::string* pVal) noexcept override;
    kestrone::HRESULT get_DesiredPort(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_Direction(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_PortMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_SamePortAsID(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_Description(std::string* pVal) noexcept override;
    kestrone::HRESULT get_DesiredBit(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_BitMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_Port(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT put_Port(std::int32_t PinID, std::int32_t RHS) noexcept override;
    kestrone::HRESULT get_Bit(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT put_Bit(std::int32_t PinID, std::int32_t RHS) noexcept override;
    kestrone::HRESULT get_ConnectedOK(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT StartSimulation() noexcept override;
    kestrone::HRESULT StopSimulation() noexcept override;
    kestrone::HRESULT get_SimIODirection(std::int32_t PinID, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT SimReadPins(Variant* pVal) noexcept override;
    kestrone::HRESULT SimWritePins(const Variant& NewVal) noexcept override;
    kestrone::HRESULT SimMacroCall(std::int32_t lMacroID, const Variant& vParams,
                                   std::int32_t* pRetVal, Variant* pvAffected,
                                   std::int32_t* pCycles) noexcept override;
    kestrone::HRESULT KeyDown(std::int32_t lElementID) noexcept override;
    kestrone::HRESULT KeyUp(std::int32_t lElementID) noexcept override;
    kestrone::HRESULT get_SupportsKeys(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_IsAnalogue(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsPrivate(std::int32_t lMacroID,
                                         std::int32_t* pVal) noexcept override;
    kestrone::HRESULT put_ClockSpeed(std::int32_t RHS) noexcept override;
    kestrone::HRESULT put_PICAnalogueBits(std::int32_t RHS) noexcept override;
    kestrone::HRESULT put_ADCCaptureCode(const std::string& RHS) noexcept override;
    kestrone::HRESULT put_ADCReadHighCode(const std::string& RHS) noexcept override;
    kestrone::HRESULT put_ADCReadLowCode(const std::string& RHS) noexcept override;
    kestrone::HRESULT put_TargetController(const std::string& RHS) noexcept override;
    kestrone::HRESULT put_ADCReadIntCode(const std::string& RHS) noexcept override;
    kestrone::HRESULT put_KestroneVersion(std::int32_t RHS) noexcept override;
    kestrone::HRESULT get_ComponentVersion(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT GeneralMethod(std::int32_t lID, Variant* pVal) noexcept override;
    kestrone::HRESULT put_GeneralPut(std::int32_t lID, Variant* RHS) noexcept override;
    kestrone::HRESULT get_GeneralGet(std::int32_t lID, Variant* pVal) noexcept override;
    kestrone::HRESULT put_KtxFilename(const std::string& RHS) noexcept override;
    kestrone::HRESULT get_VNodeCount(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_VNodeProtocol(std::int32_t lIdx, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_VNodeName(std::int32_t lIdx, std::string* pVal) noexcept override;
    kestrone::HRESULT get_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                       Variant* pVal) noexcept override;
    kestrone::HRESULT put_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                        Variant* msg) noexcept override;
    kestrone::HRESULT MacroCodeOverride(std::string* pVal) noexcept override;
    kestrone::HRESULT get_CodeFilename(std::string* pVal) noexcept override;
    kestrone::HRESULT get_DefinesCode(std::string* pVal) noexcept override;
    kestrone::HRESULT get_ReadCustomImages(std::int32_t lID, std::string* pVal) noexcept override;
    kestrone::HRESULT put_WriteCustomImages(std::int32_t lID,
                                            const std::string& RHS) noexcept override;
    kestrone::HRESULT SimMacroCall2(std::int32_t lMacroID, const Variant& vParams, Variant* pRetVal,
                                    Variant* pvAffected, std::int32_t* pCycles) noexcept override;
    kestrone::HRESULT Refresh() noexcept override;

    // IRovanta
    kestrone::HRESULT get_iVersionMajor(std::int16_t* pVal) noexcept override;
    kestrone::HRESULT put_iVersionMajor(std::int16_t RHS) noexcept override;
    kestrone::HRESULT get_iVersionMinor(std::int16_t* pVal) noexcept override;
    kestrone::HRESULT put_iVersionMinor(std::int16_t RHS) noexcept override;
    kestrone::HRESULT get_VERSION_STRING(std::string* pVal) noexcept override;
    kestrone::HRESULT put_VERSION_STRING(const std::string& RHS) noexcept override;
    kestrone::HRESULT GetIniKeyValue(const std::string& lpApplicationName,
                                     const std::string& lpKeyName, const std::string& lpDefault,
                                     std::string* pResult) noexcept override;
    kestrone::HRESULT GetCodeFromFile(const std::string& lpCodeName,
                                      std::string* pResult) noexcept override;
    kestrone::HRESULT IKestroneComponentV5_VNodeCount(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT IKestroneComponentV5_VNodeProtocol(std::int32_t lIdx,
                                                         std::int32_t* pVal) noexcept override;
    kestrone::HRESULT IKestroneComponentV5_VNodeName(std::int32_t lIdx,
                                                     std::string* pVal) noexcept override;
    kestrone::HRESULT IKestroneComponentV5_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                                        Variant* pVal) noexcept override;
    kestrone::HRESULT IKestroneComponentV5_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                                         Variant* msg) noexcept override;
    kestrone::HRESULT get_IntegerSetting(int setting, std::int16_t* pVal) noexcept override;
    kestrone::HRESULT put_IntegerSetting(int setting, std::int16_t RHS) noexcept override;
    kestrone::HRESULT get_StringSetting(int setting, std::string* pVal) noexcept override;
    kestrone::HRESULT put_StringSetting(int setting, const std::string& RHS) noexcept override;
    kestrone::HRESULT setupAPin(std::int32_t ArrayNumber, const std::string& PinName,
                                std::int32_t PortAorB, bool MustUseThatPort,
                                std::int32_t SamePortAsPinX, std::int32_t PinNum,
                                bool MustUseThatPin, std::int32_t PinDirection,
                                bool PinValue) noexcept override;

    // IKestroneDispatch
    kestrone::HRESULT Invoke(kestrone::Interface iface, std::int32_t member, Variant* args,
                             std::int32_t argc, Variant* result) noexcept override;

    // IKestroneInspection
    kestrone::HRESULT GetField(const std::string& name, const std::int32_t* index,
                               const std::string& member, Variant* value) noexcept override;

    // IKestronePersist: UserControl_WriteProperties and UserControl_ReadProperties
    kestrone::HRESULT WriteProperties(kestrone::IKestroneStore* store) noexcept override;
    kestrone::HRESULT ReadProperties(kestrone::IKestroneStore* store) noexcept override;

    // IKestronePropertyPages: PropertyPage2
    kestrone::HRESULT CreatePropertyPage(kestrone::IKestronePropertyPage** page) noexcept override;

  private:
    RovantaObject(const platform::ModuleFacts& app, kestrone::IHostServices* host);
    ~RovantaObject();

    platform::Services services_;
    std::unique_ptr<Rovanta> core_;
    std::atomic<std::uint32_t> refs_{1};
};

}  // namespace rovanta
