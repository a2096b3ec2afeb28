// The control's own public members (the default interface _Rovanta), in their order.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "kestrone/com.h"
#include "kestrone/rovanta_members.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IRovanta{
    0x5B1E7A31, 0x2C4D, 0x4E8F, {0x9A, 0x61, 0x0D, 0x52, 0x7C, 0x13, 0xA4, 0x02}};

// _Rovanta. Each setting is a property of its own: 16-bit Integers, the two reserved strings
// strings; iMotorBias has its write before its read.
class IRovanta : public IUnknown {
  public:
    KESTRONE_ROVANTA_MEMBERS(KT_PURE_METHOD, KT_SETTING_MEMBER)

  protected:
    ~IRovanta() = default;
};

// The methods in vtable order, beside the type library's kRovantaMembers.
#define KT_ROVANTA_POINTER(kind, name, ...) KT_METHOD_POINTER(IRovanta, kind, name),
inline constexpr std::tuple kRovantaMethods{
    KESTRONE_ROVANTA_MEMBERS(KT_ROVANTA_POINTER, KT_SETTING_MEMBER)};
#undef KT_ROVANTA_POINTER

}  // namespace kestrone
