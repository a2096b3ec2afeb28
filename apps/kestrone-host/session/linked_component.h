// The component linked into the host instead of loaded from its module file: its class factory
// is found at link time. For a host without dynamic loading, and for workers that make many
// objects in one process. The module path still names where the component's files lie (its code
// file and help beside it), as the loaded module's own path would.
#pragma once

namespace host {

// From now on every ComponentModule::open gives the linked component, for whatever path.
void link_component_in();

}  // namespace host
