// Calls by name: any member of either interface by its number in the type library, with its
// arguments as tagged values converted as the host's call would convert them.
#pragma once

#include <cstdint>

#include "kestrone/component_v5.h"
#include "kestrone/rovanta.h"
#include "kestrone/typelib.h"

namespace rovanta {

// Member `member` of kComponentV5Members or kRovantaMembers on `target`. DISP_E_UNKNOWNNAME for
// no such member, DISP_E_BADPARAMCOUNT for a wrong argc; a conversion that fails is its Basic
// error. By-reference arguments come back in `args`, the result (if any) in `result`.
kestrone::HRESULT invoke_member(kestrone::IKestroneComponentV5& target, std::int32_t member,
                                kestrone::Variant* args, std::int32_t argc,
                                kestrone::Variant* result) noexcept;
kestrone::HRESULT invoke_member(kestrone::IRovanta& target, std::int32_t member,
                                kestrone::Variant* args, std::int32_t argc,
                                kestrone::Variant* result) noexcept;

}  // namespace rovanta
