// The robot simulation: the running program's macros by number, the drive and its wheels, the
// heading, the LEDs and digital inputs, and the panel's events to their handlers. Works on the
// object's core, its sensors and its own state; the object (host/rovanta.h) owns all of them.
#pragma once

#include <string_view>
#include <vector>

#include "core/rovanta_core.h"
#include "sensors/sensor_bars.h"
#include "sensors/sensor_state.h"
#include "simulation/simulation_state.h"

namespace rovanta {

class Simulation : private panel::PanelEvents {
  public:
    // Becomes the sink of the core's panel: what its elements raise comes here.
    Simulation(RovantaCore& core, SensorState& sensors, SensorBars& bars, Motors& motors,
               RunState& run);
    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;

    // The simulation's steps of the start-up: both motors still, the wheels drawn, no run.
    void StartUp();

    // --- the door of the running program (dispatch.cpp). Handlers get the caller's vParams as
    // a const view, which serves as their private copy: they can't change it.
    void SimMacroCall(Long lMacroID, const Variant& vParams, Long& pRetVal, Variant& pvAffected,
                      Long& pCycles);
    void SimMacroCall2(Long lMacroID, const Variant& vParams, Variant& pRetVal, Variant& pvAffected,
                       Long& pCycles);
    Long IsSimulating() const { return run_.bSimulating ? -1 : 0; }
    void StartSimulation();
    void StopSimulation();
    void Refresh();
    void UserControl_Paint();

    // the handlers of macros 4 to 20; `slot` is the result of those that give one
    void SimDriveForwards(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimDriveBackwards(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimDriveStop(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSpinLeft(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSpinRight(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSetMotors(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimWriteLeds(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimLedOn(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimLedOff(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadSwitch(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimWaitSwitch(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimPlayTone(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadMic(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadLdr(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimTestSideSensor(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadSideSensor(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadLine(const Variant& vParams, Variant& pvAffected, Long& slot);

    // --- wheels, heading, LEDs, inputs
    void InitWheel(Integer Index);
    void DrawWheel(Integer Index, Integer Phase);
    void Timer1_Timer(Integer Index);
    void UpdateDirection();
    void DrawLeds();
    void chkSwitchLeft_Click();
    void chkSwitchRight_Click();
    void chkLineLeft_Click();
    void chkLineRight_Click();

    // --- the panel's own events, and any handler raised by name (panel_events.cpp)
    void UserControl_Resize();
    enum class EventLookup { Found, Unknown, BadCount };
    // Runs the handler NAME with `args`, converted as the event passes them.
    EventLookup RaiseEvent(std::string_view handler, std::vector<Variant>& args);
    // The container sites the panel: its first sizing.
    void SitePanel();

  private:
    // What the panel's elements raise, to their handlers (panel_events.cpp).
    void panel_event(const panel::Element* element, panel::Event event,
                     const panel::MouseArgs* mouse) override;
    void set_led(const Variant& vParams, Variant& pvAffected, bool on);
    void box_clicked(int box, Long pin);

    RovantaCore& core_;
    panel::Panel& panel_;
    const SensorState& sensors_;
    SensorBars& bars_;
    Motors& motors_;
    RunState& run_;
};

}  // namespace rovanta
