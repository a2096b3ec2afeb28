// Self-registration: a small record in the host's component folder tells the host where the
// module of a class lives, as a registry entry would.
#pragma once

#include <string>

#include "kestrone/status.h"

namespace rovanta {

// The folder in which the host looks for component records: $XDG_DATA_HOME/kestrone/components,
// or ~/.local/share/kestrone/components when XDG_DATA_HOME is unset or not an absolute path.
// Empty when neither that nor a home folder can be found.
std::string component_registry_folder();

// The record of the Rovanta class served by the module at `module_path`, as JSON text.
std::string registration_record(const std::string& module_path);

// Writes the record (replacing any earlier one of the class) or removes it. Neither throws:
// a failure comes back as SELFREG_E_CLASS. Removing a record that names another module
// leaves it alone and gives S_FALSE, as does removing one that is not there.
kestrone::HRESULT register_component(const std::string& module_path) noexcept;
kestrone::HRESULT unregister_component(const std::string& module_path) noexcept;

// The file of the record of the class in `folder`.
std::string registration_file(const std::string& folder);

}  // namespace rovanta
