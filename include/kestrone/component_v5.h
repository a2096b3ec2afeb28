// IKestroneComponentV5: the host's interface to a component, its operations in their order.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "kestrone/com.h"
#include "kestrone/component_v5_operations.h"
#include "kestrone/variant.h"

namespace kestrone {

// The version of the host this interface belongs to, as a host tells it (KestroneVersion): 5.1.
inline constexpr std::int32_t kHostVersion = 0x501;

inline constexpr Guid IID_IKestroneComponentV5{
    0x8C3F2D10, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x05}};

// get_ is a property read (query), put_ a property write (set), the rest are calls. Pointers are
// results or arguments passed by reference; a null one is E_POINTER.
class IKestroneComponentV5 : public IUnknown {
  public:
    KESTRONE_COMPONENT_V5_OPERATIONS(KT_PURE_METHOD)

  protected:
    ~IKestroneComponentV5() = default;
};

// The methods in vtable order, beside the type library's kComponentV5Members.
#define KT_V5_POINTER(kind, name, ...) KT_METHOD_POINTER(IKestroneComponentV5, kind, name),
inline constexpr std::tuple kComponentV5Methods{KESTRONE_COMPONENT_V5_OPERATIONS(KT_V5_POINTER)};
#undef KT_V5_POINTER

}  // namespace kestrone
