// Loads a component module and reaches it only through its four entry points.
#pragma once

#include <memory>
#include <string>

#include "kestrone/com.h"
#include "kestrone/services.h"

namespace host {

class ModuleHost {
  public:
    // nullptr with `error` set when the file can't be loaded or lacks the entry points.
    static std::unique_ptr<ModuleHost> load(const std::string& path, std::string& error);

    const std::string& path() const { return path_; }

    // A new Rovanta object through the class factory; the services receive the messages of its
    // creation. On failure `object` stays empty and the status says why.
    kestrone::HRESULT create(kestrone::IHostServices* services,
                             kestrone::ComPtr<kestrone::IUnknown>& object) const;

    kestrone::HRESULT register_server() const { return register_(); }
    kestrone::HRESULT unregister_server() const { return unregister_(); }
    kestrone::HRESULT can_unload_now() const { return can_unload_(); }

    // The module file beside this program, where the build and the install put it.
    static std::string default_module_path();

  private:
    ModuleHost() = default;
    std::string path_;
    void* handle_ = nullptr;  // kept open for the program's life
    kestrone::DllGetClassObjectFn get_class_object_ = nullptr;
    kestrone::DllCanUnloadNowFn can_unload_ = nullptr;
    kestrone::DllRegisterServerFn register_ = nullptr;
    kestrone::DllUnregisterServerFn unregister_ = nullptr;
};

}  // namespace host
