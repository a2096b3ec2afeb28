// The built module, loaded once for a benchmark program.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "component_module.h"
#include "kestrone/component_v5.h"

namespace bench {

inline const host::ComponentModule& module() {
    static const std::unique_ptr<host::ComponentModule> m = [] {
        std::string error;
        auto loaded = host::ComponentModule::open(KESTRONE_MODULE, error);
        if (!loaded) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::abort();
        }
        return loaded;
    }();
    return *m;
}

// A new object whose host has told its version, so that its macro table stands.
inline kestrone::ComPtr<kestrone::IUnknown> ready_object() {
    kestrone::ComPtr<kestrone::IUnknown> object;
    module().create(nullptr, object);
    object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5)
        ->put_KestroneVersion(kestrone::kHostVersion);
    return object;
}

}  // namespace bench
