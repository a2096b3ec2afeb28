// The built module, loaded once for a benchmark program.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "module_host.h"

namespace bench {

inline const host::ModuleHost& module() {
    static const std::unique_ptr<host::ModuleHost> m = [] {
        std::string error;
        auto loaded = host::ModuleHost::load(KESTRONE_MODULE, error);
        if (!loaded) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::abort();
        }
        return loaded;
    }();
    return *m;
}

}  // namespace bench
