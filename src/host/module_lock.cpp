#include "host/module_lock.h"

namespace rovanta {

std::atomic<long>& module_lock_count() {
    static std::atomic<long> count{0};
    return count;
}

}  // namespace rovanta
