// Inspection: the component's fields by name, for the console and the tests.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IKestroneInspection{
    0x8C3F2D13, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x08}};

class IKestroneInspection : public IUnknown {
  public:
    // The field NAME, NAME(index) or NAME(index).member. DISP_E_UNKNOWNNAME for a field or member
    // the component does not have; the status of error 9 for an index outside the array.
    virtual HRESULT GetField(const std::string& name, const std::int32_t* index,
                             const std::string& member, Variant* value) noexcept = 0;

  protected:
    ~IKestroneInspection() = default;
};

}  // namespace kestrone
