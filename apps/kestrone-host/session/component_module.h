// The component's module as the host reaches it: through its four entry points alone. One loader
// opens it for every face. By default the loader maps the module file (dlopen); a build that links
// the component in (a host without dynamic loading, or workers that share one process) installs
// a loader of its own (linked_component.h), and nothing else in the host knows the difference.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "kestrone/com.h"
#include "kestrone/services.h"

namespace host {

class ComponentModule {
  public:
    virtual ~ComponentModule() = default;
    ComponentModule(const ComponentModule&) = delete;
    ComponentModule& operator=(const ComponentModule&) = delete;

    // The module at `path` through the installed loader; nullptr with `error` when it can't be
    // opened or lacks the entry points.
    static std::unique_ptr<ComponentModule> open(const std::string& path, std::string& error);
    // The module file beside this program, where the build and the install put it.
    static std::string default_module_path();

    const std::string& path() const { return path_; }

    // A new Rovanta object through the class factory; the services receive the messages of its
    // creation. On failure `object` stays empty and the status says why.
    kestrone::HRESULT create(kestrone::IHostServices* services,
                             kestrone::ComPtr<kestrone::IUnknown>& object) const;

    virtual kestrone::HRESULT get_class_object(const kestrone::Guid& clsid,
                                               const kestrone::Guid& iid, void** out) const = 0;
    virtual kestrone::HRESULT register_server() const = 0;
    virtual kestrone::HRESULT unregister_server() const = 0;
    virtual kestrone::HRESULT can_unload_now() const = 0;

  protected:
    explicit ComponentModule(std::string path) : path_(std::move(path)) {}

  private:
    std::string path_;
};

// Opens a module at a path; nullptr with `error` set when it can't.
using ModuleLoader =
    std::function<std::unique_ptr<ComponentModule>(const std::string& path, std::string& error)>;
// Replaces the loader for the rest of the program; an empty one brings back the file loader.
void install_module_loader(ModuleLoader loader);

}  // namespace host
