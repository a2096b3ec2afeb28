// The door of the running program: SimMacroCall tests the number against the macro table and the
// fixed range 4 to 20 and runs that macro's handler; the simulation's running flag.
#include <array>

#include "platform/vb_numeric.h"
#include "simulation/params.h"
#include "simulation/simulation.h"

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

using Handler = void (Simulation::*)(const Variant&, Variant&, Long&);

struct MacroHandler {
    Handler run;
    Result result;
};

constexpr Long kFirstMacro = 4, kLastMacro = 20;

// Macros 4 to 20, by number.
const std::array<MacroHandler, kLastMacro - kFirstMacro + 1> kHandlers{{
    {&Simulation::SimDriveForwards, Result::None},   // 4
    {&Simulation::SimDriveBackwards, Result::None},  // 5
    {&Simulation::SimDriveStop, Result::None},       // 6
    {&Simulation::SimSpinLeft, Result::None},        // 7
    {&Simulation::SimSpinRight, Result::None},       // 8
    {&Simulation::SimSetMotors, Result::None},       // 9
    {&Simulation::SimWriteLeds, Result::None},       // 10
    {&Simulation::SimLedOn, Result::None},           // 11
    {&Simulation::SimLedOff, Result::None},          // 12
    {&Simulation::SimReadSwitch, Result::Byte},      // 13
    {&Simulation::SimWaitSwitch, Result::Long},      // 14
    {&Simulation::SimPlayTone, Result::None},        // 15
    {&Simulation::SimReadMic, Result::Long},         // 16
    {&Simulation::SimReadLdr, Result::Long},         // 17
    {&Simulation::SimTestSideSensor, Result::Byte},  // 18
    {&Simulation::SimReadSideSensor, Result::Long},  // 19
    {&Simulation::SimReadLine, Result::Byte},        // 20
}};

}  // namespace

void Simulation::SimMacroCall(Long lMacroID, const Variant& vParams, Long& pRetVal,
                              Variant& pvAffected, Long&) {
    // Before the macro table exists its bounds can't be asked for: error 9.
    if (lMacroID > core_.macro_table.Macros.ubound() ||
        lMacroID < core_.macro_table.Macros.lbound())
        return;
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

void Simulation::SimMacroCall2(Long, const Variant&, Variant&, Variant&, Long&) {
    core_.MsgBox("Error in <SimMacroCall2>");
}

void Simulation::StartSimulation() {
    run_.bSimulating = true;
    run_.bSwitchLatch = false;
    Refresh();
}

void Simulation::StopSimulation() {
    run_.bSimulating = false;
    Refresh();
}

void Simulation::Refresh() {
    UserControl_Paint();
}

void Simulation::UserControl_Paint() {
    DrawLeds();
}

}  // namespace rovanta
