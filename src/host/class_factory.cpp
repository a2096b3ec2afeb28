#include "host/class_factory.h"

#include "host/rovanta_object.h"

namespace rovanta {

using kestrone::HRESULT;

RovantaClassFactory::RovantaClassFactory(platform::ModuleFacts app) : app_(std::move(app)) {
    ++module_lock_count();
}

RovantaClassFactory::~RovantaClassFactory() {
    --module_lock_count();
}

HRESULT RovantaClassFactory::QueryInterface(const kestrone::Guid& iid, void** ppv) noexcept {
    if (!ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (iid == kestrone::IID_IUnknown || iid == kestrone::IID_IClassFactory)
        *ppv = static_cast<kestrone::IClassFactory*>(this);
    else if (iid == kestrone::IID_IServiceSite)
        *ppv = static_cast<kestrone::IServiceSite*>(this);
    else
        return kestrone::E_NOINTERFACE;
    AddRef();
    return kestrone::S_OK;
}

std::uint32_t RovantaClassFactory::AddRef() noexcept {
    return ++refs_;
}

std::uint32_t RovantaClassFactory::Release() noexcept {
    const std::uint32_t left = --refs_;
    if (left == 0) delete this;
    return left;
}

HRESULT RovantaClassFactory::CreateInstance(kestrone::IUnknown* outer, const kestrone::Guid& iid,
                                            void** ppv) noexcept {
    if (!ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (outer) return kestrone::CLASS_E_NOAGGREGATION;
    RovantaObject* object = nullptr;
    const HRESULT hr = RovantaObject::create(app_, host_, &object);
    if (kestrone::failed(hr)) return hr;
    const HRESULT qi = object->QueryInterface(iid, ppv);
    object->Release();
    return qi;
}

HRESULT RovantaClassFactory::LockServer(bool lock) noexcept {
    if (lock)
        ++module_lock_count();
    else
        --module_lock_count();
    return kestrone::S_OK;
}

HRESULT RovantaClassFactory::SetHostServices(kestrone::IHostServices* services) noexcept {
    host_ = services;
    return kestrone::S_OK;
}

}  // namespace rovanta
