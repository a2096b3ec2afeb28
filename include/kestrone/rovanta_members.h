// The members of _Rovanta, the control's own interface, in the order of its vtable: the one list
// from which the interface, its type library entries and the calls by name are made. The
// notation is in operation_macros.h. A setting's property is SETTING(X, Kind, Name, Type), so
// that an implementation can give all settings one body; as an entry it reads
// X(Query, Name, (Out, Type, pVal)) or X(Set, Name, (In, Type, RHS)) (KT_SETTING_MEMBER).
#pragma once

#include "kestrone/operation_macros.h"

// clang-format off
#define KESTRONE_ROVANTA_MEMBERS(X, SETTING)                                                      \
    X(Query, iVersionMajor, (Out, Integer, pVal))                                                 \
    X(Set, iVersionMajor, (In, Integer, RHS))                                                     \
    X(Query, iVersionMinor, (Out, Integer, pVal))                                                 \
    X(Set, iVersionMinor, (In, Integer, RHS))                                                     \
    X(Query, VERSION_STRING, (Out, String, pVal))                                                 \
    X(Set, VERSION_STRING, (In, String, RHS))                                                     \
    X(Call, GetIniKeyValue, (In, String, lpApplicationName), (In, String, lpKeyName),             \
      (In, String, lpDefault), (Out, String, pResult))                                            \
    X(Call, GetCodeFromFile, (In, String, lpCodeName), (Out, String, pResult))                    \
    X(Query, IKestroneComponentV5_VNodeCount, (Out, Long, pVal))                                  \
    X(Query, IKestroneComponentV5_VNodeProtocol, (In, Long, lIdx), (Out, Long, pVal))             \
    X(Query, IKestroneComponentV5_VNodeName, (In, Long, lIdx), (Out, String, pVal))               \
    X(Query, IKestroneComponentV5_VNodeMsgRead, (In, Long, lIdx), (Ref, Long, lSize),             \
      (Out, Variant, pVal))                                                                       \
    X(Set, IKestroneComponentV5_VNodeMsgWrite, (In, Long, lIdx), (In, Long, lSize),               \
      (Ref, Variant, msg))                                                                        \
    SETTING(X, Query, bReturnInt, Integer)     SETTING(X, Set, bReturnInt, Integer)               \
    SETTING(X, Query, iThreshL, Integer)       SETTING(X, Set, iThreshL, Integer)                 \
    SETTING(X, Query, iThreshF, Integer)       SETTING(X, Set, iThreshF, Integer)                 \
    SETTING(X, Query, iThreshR, Integer)       SETTING(X, Set, iThreshR, Integer)                 \
    SETTING(X, Query, iThreshMic, Integer)     SETTING(X, Set, iThreshMic, Integer)               \
    SETTING(X, Query, iThreshLdr, Integer)     SETTING(X, Set, iThreshLdr, Integer)               \
    SETTING(X, Set, iMotorBias, Integer)       SETTING(X, Query, iMotorBias, Integer)             \
    SETTING(X, Query, bUseI2C, Integer)        SETTING(X, Set, bUseI2C, Integer)                  \
    SETTING(X, Query, bWaitForButton, Integer) SETTING(X, Set, bWaitForButton, Integer)           \
    SETTING(X, Query, bDummyBool1, Integer)    SETTING(X, Set, bDummyBool1, Integer)              \
    SETTING(X, Query, bDummyBool2, Integer)    SETTING(X, Set, bDummyBool2, Integer)              \
    SETTING(X, Query, iDummyInt1, Integer)     SETTING(X, Set, iDummyInt1, Integer)               \
    SETTING(X, Query, iDummyInt2, Integer)     SETTING(X, Set, iDummyInt2, Integer)               \
    SETTING(X, Query, sDummyString1, String)   SETTING(X, Set, sDummyString1, String)             \
    SETTING(X, Query, sDummyString2, String)   SETTING(X, Set, sDummyString2, String)             \
    X(Call, setupAPin, (In, Long, ArrayNumber), (In, String, PinName), (In, Long, PortAorB),      \
      (In, Boolean, MustUseThatPort), (In, Long, SamePortAsPinX), (In, Long, PinNum),             \
      (In, Boolean, MustUseThatPin), (In, Long, PinDirection), (In, Boolean, PinValue))
// clang-format on

// A setting's property as an ordinary entry.
#define KT_SETTING_MEMBER(X, kind, name, type) X(kind, name, KT_SETTING_PARAM_##kind(type))
#define KT_SETTING_PARAM_Query(type) (Out, type, pVal)
#define KT_SETTING_PARAM_Set(type) (In, type, RHS)
