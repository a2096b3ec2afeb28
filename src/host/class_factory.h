// The class factory of Rovanta objects. It also takes the host's services, before any object is
// made, so that even the messages of creation reach the host.
#pragma once

#include "host/module_lock.h"
#include "kestrone/com_object.h"
#include "kestrone/services.h"
#include "platform/module_facts.h"

namespace rovanta {

class RovantaClassFactory final
    : public kestrone::ComObject<
          RovantaClassFactory,
          kestrone::Interfaces<
              kestrone::Implements<kestrone::IClassFactory, kestrone::IID_IClassFactory>,
              kestrone::Implements<kestrone::IServiceSite, kestrone::IID_IServiceSite>>,
          ModuleObjectLifetime> {
  public:
    explicit RovantaClassFactory(platform::ModuleFacts app) : app_(std::move(app)) {}

    kestrone::HRESULT CreateInstance(kestrone::IUnknown* outer, const kestrone::Guid& iid,
                                     void** ppv) noexcept override;
    kestrone::HRESULT LockServer(bool lock) noexcept override;

    kestrone::HRESULT SetHostServices(kestrone::IHostServices* services) noexcept override;

  private:
    ~RovantaClassFactory() override = default;
    platform::ModuleFacts app_;
    kestrone::IHostServices* host_ = nullptr;
};

// DllGetClassObject for the module whose facts are `app`: the factory of CLSID_Rovanta, asked for
// `iid`. The module's entry point gives its own facts; a host that links the component in gives
// the facts of the module file it stands for.
kestrone::HRESULT get_class_object(const platform::ModuleFacts& app, const kestrone::Guid* clsid,
                                   const kestrone::Guid* iid, void** ppv) noexcept;

}  // namespace rovanta
