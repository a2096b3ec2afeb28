// The module's four entry points, the only symbols it exports.
#include <new>

#include "host/class_factory.h"
#include "host/rovanta_object.h"

using kestrone::Guid;
using kestrone::HRESULT;

#define KESTRONE_EXPORT extern "C" __attribute__((visibility("default")))

KESTRONE_EXPORT HRESULT DllGetClassObject(const Guid* clsid, const Guid* iid, void** ppv) {
    if (!clsid || !iid || !ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (!(*clsid == kestrone::CLSID_Rovanta)) return kestrone::CLASS_E_CLASSNOTAVAILABLE;
    try {
        auto* factory = new rovanta::RovantaClassFactory(platform::ModuleFacts::of_loaded_module());
        const HRESULT hr = factory->QueryInterface(*iid, ppv);
        factory->Release();
        return hr;
    } catch (const std::bad_alloc&) {
        return kestrone::E_OUTOFMEMORY;
    } catch (...) {
        return kestrone::E_FAIL;
    }
}

KESTRONE_EXPORT HRESULT DllCanUnloadNow() {
    return rovanta::module_lock_count() == 0 ? kestrone::S_OK : kestrone::S_FALSE;
}

// Registration lands with the host's component folder; until then it is refused.
KESTRONE_EXPORT HRESULT DllRegisterServer() {
    return kestrone::E_NOTIMPL;
}

KESTRONE_EXPORT HRESULT DllUnregisterServer() {
    return kestrone::E_NOTIMPL;
}
