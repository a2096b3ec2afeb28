// IKestroneComponentV5: the host's interface to a component, its operations in their order.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IKestroneComponentV5{
    0x8C3F2D10, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x05}};

// get_ is a property read (query), put_ a property write (set), the rest are calls.
// Pointers are results or arguments passed by reference.
class IKestroneComponentV5 : public IUnknown {
  public:
    virtual HRESULT get_MultipleAllowed(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_MacroNames(Variant* pVal) noexcept = 0;
    virtual HRESULT get_MacroIsFunction(std::int32_t lMacroID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_MacroParameters(std::int32_t lMacroID, Variant* pVal) noexcept = 0;
    virtual HRESULT get_MacroCode(std::int32_t lMacroID, std::string* pVal) noexcept = 0;
    virtual HRESULT get_IsSimulating(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_PinCount(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_HasInitialisation(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_HasInterrupts(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_HasExclusiveInts(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_InitialisationCode(std::string* pVal) noexcept = 0;
    virtual HRESULT get_InterruptCode(std::string* pVal) noexcept = 0;
    virtual HRESULT get_ExclusiveInterrupts(Variant* pVal) noexcept = 0;
    virtual HRESULT get_PinName(std::int32_t PinID, std::string* pVal) noexcept = 0;
    virtual HRESULT get_DesiredPort(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_Direction(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_PortMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_SamePortAsID(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_Description(std::string* pVal) noexcept = 0;
    virtual HRESULT get_DesiredBit(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_BitMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_Port(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT put_Port(std::int32_t PinID, std::int32_t RHS) noexcept = 0;
    virtual HRESULT get_Bit(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT put_Bit(std::int32_t PinID, std::int32_t RHS) noexcept = 0;
    virtual HRESULT get_ConnectedOK(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT StartSimulation() noexcept = 0;
    virtual HRESULT StopSimulation() noexcept = 0;
    virtual HRESULT get_SimIODirection(std::int32_t PinID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT SimReadPins(Variant* pVal) noexcept = 0;
    virtual HRESULT SimWritePins(const Variant& NewVal) noexcept = 0;
    virtual HRESULT SimMacroCall(std::int32_t lMacroID, const Variant& vParams,
                                 std::int32_t* pRetVal, Variant* pvAffected,
                                 std::int32_t* pCycles) noexcept = 0;
    virtual HRESULT KeyDown(std::int32_t lElementID) noexcept = 0;
    virtual HRESULT KeyUp(std::int32_t lElementID) noexcept = 0;
    virtual HRESULT get_SupportsKeys(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_IsAnalogue(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_MacroIsPrivate(std::int32_t lMacroID, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT put_ClockSpeed(std::int32_t RHS) noexcept = 0;
    virtual HRESULT put_PICAnalogueBits(std::int32_t RHS) noexcept = 0;
    virtual HRESULT put_ADCCaptureCode(const std::string& RHS) noexcept = 0;
    virtual HRESULT put_ADCReadHighCode(const std::string& RHS) noexcept = 0;
    virtual HRESULT put_ADCReadLowCode(const std::string& RHS) noexcept = 0;
    virtual HRESULT put_TargetController(const std::string& RHS) noexcept = 0;
    virtual HRESULT put_ADCReadIntCode(const std::string& RHS) noexcept = 0;
    virtual HRESULT put_KestroneVersion(std::int32_t RHS) noexcept = 0;
    virtual HRESULT get_ComponentVersion(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT GeneralMethod(std::int32_t lID, Variant* pVal) noexcept = 0;
    virtual HRESULT put_GeneralPut(std::int32_t lID, Variant* RHS) noexcept = 0;
    virtual HRESULT get_GeneralGet(std::int32_t lID, Variant* pVal) noexcept = 0;
    virtual HRESULT put_KtxFilename(const std::string& RHS) noexcept = 0;
    virtual HRESULT get_VNodeCount(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_VNodeProtocol(std::int32_t lIdx, std::int32_t* pVal) noexcept = 0;
    virtual HRESULT get_VNodeName(std::int32_t lIdx, std::string* pVal) noexcept = 0;
    virtual HRESULT get_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                     Variant* pVal) noexcept = 0;
    virtual HRESULT put_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                      Variant* msg) noexcept = 0;
    virtual HRESULT MacroCodeOverride(std::string* pVal) noexcept = 0;
    virtual HRESULT get_CodeFilename(std::string* pVal) noexcept = 0;
    virtual HRESULT get_DefinesCode(std::string* pVal) noexcept = 0;
    virtual HRESULT get_ReadCustomImages(std::int32_t lID, std::string* pVal) noexcept = 0;
    virtual HRESULT put_WriteCustomImages(std::int32_t lID, const std::string& RHS) noexcept = 0;
    virtual HRESULT SimMacroCall2(std::int32_t lMacroID, const Variant& vParams, Variant* pRetVal,
                                  Variant* pvAffected, std::int32_t* pCycles) noexcept = 0;
    virtual HRESULT Refresh() noexcept = 0;

  protected:
    ~IKestroneComponentV5() = default;
};

}  // namespace kestrone
