// The notation of an operation list (component_v5_operations.h, rovanta_members.h) and the
// macros that turn one entry into a method's signature, its parameter names or its type library
// entry, so that each interface is written down once.
//
// An entry is X(Kind, Name, Param...): Kind is Query (a property read, method get_Name), Set (a
// property write, put_Name) or Call (a procedure, Name). A Param is (Dir, Type, name): Dir In
// (by value), Ref (by reference: the operation may write to it) or Out (the result, always
// last); Type Long, Integer, Boolean, String or Variant.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/status.h"
#include "kestrone/variant.h"

// ---- M(item) for each item, separated by commas (enough rescans for 27 items)
#define KT_PARENS ()
#define KT_EXPAND(...) KT_EXPAND3(KT_EXPAND3(KT_EXPAND3(__VA_ARGS__)))
#define KT_EXPAND3(...) KT_EXPAND2(KT_EXPAND2(KT_EXPAND2(__VA_ARGS__)))
#define KT_EXPAND2(...) KT_EXPAND1(KT_EXPAND1(KT_EXPAND1(__VA_ARGS__)))
#define KT_EXPAND1(...) __VA_ARGS__
#define KT_FOR_EACH(M, ...) __VA_OPT__(KT_EXPAND(KT_FOR_EACH_STEP(M, __VA_ARGS__)))
#define KT_FOR_EACH_STEP(M, first, ...) \
    M(first) __VA_OPT__(, KT_FOR_EACH_AGAIN KT_PARENS(M, __VA_ARGS__))
#define KT_FOR_EACH_AGAIN() KT_FOR_EACH_STEP

// ---- the C++ type of a parameter: by value as the host passes it, a pointer when written to
#define KT_CTYPE_In_Long std::int32_t
#define KT_CTYPE_In_Integer std::int16_t
#define KT_CTYPE_In_Boolean bool
#define KT_CTYPE_In_String const std::string&
#define KT_CTYPE_In_Variant const ::kestrone::Variant&
#define KT_CTYPE_Ref_Long std::int32_t*
#define KT_CTYPE_Ref_Integer std::int16_t*
#define KT_CTYPE_Ref_String std::string*
#define KT_CTYPE_Ref_Variant ::kestrone::Variant*
#define KT_CTYPE_Out_Long std::int32_t*
#define KT_CTYPE_Out_Integer std::int16_t*
#define KT_CTYPE_Out_String std::string*
#define KT_CTYPE_Out_Variant ::kestrone::Variant*

// ---- the same as an implementation takes it once the pointers are checked: a reference
#define KT_ITYPE_In_Long std::int32_t
#define KT_ITYPE_In_Integer std::int16_t
#define KT_ITYPE_In_Boolean bool
#define KT_ITYPE_In_String const std::string&
#define KT_ITYPE_In_Variant const ::kestrone::Variant&
#define KT_ITYPE_Ref_Long std::int32_t&
#define KT_ITYPE_Ref_Integer std::int16_t&
#define KT_ITYPE_Ref_String std::string&
#define KT_ITYPE_Ref_Variant ::kestrone::Variant&
#define KT_ITYPE_Out_Long std::int32_t&
#define KT_ITYPE_Out_Integer std::int16_t&
#define KT_ITYPE_Out_String std::string&
#define KT_ITYPE_Out_Variant ::kestrone::Variant&

#define KT_PARAM_DECL(p) KT_PARAM_DECL_ p
#define KT_PARAM_DECL_(dir, type, name) KT_CTYPE_##dir##_##type name
#define KT_IMPL_PARAM_DECL(p) KT_IMPL_PARAM_DECL_ p
#define KT_IMPL_PARAM_DECL_(dir, type, name) KT_ITYPE_##dir##_##type name
#define KT_PARAM_NAME(p) KT_PARAM_NAME_ p
#define KT_PARAM_NAME_(dir, type, name) name

// ---- the method of an entry, and the name of its implementation
#define KT_METHOD(kind, name) KT_METHOD_##kind(name)
#define KT_METHOD_Query(name) get_##name
#define KT_METHOD_Set(name) put_##name
#define KT_METHOD_Call(name) name
#define KT_IMPL(kind, name) KT_IMPL_##kind(name)
#define KT_IMPL_Query(name) query_##name
#define KT_IMPL_Set(name) set_##name
#define KT_IMPL_Call(name) call_##name

// The method's declaration, without `= 0` or `override`.
#define KT_SIGNATURE(kind, name, ...) \
    ::kestrone::HRESULT KT_METHOD(kind, name)(KT_FOR_EACH(KT_PARAM_DECL, __VA_ARGS__)) noexcept

// An interface's pure virtual method.
#define KT_PURE_METHOD(kind, name, ...) virtual KT_SIGNATURE(kind, name, __VA_ARGS__) = 0;

// The method's pointer in an interface I, for a list of them in vtable order.
#define KT_METHOD_POINTER(I, kind, name) &I::KT_METHOD(kind, name)

// The implementation's declaration: the pointers already checked, as references.
#define KT_IMPL_SIGNATURE(kind, name, ...) \
    void KT_IMPL(kind, name)(KT_FOR_EACH(KT_IMPL_PARAM_DECL, __VA_ARGS__))

// ---- the type library entry of an operation (see typelib.h)
#define KT_PARAM_INFO(p) KT_PARAM_INFO_ p
#define KT_PARAM_INFO_(dir, type, name)                                        \
    ::kestrone::typelib_detail::Declared {                                     \
        ::kestrone::typelib_detail::Dir::dir, ::kestrone::VarType::type, #name \
    }
#define KT_TYPELIB_ENTRY(kind, name, ...)                                   \
    ::kestrone::typelib_detail::member(#name, ::kestrone::InvokeKind::kind, \
                                       {KT_FOR_EACH(KT_PARAM_INFO, __VA_ARGS__)}),
