// Calls by name: each member's thunk is made from its method's signature and its type library
// entry, which come from the same operation list; the compiler checks that the two agree.
#include "host/dispatch.h"

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

#include "host/guarded_call.h"
#include "host/rovanta_object.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::HRESULT;
using kestrone::MemberInfo;
using kestrone::Variant;
using kestrone::VarType;

namespace {

// A scalar of the boundary: its type in the type library and its conversions.
template <class T>
struct Scalar;
template <>
struct Scalar<std::int32_t> {
    static constexpr VarType type = VarType::Long;
    static std::int32_t from(const Variant& v) { return vb::to_long(v); }
    static Variant to(std::int32_t v) { return Variant::long_(v); }
};
template <>
struct Scalar<std::int16_t> {
    static constexpr VarType type = VarType::Integer;
    static std::int16_t from(const Variant& v) { return vb::to_integer(v); }
    static Variant to(std::int16_t v) { return Variant::integer(v); }
};
template <>
struct Scalar<bool> {
    static constexpr VarType type = VarType::Boolean;
    static bool from(const Variant& v) { return vb::to_boolean(v); }
    static Variant to(bool v) { return Variant::boolean(v); }
};
template <>
struct Scalar<std::string> {
    static constexpr VarType type = VarType::String;
    static std::string from(const Variant& v) { return vb::to_string(v); }
    static Variant to(std::string v) { return Variant::string(std::move(v)); }
};
template <>
struct Scalar<Variant> {
    static constexpr VarType type = VarType::Variant;
};

template <class P>
using ValueOf = std::remove_cvref_t<std::remove_pointer_t<P>>;

// An argument by value: converted before the call.
template <class P>
struct In {
    explicit In(Variant& arg) : value(Scalar<ValueOf<P>>::from(arg)) {}
    P get() { return value; }
    void finish() {}
    ValueOf<P> value;
};
template <>
struct In<const Variant&> {
    explicit In(Variant& arg) : slot(arg) {}
    const Variant& get() { return slot; }
    void finish() {}
    Variant& slot;
};
// An argument by reference: converted before the call, and back after it.
template <class P>
struct Ref {
    explicit Ref(Variant& arg) : slot(arg), value(Scalar<ValueOf<P>>::from(arg)) {}
    P get() { return &value; }
    void finish() { slot = Scalar<ValueOf<P>>::to(std::move(value)); }
    Variant& slot;
    ValueOf<P> value;
};
template <>
struct Ref<Variant*> {
    explicit Ref(Variant& arg) : slot(arg) {}
    Variant* get() { return &slot; }
    void finish() {}
    Variant& slot;
};
// The result: the method writes it, then it becomes a tagged value.
template <class P>
struct Out {
    explicit Out(Variant& result) : slot(result) {}
    P get() { return &value; }
    void finish() { slot = Scalar<ValueOf<P>>::to(std::move(value)); }
    Variant& slot;
    ValueOf<P> value{};
};
template <>
struct Out<Variant*> : Ref<Variant*> {
    using Ref::Ref;
};

template <auto Method, bool HasResult>
struct Thunk;

template <class I, class... P, HRESULT (I::*Method)(P...) noexcept, bool HasResult>
struct Thunk<Method, HasResult> {
    template <std::size_t J>
    static constexpr bool is_result = HasResult&& J + 1 == sizeof...(P);
    template <std::size_t J>
    using Param = std::tuple_element_t<J, std::tuple<P...>>;
    template <std::size_t J>
    using Adapter =
        std::conditional_t<!std::is_pointer_v<Param<J>>, In<Param<J>>,
                           std::conditional_t<is_result<J>, Out<Param<J>>, Ref<Param<J>>>>;

