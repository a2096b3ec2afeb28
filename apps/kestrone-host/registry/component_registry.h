// The components registered with the host: the records that the modules' DllRegisterServer
// leaves in the host's component folder.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host {

struct ComponentRecord {
    std::string file;  // the record itself
    std::string name, class_id, module, version;
};

// $XDG_DATA_HOME/kestrone/components, or ~/.local/share/kestrone/components.
std::string component_folder();

// Why no record can be written into `folder`: the first part of its path that is no folder or
// can't be made or written, with the reason. Empty when nothing stands in the way.
std::string folder_problem(const std::string& folder);

// Every readable record in the folder, by name; `problems` gets one line per record that
// can't be read.
std::vector<ComponentRecord> list_components(std::vector<std::string>* problems = nullptr);

// The record of that name, or nullopt with `error` saying why.
std::optional<ComponentRecord> find_component(const std::string& name, std::string* error);

}  // namespace host
