// The boundary rule: a failure inside becomes the status 0x800A0000 + its Basic error number.
#pragma once

#include <new>

#include "kestrone/status.h"
#include "platform/basic_error.h"

namespace rovanta {

template <class F>
kestrone::HRESULT guarded_call(F&& f) noexcept {
    try {
        f();
        return kestrone::S_OK;
    } catch (const vb::BasicError& e) {
        return kestrone::basic_error_status(e.number());
    } catch (const std::bad_alloc&) {
        return kestrone::basic_error_status(vb::kOutOfMemory);
    } catch (...) {
        return kestrone::basic_error_status(51);  // Internal error
    }
}

}  // namespace rovanta
