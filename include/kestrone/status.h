// Status codes at the module boundary.
#pragma once

#include <cstdint>

namespace kestrone {

using HRESULT = std::int32_t;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110u);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111u);
inline constexpr HRESULT SELFREG_E_CLASS = static_cast<HRESULT>(0x80040201u);
// A member, field or element that the object does not have.
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006u);
// A call with the wrong number of arguments.
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000Eu);

inline constexpr bool failed(HRESULT hr) {
    return hr < 0;
}
inline constexpr bool succeeded(HRESULT hr) {
    return hr >= 0;
}

// A Basic run-time error becomes the status 0x800A0000 + its number.
inline constexpr HRESULT basic_error_status(int number) {
    return static_cast<HRESULT>(0x800A0000u + static_cast<std::uint32_t>(number & 0xFFFF));
}
// The Basic error number a status carries, or 0 if it carries none.
inline constexpr int basic_error_number(HRESULT hr) {
    return (static_cast<std::uint32_t>(hr) & 0xFFFF0000u) == 0x800A0000u
               ? static_cast<int>(static_cast<std::uint32_t>(hr) & 0xFFFFu)
               : 0;
}

}  // namespace kestrone
