// The type library: every member of the two interfaces with its kind, arguments and result, as
// data, so that a host can call any of them by name (IKestroneDispatch). Both lists are made
// from the same operation lists as the interfaces themselves.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "kestrone/com.h"
#include "kestrone/component_v5_operations.h"
#include "kestrone/rovanta_members.h"
#include "kestrone/variant.h"

namespace kestrone {

// Query reads a property, Set writes one (its last argument is the value written), Call runs a
// procedure.
enum class InvokeKind : std::uint8_t { Query, Set, Call };

// VarType::Variant marks a tagged-value argument or result; VarType::Empty a member without result.
struct ParamInfo {
    std::string_view name;
    VarType type;
    bool by_ref;
};

struct MemberInfo {
    std::string_view name;
    InvokeKind kind;
    VarType result;
    std::uint8_t param_count;
    std::array<ParamInfo, 9> params;
};

enum class Interface : std::uint8_t { ComponentV5, Rovanta };

namespace typelib_detail {
enum class Dir : std::uint8_t { In, Ref, Out };
struct Declared {
    Dir dir;
    VarType type;
    std::string_view name;
};
// An operation as declared: its Out parameter is the member's result, the others its arguments.
constexpr MemberInfo member(std::string_view name, InvokeKind kind,
                            std::initializer_list<Declared> declared) {
    MemberInfo m{name, kind, VarType::Empty, 0, {}};
    for (const Declared& d : declared) {
        if (d.dir == Dir::Out)
            m.result = d.type;
        else
            m.params[m.param_count++] = {d.name, d.type, d.dir == Dir::Ref};
    }
    return m;
}
}  // namespace typelib_detail

// IKestroneComponentV5, in the order of its vtable.
inline constexpr std::array kComponentV5Members{KESTRONE_COMPONENT_V5_OPERATIONS(KT_TYPELIB_ENTRY)};
static_assert(kComponentV5Members.size() == 62, "the host interface has 62 operations");

// _Rovanta, in the order of its vtable.
inline constexpr std::array kRovantaMembers{
    KESTRONE_ROVANTA_MEMBERS(KT_TYPELIB_ENTRY, KT_SETTING_MEMBER)};
static_assert(kRovantaMembers.size() == 44, "_Rovanta has 44 members");

// The number of the member `name` of that kind in `members`, or -1 if there is none.
template <std::size_t N>
constexpr std::int32_t member_number(const std::array<MemberInfo, N>& members,
                                     std::string_view name, InvokeKind kind) {
    for (std::size_t i = 0; i < N; ++i)
        if (members[i].name == name && members[i].kind == kind) return static_cast<std::int32_t>(i);
    return -1;
}

// Calls by name and number: `member` is an index into kComponentV5Members or kRovantaMembers.
inline constexpr Guid IID_IKestroneDispatch{
    0x8C3F2D11, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x06}};

class IKestroneDispatch : public IUnknown {
  public:
    // args holds the arguments in declared order, a write's value last; each is converted to its
    // parameter's type as a host's call would, and by-reference ones come back with their values
    // after the call. result receives the result, if the member has one.
    virtual HRESULT Invoke(Interface iface, std::int32_t member, Variant* args, std::int32_t argc,
                           Variant* result) noexcept = 0;

  protected:
    ~IKestroneDispatch() = default;
};

}  // namespace kestrone
