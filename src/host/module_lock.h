// The module's live objects and class factory locks: while any remains, DllCanUnloadNow says no.
#pragma once

#include <atomic>

namespace rovanta {

std::atomic<long>& module_lock_count();

// The lifetime of every object the module hands out: deleted by its last Release, and a lock
// on the module while it lives.
struct ModuleObjectLifetime {
    static constexpr bool deletes = true;
    static void created() noexcept { ++module_lock_count(); }
    static void destroyed() noexcept { --module_lock_count(); }
};

}  // namespace rovanta
