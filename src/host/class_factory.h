// The class factory of Rovanta objects. It also takes the host's services, before any object is
// made, so that even the messages of creation reach the host.
#pragma once

#include <atomic>

#include "kestrone/com.h"
#include "kestrone/services.h"
#include "platform/module_facts.h"

namespace rovanta {

class RovantaClassFactory final : public kestrone::IClassFactory, public kestrone::IServiceSite {
  public:
    explicit RovantaClassFactory(platform::ModuleFacts app);

    kestrone::HRESULT QueryInterface(const kestrone::Guid& iid, void** ppv) noexcept override;
    std::uint32_t AddRef() noexcept override;
    std::uint32_t Release() noexcept override;

    kestrone::HRESULT CreateInstance(kestrone::IUnknown* outer, const kestrone::Guid& iid,
                                     void** ppv) noexcept override;
    kestrone::HRESULT LockServer(bool lock) noexcept override;

    kestrone::HRESULT SetHostServices(kestrone::IHostServices* services) noexcept override;

  private:
    ~RovantaClassFactory();
    platform::ModuleFacts app_;
    kestrone::IHostServices* host_ = nullptr;
    std::atomic<std::uint32_t> refs_{1};
};

}  // namespace rovanta
