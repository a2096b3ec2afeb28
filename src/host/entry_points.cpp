// The module's four entry points, the only symbols it exports.
#include <dlfcn.h>

#include <cstdlib>
#include <string>

#include "host/class_factory.h"
#include "host/module_lock.h"
#include "host/registration.h"

using kestrone::Guid;
using kestrone::HRESULT;

#define KESTRONE_EXPORT extern "C" __attribute__((visibility("default")))

KESTRONE_EXPORT HRESULT DllGetClassObject(const Guid* clsid, const Guid* iid, void** ppv) {
    try {
        return rovanta::get_class_object(platform::ModuleFacts::of_loaded_module(), clsid, iid,
                                         ppv);
    } catch (...) {
        return kestrone::E_FAIL;
    }
}

KESTRONE_EXPORT HRESULT DllCanUnloadNow() {
    return rovanta::module_lock_count() == 0 ? kestrone::S_OK : kestrone::S_FALSE;
}

namespace {
// The full path of this module file, links resolved; empty if it can't be found.
std::string this_module_path() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<void*>(&DllGetClassObject), &info) == 0 || !info.dli_fname)
        return {};
    char* real = ::realpath(info.dli_fname, nullptr);
    if (!real) return {};
    std::string path(real);
    std::free(real);
    return path;
}
}  // namespace

// The record of the class goes into the host's component folder; see host/registration.h.
KESTRONE_EXPORT HRESULT DllRegisterServer() {
    try {
        return rovanta::register_component(this_module_path());
    } catch (...) {
        return kestrone::SELFREG_E_CLASS;
    }
}

KESTRONE_EXPORT HRESULT DllUnregisterServer() {
    try {
        return rovanta::unregister_component(this_module_path());
    } catch (...) {
        return kestrone::SELFREG_E_CLASS;
    }
}
