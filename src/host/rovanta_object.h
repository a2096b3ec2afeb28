// The Rovanta object as the host reaches it: the host's interface, the control's own members,
// calls by name and inspection, over one core object. No exception leaves it: every failure
// becomes the status 0x800A0000 + its Basic error number, and a null result pointer E_POINTER.
#pragma once

#include <memory>
#include <string_view>

#include "host/boundary.h"
#include "host/module_lock.h"
#include "host/rovanta_component.h"
#include "kestrone/com_object.h"
#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/property_page.h"
#include "kestrone/rovanta.h"
#include "kestrone/store.h"
#include "kestrone/typelib.h"

namespace rovanta {

// A setting's two members share one body each, by the setting's name.
#define KT_SETTING_IMPL(X, kind, name, type) KT_SETTING_IMPL_##kind(name, type)
#define KT_SETTING_IMPL_Query(name, type)         \
    void query_##name(KT_ITYPE_Out_##type pVal) { \
        read_setting(#name, pVal);                \
    }
#define KT_SETTING_IMPL_Set(name, type)       \
    void set_##name(KT_ITYPE_In_##type RHS) { \
        write_setting(#name, RHS);            \
    }

using RovantaInterfaces = kestrone::Interfaces<
    kestrone::Implements<kestrone::IKestroneComponentV5, kestrone::IID_IKestroneComponentV5>,
    kestrone::Implements<kestrone::IRovanta, kestrone::IID_IRovanta>,
    kestrone::Implements<kestrone::IKestroneDispatch, kestrone::IID_IKestroneDispatch>,
    kestrone::Implements<kestrone::IKestroneInspection, kestrone::IID_IKestroneInspection>,
    kestrone::Implements<kestrone::IKestronePersist, kestrone::IID_IKestronePersist>,
    kestrone::Implements<kestrone::IKestronePropertyPages, kestrone::IID_IKestronePropertyPages>>;

class RovantaObject final
    : public kestrone::ComObject<RovantaObject, RovantaInterfaces, ModuleObjectLifetime> {
  public:
    // Creates the object; the messages of creation go to `host` (none: answered at once). A
    // failure of creation comes back as its status, with no object.
    static kestrone::HRESULT create(const platform::ModuleFacts& app, kestrone::IHostServices* host,
                                    RovantaObject** out) noexcept;

    Rovanta& core() { return *core_; }

    // The panel's interfaces, on a tear-off.
    kestrone::HRESULT query_other(const kestrone::Guid& iid, void** ppv) noexcept;

    // IKestroneComponentV5 and IRovanta: each method checks its pointers and calls its
    // implementation below.
    KESTRONE_COMPONENT_V5_OPERATIONS(KT_BOUNDARY_METHOD)
    KESTRONE_ROVANTA_MEMBERS(KT_BOUNDARY_METHOD, KT_SETTING_MEMBER)

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
    ~RovantaObject() override;

    // The operations behind the boundary (component_operations.cpp, rovanta_object.cpp).
    KESTRONE_COMPONENT_V5_OPERATIONS(KT_IMPL_DECLARATION)
    KESTRONE_ROVANTA_MEMBERS(KT_IMPL_DECLARATION, KT_SETTING_IMPL)

    // A setting by its name: error 438 for a name that is no setting.
    void read_setting(std::string_view name, std::int16_t& value);
    void read_setting(std::string_view name, std::string& value);
    void write_setting(std::string_view name, std::int16_t value);
    void write_setting(std::string_view name, const std::string& value);

    platform::Services services_;
    std::unique_ptr<Rovanta> core_;
};

#undef KT_SETTING_IMPL
#undef KT_SETTING_IMPL_Query
#undef KT_SETTING_IMPL_Set

}  // namespace rovanta
