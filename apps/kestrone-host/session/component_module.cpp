#include "component_module.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "module_file.h"

namespace host {

using kestrone::ComPtr;
using kestrone::HRESULT;

namespace {

// A module file mapped into the program, kept open for the program's life.
class LoadedModule : public ComponentModule {
  public:
    LoadedModule(std::string path, void* handle) : ComponentModule(std::move(path)) {
        get_ =
            reinterpret_cast<kestrone::DllGetClassObjectFn>(::dlsym(handle, "DllGetClassObject"));
        can_unload_ =
            reinterpret_cast<kestrone::DllCanUnloadNowFn>(::dlsym(handle, "DllCanUnloadNow"));
        register_ =
            reinterpret_cast<kestrone::DllRegisterServerFn>(::dlsym(handle, "DllRegisterServer"));
        unregister_ = reinterpret_cast<kestrone::DllUnregisterServerFn>(
            ::dlsym(handle, "DllUnregisterServer"));
    }
    bool complete() const { return get_ && can_unload_ && register_ && unregister_; }

    HRESULT get_class_object(const kestrone::Guid& clsid, const kestrone::Guid& iid,
                             void** out) const override {
        return get_(&clsid, &iid, out);
    }
    HRESULT register_server() const override { return register_(); }
    HRESULT unregister_server() const override { return unregister_(); }
    HRESULT can_unload_now() const override { return can_unload_(); }

  private:
    kestrone::DllGetClassObjectFn get_ = nullptr;
    kestrone::DllCanUnloadNowFn can_unload_ = nullptr;
    kestrone::DllRegisterServerFn register_ = nullptr;
    kestrone::DllUnregisterServerFn unregister_ = nullptr;
};

std::unique_ptr<ComponentModule> load_file(const std::string& path, std::string& error) {
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
    auto module = std::make_unique<LoadedModule>(path, handle);
    if (!module->complete()) {
        error = "the module " + path + " is no component: it lacks the entry points";
        return nullptr;
    }
    return module;
}

ModuleLoader& loader() {
    static ModuleLoader installed;
    return installed;
}

}  // namespace

void install_module_loader(ModuleLoader l) {
    loader() = std::move(l);
}

std::unique_ptr<ComponentModule> ComponentModule::open(const std::string& path,
                                                       std::string& error) {
    return loader() ? loader()(path, error) : load_file(path, error);
}

HRESULT ComponentModule::create(kestrone::IHostServices* services,
                                ComPtr<kestrone::IUnknown>& object) const {
    object.reset();
    ComPtr<kestrone::IClassFactory> factory;
    HRESULT hr =
        get_class_object(kestrone::CLSID_Rovanta, kestrone::IID_IClassFactory, factory.put());
    if (kestrone::failed(hr)) return hr;
    if (services) {
        auto site = factory.query<kestrone::IServiceSite>(kestrone::IID_IServiceSite);
        if (site) site->SetHostServices(services);
    }
    return factory->CreateInstance(nullptr, kestrone::IID_IUnknown, object.put());
}

std::string ComponentModule::default_module_path() {
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
