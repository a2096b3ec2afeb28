// The core's share of the object's state, by subsystem: what the definition file gives, the pin
// and macro tables, what the host tells of its target, and the link to the code file and the host.
// The object owns one of each; the field names are the ones the inspection interface answers to.
#pragma once

#include <cstdint>
#include <string>

#include "core/kt_macro.h"
#include "core/kt_pin.h"
#include "core/vb_array.h"

namespace rovanta {

using Integer = std::int16_t;
using Long = std::int32_t;

// The code file's name, the versions on both sides, and what the host has yet to learn.
struct HostLink {
    Integer iVersionMajor = 0;
    Integer iVersionMinor = 0;
    std::string VERSION_STRING;
    bool bInitialised = false;  // LoadMacros has run at least once
    std::string sCodeFile;
    std::string sKtxFile;
    bool bPinsChanged = false;  // pin levels changed since the host last asked
};

// What the definition sections and the code blocks say of the robot as a whole.
struct Definition {
    bool bHasExclusiveInts = false;
    VbArray<Long> lExclusiveInterrupts;
    bool bMultipleAllowed = false;
    bool bIsAnalogue = false;
    std::string sDescription;
    Long lSupportsKeys = 0;
    std::string sInitialisationCode;
    std::string sInterruptCode;
};

// What the host tells of its target chip; only ever written.
struct TargetFacts {
    std::string TargetController;
    Long ClockSpeed = 0;
    std::string ADCCaptureCode;
    std::string ADCReadHighCode;
    std::string ADCReadLowCode;
    std::string ADCReadIntCode;
    Long PICAnalogueBits = 0;
};

struct PinTable {
    VbArray<KTPin> Pins;
    Long lPinCount = 0;
};

struct MacroTable {
    Long lMacroCount = 0;
    VbArray<KTMacro> Macros;
};

// A Boolean as the host receives it: True is -1.
inline Long host_boolean(bool b) {
    return b ? -1 : 0;
}

}  // namespace rovanta
