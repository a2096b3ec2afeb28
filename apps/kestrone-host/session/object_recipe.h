// One way to make and ready an object, for every face: what a host tells a new object before it
// uses it, in the order a host tells it. The settings of its project first (as a project loads),
// then the project's file name, the host's version (which builds the macro table), and the chip
// the C is for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "component_module.h"
#include "kestrone/com.h"
#include "kestrone/memory_store.h"
#include "kestrone/services.h"

namespace host {

struct ObjectRecipe {
    const std::vector<kestrone::MemoryStore::Entry>* settings = nullptr;  // read in; null: none
    std::string settings_from;  // where they come from, for a failure: a project file
    std::string project_file;   // KtxFilename; empty: not told
    bool tell_version = true;   // KestroneVersion, the host's
    std::int32_t clock_hz = 0;  // ClockSpeed; 0: not told
    std::string controller;     // TargetController; empty: not told
};

// Tells `object` what the recipe holds. The first step that fails ends it: its status, with
// `why` naming what it could not take ("the settings of FILE", "the host's version", ...).
kestrone::HRESULT ready_object(kestrone::IUnknown& object, const ObjectRecipe& recipe,
                               std::string* why = nullptr);

// An object made through the module and readied, for work that needs no session (`code`,
// `info`): empty `object` on failure, with `why` saying what failed.
struct ReadyObject {
    kestrone::ComPtr<kestrone::IUnknown> object;
    kestrone::HRESULT status = kestrone::S_OK;
    std::string why;
};
ReadyObject make_ready_object(const ComponentModule& module, kestrone::IHostServices& services,
                              const ObjectRecipe& recipe);

}  // namespace host
