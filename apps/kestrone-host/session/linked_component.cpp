#include "linked_component.h"

#include "component_module.h"
#include "host/class_factory.h"
#include "host/module_lock.h"
#include "host/registration.h"

namespace host {

namespace {

class LinkedModule : public ComponentModule {
  public:
    explicit LinkedModule(const std::string& path)
        : ComponentModule(path), facts_(platform::ModuleFacts::for_path(path)) {}

    kestrone::HRESULT get_class_object(const kestrone::Guid& clsid, const kestrone::Guid& iid,
                                       void** out) const override {
        return rovanta::get_class_object(facts_, &clsid, &iid, out);
    }
    kestrone::HRESULT register_server() const override {
        return rovanta::register_component(path());
    }
    kestrone::HRESULT unregister_server() const override {
        return rovanta::unregister_component(path());
    }
    kestrone::HRESULT can_unload_now() const override {
        return rovanta::module_lock_count() == 0 ? kestrone::S_OK : kestrone::S_FALSE;
    }

  private:
    platform::ModuleFacts facts_;
};

}  // namespace

void link_component_in() {
    install_module_loader([](const std::string& path, std::string& error) {
        if (path.empty()) {
            error = "no module file is named (the path is empty)";
            return std::unique_ptr<ComponentModule>();
        }
        return std::unique_ptr<ComponentModule>(std::make_unique<LinkedModule>(path));
    });
}

}  // namespace host
