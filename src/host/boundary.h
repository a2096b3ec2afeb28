// The boundary of every operation the module hands out: a null pointer among the results and
// by-reference arguments is E_POINTER before anything runs; then the operation runs with
// references in the pointers' place, and a failure inside becomes its status.
#pragma once

#include <type_traits>
#include <utility>

#include "host/guarded_call.h"
#include "kestrone/operation_macros.h"

namespace rovanta {

namespace boundary_detail {
template <class A>
constexpr bool is_pointer_v = std::is_pointer_v<std::remove_cvref_t<A>>;

template <class A>
bool missing(const A& a) {
    if constexpr (is_pointer_v<A>)
        return a == nullptr;
    else
        return false;
}

template <class A>
decltype(auto) checked(A&& a) {
    if constexpr (is_pointer_v<A>)
        return *a;
    else
        return std::forward<A>(a);
}
}  // namespace boundary_detail

template <class Object, class... P, class... A>
kestrone::HRESULT at_boundary(Object& object, void (Object::*op)(P...), A&&... args) noexcept {
    if ((boundary_detail::missing(args) || ...)) return kestrone::E_POINTER;
    return guarded_call([&] { (object.*op)(boundary_detail::checked(std::forward<A>(args))...); });
}

}  // namespace rovanta

// An operation list's override that checks the pointers and calls the implementation
// KT_IMPL(kind, name), which takes references (KT_IMPL_SIGNATURE).
#define KT_BOUNDARY_METHOD(kind, name, ...)                                       \
    KT_SIGNATURE(kind, name, __VA_ARGS__) override {                              \
        return ::rovanta::at_boundary(                                            \
            *this, &std::remove_reference_t<decltype(*this)>::KT_IMPL(kind, name) \
                       __VA_OPT__(, KT_FOR_EACH(KT_PARAM_NAME, __VA_ARGS__)));    \
    }
// The implementation's declaration, for a class body.
#define KT_IMPL_DECLARATION(kind, name, ...) KT_IMPL_SIGNATURE(kind, name, __VA_ARGS__);
