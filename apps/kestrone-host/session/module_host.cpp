#include "module_host.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "module_file.h"

namespace host {

using kestrone::ComPtr;
using kestrone::HRESULT;

std::unique_ptr<ModuleHost> ModuleHost::load(const std::string& path, std::string& error) {
    if (path.empty()) {
        error = "no module file is named (the path is empty)";
        return nullptr;
    }
    // The loader checks little: a file cut short would be mapped past its end and fault later.
    const std::string wrong = check_module_file(path);
    if (!wrong.empty()) {
        error = "cannot load the module " + path + ": " + wrong;
        return nullptr;
    }
    // A name without a folder is a file here, not a library to look for on the search path.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    void* handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = ::dlerror();
        error = "cannot load the module " + path + ": " + (why ? why : "unknown reason");
        return nullptr;
    }
    std::unique_ptr<ModuleHost> m(new ModuleHost());
    m->path_ = path;
    m->handle_ = handle;
    m->get_class_object_ =
        reinterpret_cast<kestrone::DllGetClassObjectFn>(::dlsym(handle, "DllGetClassObject"));
    m->can_unload_ =
        reinterpret_cast<kestrone::DllCanUnloadNowFn>(::dlsym(handle, "DllCanUnloadNow"));
    m->register_ =
        reinterpret_cast<kestrone::DllRegisterServerFn>(::dlsym(handle, "DllRegisterServer"));
    m->unregister_ =
        reinterpret_cast<kestrone::DllUnregisterServerFn>(::dlsym(handle, "DllUnregisterServer"));
    if (!m->get_class_object_ || !m->can_unload_ || !m->register_ || !m->unregister_) {
        error = "the module " + path + " is no component: it lacks the entry points";
        return nullptr;
    }
    return m;
}

HRESULT ModuleHost::create(kestrone::IHostServices* services,
                           ComPtr<kestrone::IUnknown>& object) const {
    object.reset();
    ComPtr<kestrone::IClassFactory> factory;
    HRESULT hr =
        get_class_object_(&kestrone::CLSID_Rovanta, &kestrone::IID_IClassFactory, factory.put());
    if (kestrone::failed(hr)) return hr;
    if (services) {
        auto site = factory.query<kestrone::IServiceSite>(kestrone::IID_IServiceSite);
        if (site) site->SetHostServices(services);
    }
    return factory->CreateInstance(nullptr, kestrone::IID_IUnknown, object.put());
}

std::string ModuleHost::default_module_path() {
    char exe[PATH_MAX];
    const ssize_t n = ::readlink("/proc/self/exe", exe, sizeof exe - 1);
    std::string dir = ".";
    if (n > 0) {
        std::string self(exe, static_cast<std::size_t>(n));
        const std::size_t slash = self.rfind('/');
        if (slash != std::string::npos) dir = self.substr(0, slash);
    }
    const std::string path = dir + "/../" KESTRONE_COMPONENT_RELDIR "/KT5_Rovanta.so";
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

}  // namespace host
