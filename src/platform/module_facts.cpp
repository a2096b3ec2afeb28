#include "platform/module_facts.h"

#include <dlfcn.h>

namespace platform {

ModuleFacts ModuleFacts::for_path(const std::string& module_path) {
    ModuleFacts facts;
    const std::size_t slash = module_path.rfind(kPathSeparator);
    facts.Path = slash == std::string::npos ? "." : module_path.substr(0, slash);
    if (facts.Path.empty()) facts.Path = std::string(1, kPathSeparator);
    std::string name = slash == std::string::npos ? module_path : module_path.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos && dot != 0) name.erase(dot);
    facts.EXEName = name;
    return facts;
}

ModuleFacts ModuleFacts::of_loaded_module() {
    Dl_info info{};
    static const int anchor = 0;
    if (::dladdr(&anchor, &info) != 0 && info.dli_fname != nullptr && info.dli_fname[0] != '\0')
        return for_path(info.dli_fname);
    return for_path("KT5_Rovanta");
}

}  // namespace platform
