#include "object_recipe.h"

#include "kestrone/component_v5.h"
#include "kestrone/store.h"

namespace host {

using kestrone::HRESULT;

HRESULT ready_object(kestrone::IUnknown& object, const ObjectRecipe& recipe, std::string* why) {
    const auto fail = [why](HRESULT hr, const std::string& step) {
        if (why) *why = step;
        return hr;
    };
    const std::string settings =
        "the settings of " +
        (recipe.settings_from.empty() ? std::string("the project") : recipe.settings_from);
    kestrone::ComPtr<kestrone::IKestroneComponentV5> component;
    if (kestrone::failed(
            object.QueryInterface(kestrone::IID_IKestroneComponentV5, component.put())))
        return fail(kestrone::E_NOINTERFACE, "the host interface");
    if (recipe.settings) {
        kestrone::ComPtr<kestrone::IKestronePersist> persist;
        if (kestrone::failed(object.QueryInterface(kestrone::IID_IKestronePersist, persist.put())))
            return fail(kestrone::E_NOINTERFACE, settings);
        kestrone::MemoryStore store;
        store.assign(*recipe.settings);
        const HRESULT hr = persist->ReadProperties(&store);
        if (kestrone::failed(hr)) return fail(hr, settings);
    }
    if (!recipe.project_file.empty()) {
        const HRESULT hr = component->put_KtxFilename(recipe.project_file);
        if (kestrone::failed(hr)) return fail(hr, "the project's file name");
    }
    if (recipe.tell_version) {
        const HRESULT hr = component->put_KestroneVersion(kestrone::kHostVersion);
        if (kestrone::failed(hr)) return fail(hr, "the host's version");
    }
    if (recipe.clock_hz > 0) {
        const HRESULT hr = component->put_ClockSpeed(recipe.clock_hz);
        if (kestrone::failed(hr)) return fail(hr, "the chip's clock");
    }
    if (!recipe.controller.empty()) {
        const HRESULT hr = component->put_TargetController(recipe.controller);
        if (kestrone::failed(hr)) return fail(hr, "the target chip");
    }
    return kestrone::S_OK;
}

ReadyObject make_ready_object(const ComponentModule& module, kestrone::IHostServices& services,
                              const ObjectRecipe& recipe) {
    ReadyObject made;
    made.status = module.create(&services, made.object);
    if (kestrone::failed(made.status) || !made.object) {
        made.why = "the component object could not be made";
        made.object.reset();
        return made;
    }
    made.status = ready_object(*made.object.get(), recipe, &made.why);
    if (kestrone::failed(made.status)) {
        made.why = "the component could not take " + made.why;
        made.object.reset();
    }
    return made;
}

}  // namespace host