    static HRESULT call(I& target, Variant* a, Variant* r) {
        return call(target, a, r, std::index_sequence_for<P...>{});
    }
    // The arguments convert in their declared order; what comes back is written even when the
    // call fails, as the by-reference values stand as the call left them.
    template <std::size_t... J>
    static HRESULT call(I& target, [[maybe_unused]] Variant* a, [[maybe_unused]] Variant* r,
                        std::index_sequence<J...>) {
        std::tuple<Adapter<J>...> slots{Adapter<J>(is_result<J> ? *r : a[J])...};
        const HRESULT hr = (target.*Method)(std::get<J>(slots).get()...);
        (std::get<J>(slots).finish(), ...);
        return hr;
    }

    // The method's parameters are the entry's arguments in order, with the result last.
    static constexpr bool agrees(const MemberInfo& m) {
        constexpr std::size_t n = sizeof...(P);
        if (m.param_count + (HasResult ? 1u : 0u) != n) return false;
        const std::array<VarType, n> types{Scalar<ValueOf<P>>::type...};
        const std::array<bool, n> pointers{std::is_pointer_v<P>...};
        for (std::size_t j = 0; j < m.param_count; ++j)
            if (types[j] != m.params[j].type || pointers[j] != m.params[j].by_ref) return false;
        return !HasResult || (pointers[n - 1] && types[n - 1] == m.result);
    }
};

template <class I>
using ThunkFn = HRESULT (*)(I&, Variant*, Variant*);

template <class I, const auto& Methods, const auto& Members, std::size_t... K>
constexpr auto make_thunks(std::index_sequence<K...>) {
    static_assert(sizeof...(K) == Members.size());
    static_assert(
        (Thunk<std::get<K>(Methods), Members[K].result != VarType::Empty>::agrees(Members[K]) &&
         ...),
        "a method and its type library entry differ");
    return std::array<ThunkFn<I>, sizeof...(K)>{
        &Thunk<std::get<K>(Methods), Members[K].result != VarType::Empty>::call...};
}

template <class I, const auto& Methods, const auto& Members>
constexpr auto kThunks = make_thunks<I, Methods, Members>(
    std::make_index_sequence<std::tuple_size_v<std::remove_cvref_t<decltype(Methods)>>>{});

template <class I, const auto& Methods, const auto& Members>
HRESULT invoke(I& target, std::int32_t member, Variant* args, std::int32_t argc,
               Variant* result) noexcept {
    if (member < 0 || member >= static_cast<std::int32_t>(Members.size()))
        return kestrone::DISP_E_UNKNOWNNAME;
    const auto k = static_cast<std::size_t>(member);
    if (argc != Members[k].param_count || (argc > 0 && !args))
        return kestrone::DISP_E_BADPARAMCOUNT;
    Variant ignored;
    if (!result) result = &ignored;
    HRESULT status = kestrone::S_OK;
    const HRESULT hr =
        guarded_call([&] { status = kThunks<I, Methods, Members>[k](target, args, result); });
    return kestrone::failed(hr) ? hr : status;
}

}  // namespace

HRESULT invoke_member(kestrone::IKestroneComponentV5& target, std::int32_t member, Variant* args,
                      std::int32_t argc, Variant* result) noexcept {
    return invoke<kestrone::IKestroneComponentV5, kestrone::kComponentV5Methods,
                  kestrone::kComponentV5Members>(target, member, args, argc, result);
}

HRESULT invoke_member(kestrone::IRovanta& target, std::int32_t member, Variant* args,
                      std::int32_t argc, Variant* result) noexcept {
    return invoke<kestrone::IRovanta, kestrone::kRovantaMethods, kestrone::kRovantaMembers>(
        target, member, args, argc, result);
}

HRESULT RovantaObject::Invoke(kestrone::Interface iface, std::int32_t member, Variant* args,
                              std::int32_t argc, Variant* result) noexcept {
    if (iface == kestrone::Interface::ComponentV5)
        return invoke_member(static_cast<kestrone::IKestroneComponentV5&>(*this), member, args,
                             argc, result);
    return invoke_member(static_cast<kestrone::IRovanta&>(*this), member, args, argc, result);
}

}  // namespace rovanta
