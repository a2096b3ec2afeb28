// The 62 operations of IKestroneComponentV5 in the order of its vtable, with their parameters'
// names: the one list from which the interface, its type library entries and the calls by name
// are made. The notation is in operation_macros.h.
#pragma once

#include "kestrone/operation_macros.h"

// clang-format off
#define KESTRONE_COMPONENT_V5_OPERATIONS(X)                                                       \
    X(Query, MultipleAllowed, (Out, Long, pVal))                                                  \
    X(Query, MacroNames, (Out, Variant, pVal))                                                    \
    X(Query, MacroIsFunction, (In, Long, lMacroID), (Out, Long, pVal))                            \
    X(Query, MacroParameters, (In, Long, lMacroID), (Out, Variant, pVal))                         \
    X(Query, MacroCode, (In, Long, lMacroID), (Out, String, pVal))                                \
    X(Query, IsSimulating, (Out, Long, pVal))                                                     \
    X(Query, PinCount, (Out, Long, pVal))                                                         \
    X(Query, HasInitialisation, (Out, Long, pVal))                                                \
    X(Query, HasInterrupts, (Out, Long, pVal))                                                    \
    X(Query, HasExclusiveInts, (Out, Long, pVal))                                                 \
    X(Query, InitialisationCode, (Out, String, pVal))                                             \
    X(Query, InterruptCode, (Out, String, pVal))                                                  \
    X(Query, ExclusiveInterrupts, (Out, Variant, pVal))                                           \
    X(Query, PinName, (In, Long, PinID), (Out, String, pVal))                                     \
    X(Query, DesiredPort, (In, Long, PinID), (Out, Long, pVal))                                   \
    X(Query, Direction, (In, Long, PinID), (Out, Long, pVal))                                     \
    X(Query, PortMandatory, (In, Long, PinID), (Out, Long, pVal))                                 \
    X(Query, SamePortAsID, (In, Long, PinID), (Out, Long, pVal))                                  \
    X(Query, Description, (Out, String, pVal))                                                    \
    X(Query, DesiredBit, (In, Long, PinID), (Out, Long, pVal))                                    \
    X(Query, BitMandatory, (In, Long, PinID), (Out, Long, pVal))                                  \
    X(Query, Port, (In, Long, PinID), (Out, Long, pVal))                                          \
    X(Set, Port, (In, Long, PinID), (In, Long, RHS))                                              \
    X(Query, Bit, (In, Long, PinID), (Out, Long, pVal))                                           \
    X(Set, Bit, (In, Long, PinID), (In, Long, RHS))                                               \
    X(Query, ConnectedOK, (Out, Long, pVal))                                                      \
    X(Call, StartSimulation)                                                                      \
    X(Call, StopSimulation)                                                                       \
    X(Query, SimIODirection, (In, Long, PinID), (Out, Long, pVal))                                \
    X(Call, SimReadPins, (Ref, Variant, pVal))                                                    \
    X(Call, SimWritePins, (In, Variant, NewVal))                                                  \
    X(Call, SimMacroCall, (In, Long, lMacroID), (In, Variant, vParams), (Ref, Long, pRetVal),     \
      (Ref, Variant, pvAffected), (Ref, Long, pCycles))                                           \
    X(Call, KeyDown, (In, Long, lElementID))                                                      \
    X(Call, KeyUp, (In, Long, lElementID))                                                        \
    X(Query, SupportsKeys, (Out, Long, pVal))                                                     \
    X(Query, IsAnalogue, (Out, Long, pVal))                                                       \
    X(Query, MacroIsPrivate, (In, Long, lMacroID), (Out, Long, pVal))                             \
    X(Set, ClockSpeed, (In, Long, RHS))                                                           \
    X(Set, PICAnalogueBits, (In, Long, RHS))                                                      \
    X(Set, ADCCaptureCode, (In, String, RHS))                                                     \
    X(Set, ADCReadHighCode, (In, String, RHS))                                                    \
    X(Set, ADCReadLowCode, (In, String, RHS))                                                     \
    X(Set, TargetController, (In, String, RHS))                                                   \
    X(Set, ADCReadIntCode, (In, String, RHS))                                                     \
    X(Set, KestroneVersion, (In, Long, RHS))                                                      \
    X(Query, ComponentVersion, (Out, Long, pVal))                                                 \
    X(Call, GeneralMethod, (In, Long, lID), (Ref, Variant, pVal))                                 \
    X(Set, GeneralPut, (In, Long, lID), (Ref, Variant, RHS))                                      \
    X(Query, GeneralGet, (In, Long, lID), (Out, Variant, pVal))                                   \
    X(Set, KtxFilename, (In, String, RHS))                                                        \
    X(Query, VNodeCount, (Out, Long, pVal))                                                       \
    X(Query, VNodeProtocol, (In, Long, lIdx), (Out, Long, pVal))                                  \
    X(Query, VNodeName, (In, Long, lIdx), (Out, String, pVal))                                    \
    X(Query, VNodeMsgRead, (In, Long, lIdx), (Ref, Long, lSize), (Out, Variant, pVal))            \
    X(Set, VNodeMsgWrite, (In, Long, lIdx), (In, Long, lSize), (Ref, Variant, msg))               \
    X(Call, MacroCodeOverride, (Ref, String, pVal))                                               \
    X(Query, CodeFilename, (Out, String, pVal))                                                   \
    X(Query, DefinesCode, (Out, String, pVal))                                                    \
    X(Query, ReadCustomImages, (In, Long, lID), (Out, String, pVal))                              \
    X(Set, WriteCustomImages, (In, Long, lID), (In, String, RHS))                                 \
    X(Call, SimMacroCall2, (In, Long, lMacroID), (In, Variant, vParams), (Ref, Variant, pRetVal), \
      (Ref, Variant, pvAffected), (Ref, Long, pCycles))                                           \
    X(Call, Refresh)
// clang-format on
