// App: the module's own facts — its folder and name, its version, its help file.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

struct ModuleFacts {
    std::string Path;     // folder of the module file, without a closing separator
    std::string EXEName;  // the module's file name without extension
    std::int16_t Major = 5;
    std::int16_t Minor = 0;
    std::int16_t Revision = 3;
    // Writable; until a help file is found it names the project's own.
    std::string HelpFile = "Rovanta.chm";

    // The facts of the module file at `module_path`.
    static ModuleFacts for_path(const std::string& module_path);
    // The facts of the module (or program) that holds this code, found through dladdr.
    static ModuleFacts of_loaded_module();
};

// The separator between a folder and a name in the component's paths.
inline constexpr char kPathSeparator = '/';

}  // namespace platform
