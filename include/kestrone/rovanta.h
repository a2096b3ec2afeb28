// The control's own public members (the default interface _Rovanta), in their order.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IRovanta{
    0x5B1E7A31, 0x2C4D, 0x4E8F, {0x9A, 0x61, 0x0D, 0x52, 0x7C, 0x13, 0xA4, 0x02}};

// _Rovanta. Each setting is a property; iMotorBias has its write before its read.
class IRovanta : public IUnknown {
  public:
    virtual HRESULT get_iVersionMajor(std::int16_t* pVal) noexcept = 0;
    virtual HRESULT put_iVersionMajor(std::int16_t RHS) noexcept = 0;
    virtual HRESULT get_iVersionMinor(std::int16_t* pVal) noexcept = 0;
    virtual HRESULT put_iVersionMinor(std::int16_t RHS) noexcept = 0;
    virtual HRESULT get_VERSION_STRING(std::string* pVal) noexcept = 0;
    virtual HRESULT put_VERSION_STRING(const std::string& RHS) noexcept = 0;
    virtual HRESULT GetIniKeyValue(const std::string& lpApplicationName,
                                   const std::string& lpKeyName, const std::string& lpDefault,
                                   std::string* pResult) noexcept = 0;
    virtual HRESULT GetCodeFromFile(const std::string& lpCodeName,
                                    std::string* pResult) noexcept = 0;
    virtual HRESULT IKestroneComponentV5_VNodeCount(std::int32_t* pVal) noexcept = 0;
    virtual HRESULT IKestroneComponentV5_VNodeProtocol(std::int32_t lIdx,
                                                       std::int32_t* pVal) noexcept = 0;
    virtual HRESULT IKestroneComponentV5_VNodeName(std::int32_t lIdx,
                                                   std::string* pVal) noexcept = 0;
    virtual HRESULT IKestroneComponentV5_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                                      Variant* pVal) noexcept = 0;
    virtual HRESULT IKestroneComponentV5_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                                       Variant* msg) noexcept = 0;
    // The fifteen settings. Integers are 16-bit; the two reserved strings are strings.
    virtual HRESULT get_IntegerSetting(int setting, std::int16_t* pVal) noexcept = 0;
    virtual HRESULT put_IntegerSetting(int setting, std::int16_t RHS) noexcept = 0;
    virtual HRESULT get_StringSetting(int setting, std::string* pVal) noexcept = 0;
    virtual HRESULT put_StringSetting(int setting, const std::string& RHS) noexcept = 0;
    virtual HRESULT setupAPin(std::int32_t ArrayNumber, const std::string& PinName,
                              std::int32_t PortAorB, bool MustUseThatPort,
                              std::int32_t SamePortAsPinX, std::int32_t PinNum, bool MustUseThatPin,
                              std::int32_t PinDirection, bool PinValue) noexcept = 0;

  protected:
    ~IRovanta() = default;
};

}  // namespace kestrone
