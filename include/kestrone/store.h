// The host's key/value store, in which a control keeps its settings with the user's project, and
// the interface through which the host runs the control's save and load against a store.
#pragma once

#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IKestroneStore{
    0x8C3F2D14, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x09}};

// Implemented by the host. Values keep their kind: what is written comes back as it was.
class IKestroneStore : public IUnknown {
  public:
    virtual HRESULT WriteProperty(const std::string& key, const Variant& value) noexcept = 0;
    // The stored value, or a copy of `default_value` when the key is absent.
    virtual HRESULT ReadProperty(const std::string& key, const Variant& default_value,
                                 Variant* value) noexcept = 0;

  protected:
    ~IKestroneStore() = default;
};

inline constexpr Guid IID_IKestronePersist{
    0x8C3F2D15, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x0A}};

// Offered by a control. Each call walks all of the control's keys in order and stops at the
// first failure, whose status it returns; what was read or written before it stands.
class IKestronePersist : public IUnknown {
  public:
    virtual HRESULT WriteProperties(IKestroneStore* store) noexcept = 0;
    virtual HRESULT ReadProperties(IKestroneStore* store) noexcept = 0;

  protected:
    ~IKestronePersist() = default;
};

}  // namespace kestrone
