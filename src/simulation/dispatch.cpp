// The door of the running program: SimMacroCall tests the number against the macro table and the
// fixed range 4 to 20 and runs that macro's handler; the simulation's running flag.
#include <array>

#include "core/rovanta.h"
#include "platform/vb_numeric.h"
#include "simulation/params.h"

namespace rovanta {

namespace sim {

const Variant& param(const Variant& vParams, std::int32_t k) {
    if (!vParams.is_array()) vb::raise_error(vb::kTypeMismatch);
    const kestrone::SafeArray& a = vParams.as_array();
    if (k < a.lower || k > a.upper()) vb::raise_error(vb::kSubscriptOutOfRange);
    return a.items[static_cast<std::size_t>(k - a.lower)];
}

Side side_of(const Variant& value, bool forward) {
    const double v = vb::to_double(value);
    if (v == 0 || v == 108 || v == 76) return Side::Left;
    if (forward && (v == 1 || v == 102 || v == 70)) return Side::Forward;
    return Side::Right;
}

}  // namespace sim

namespace {

enum class Result : std::uint8_t { None, Byte, Long };

using Handler = void (Rovanta::*)(const Variant&, Variant&, Long&);

struct MacroHandler {
    Handler run;
    Result result;
};

constexpr Long kFirstMacro = 4, kLastMacro = 20;

// Macros 4 to 20, by number.
const std::array<MacroHandler, kLastMacro - kFirstMacro + 1> kHandlers{{
    {&Rovanta::SimDriveForwards, Result::None},   // 4
    {&Rovanta::SimDriveBackwards, Result::None},  // 5
    {&Rovanta::SimDriveStop, Result::None},       // 6
    {&Rovanta::SimSpinLeft, Result::None},        // 7
    {&Rovanta::SimSpinRight, Result::None},       // 8
    {&Rovanta::SimSetMotors, Result::None},       // 9
    {&Rovanta::SimWriteLeds, Result::None},       // 10
    {&Rovanta::SimLedOn, Result::None},           // 11
    {&Rovanta::SimLedOff, Result::None},          // 12
    {&Rovanta::SimReadSwitch, Result::Byte},      // 13
    {&Rovanta::SimWaitSwitch, Result::Long},      // 14
    {&Rovanta::SimPlayTone, Result::None},        // 15
    {&Rovanta::SimReadMic, Result::Long},         // 16
    {&Rovanta::SimReadLdr, Result::Long},         // 17
    {&Rovanta::SimTestSideSensor, Result::Byte},  // 18
    {&Rovanta::SimReadSideSensor, Result::Long},  // 19
    {&Rovanta::SimReadLine, Result::Byte},        // 20
}};

}  // namespace

void Rovanta::SimMacroCall(Long lMacroID, const Variant& vParams, Long& pRetVal,
                           Variant& pvAffected, Long&) {
    // Before the macro table exists its bounds can't be asked for: error 9.
    if (lMacroID > Macros.ubound() || lMacroID < Macros.lbound()) return;
    if (lMacroID < kFirstMacro || lMacroID > kLastMacro) return;
    const MacroHandler& h = kHandlers[static_cast<std::size_t>(lMacroID - kFirstMacro)];
    Long slot = 0;
    (this->*h.run)(vParams, pvAffected, slot);
    // A handler that failed has left through its error: pRetVal stays as the caller gave it.
    if (h.result == Result::Byte)
        pRetVal = slot & 0xFF;
    else if (h.result == Result::Long)
        pRetVal = slot;
}

void Rovanta::SimMacroCall2(Long, const Variant&, Variant&, Variant&, Long&) {
    MsgBox("Error in <SimMacroCall2>");
}

void Rovanta::StartSimulation() {
    bSimulating = true;
    bSwitchLatch = false;
    Refresh();
}

void Rovanta::StopSimulation() {
    bSimulating = false;
    Refresh();
}

void Rovanta::Refresh() {
    UserControl_Paint();
}

void Rovanta::UserControl_Paint() {
    DrawLeds();
}

}  // namespace rovanta
