#include "component_macros.h"

#include <ostream>

#include "c_program.h"
#include "component_module.h"
#include "kestrone/component_v5.h"
#include "object_recipe.h"

namespace kflow {

void ErrorStreamServices::ShowMessage(const std::string& text) noexcept {
    err_ << "kestrone-host: the component says: " << text << "\n";
}

std::optional<MacroTable> read_module_macros(const std::string& module_path, std::ostream& err) {
    std::string error;
    const auto module = host::ComponentModule::open(module_path, error);
    if (!module) {
        err << "kestrone-host: " << error << "\n";
        return std::nullopt;
    }
    ErrorStreamServices services(err);
    host::ObjectRecipe recipe;
    const TargetChip chip;
    recipe.clock_hz = static_cast<std::int32_t>(chip.clock_hz);
    recipe.controller = chip.name;
    const host::ReadyObject made = host::make_ready_object(*module, services, recipe);
    if (!made.object) {
        err << "kestrone-host: " << made.why << " (" << status_words(made.status) << ")\n";
        return std::nullopt;
    }
    const auto component =
        made.object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    auto macros = component ? MacroTable::read(*component.get(), &error) : std::nullopt;
    if (!macros)
        err << "kestrone-host: " << (component ? error : "the object is no component") << "\n";
    return macros;
}

}  // namespace kflow
