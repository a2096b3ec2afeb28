#include "host/class_factory.h"

#include <new>

#include "host/rovanta_object.h"

namespace rovanta {

using kestrone::HRESULT;

HRESULT RovantaClassFactory::CreateInstance(kestrone::IUnknown* outer, const kestrone::Guid& iid,
                                            void** ppv) noexcept {
    if (!ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (outer) return kestrone::CLASS_E_NOAGGREGATION;
    RovantaObject* object = nullptr;
    const HRESULT hr = RovantaObject::create(app_, host_, &object);
    if (kestrone::failed(hr)) return hr;
    return kestrone::hand_out(object, iid, ppv);
}

HRESULT RovantaClassFactory::LockServer(bool lock) noexcept {
    if (lock)
        ModuleObjectLifetime::created();
    else
        ModuleObjectLifetime::destroyed();
    return kestrone::S_OK;
}

HRESULT RovantaClassFactory::SetHostServices(kestrone::IHostServices* services) noexcept {
    host_ = services;
    return kestrone::S_OK;
}

HRESULT get_class_object(const platform::ModuleFacts& app, const kestrone::Guid* clsid,
                         const kestrone::Guid* iid, void** ppv) noexcept {
    if (!clsid || !iid || !ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (!(*clsid == kestrone::CLSID_Rovanta)) return kestrone::CLASS_E_CLASSNOTAVAILABLE;
    try {
        return kestrone::hand_out(new RovantaClassFactory(app), *iid, ppv);
    } catch (const std::bad_alloc&) {
        return kestrone::E_OUTOFMEMORY;
    } catch (...) {
        return kestrone::E_FAIL;
    }
}

}  // namespace rovanta
