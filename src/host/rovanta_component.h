// Rovanta: the component object. It owns the whole state of the robot, each subsystem's share in
// a struct of its own: the core's (core/rovanta_core.h), the sensors' and the simulation's. Each
// subsystem's operations live in its own folder; here stand the start-up, which puts their steps
// in order, and what the host reaches across them.
#pragma once

#include <string>

#include "core/rovanta_core.h"
#include "kestrone/store.h"
#include "sensors/sensor_bars.h"
#include "sensors/sensor_state.h"
#include "simulation/simulation.h"
#include "simulation/simulation_state.h"

namespace rovanta {

class Rovanta final : public RovantaCore {
  public:
    // Runs UserControl_Initialize, with its messages through `services`.
    Rovanta(platform::ModuleFacts app, const platform::Services& services);

    // --- start-up: the core's steps, then the sensors', then the simulation's
    void UserControl_Initialize();

    // --- settings: a write stores the value with no range test; bReturnInt alone acts at once,
    // it selects the sensors' full scale.
    void LetSetting(const SettingInfo& setting, const Variant& value);

    // --- host interface facts (host_operations.cpp)
    Variant GeneralGet(Long lID);
    void WriteCustomImages(Long lID, const std::string& RHS);
    Variant VNodeMsgRead(Long lIdx, Long& lSize) const;

    // --- pin negotiation and simulated port access (pin_negotiation.cpp). The guarded queries
    // answer 0 for an id outside Pins; DesiredPort alone fails with error 9.
    Long DesiredPort(Long PinID) const;
    Long Direction(Long PinID) const;
    Long PortMandatory(Long PinID) const;
    Long SamePortAsID(Long PinID) const;
    Long DesiredBit(Long PinID) const;
    Long BitMandatory(Long PinID) const;
    Long Port(Long PinID) const;
    void LetPort(Long PinID, Long RHS);
    Long Bit(Long PinID) const;
    void LetBit(Long PinID, Long RHS);
    Long ConnectedOK() const;
    Long SimIODirection(Long PinID) const { return Direction(PinID); }
    void SimReadPins(Variant& pVal);
    void SimWritePins(const Variant& NewVal);

    // --- stored settings (stored_settings.cpp): both walks go key by key and stop at the first
    // failure, raised as a Basic error or as StoreFailure for the store's own.
    void UserControl_WriteProperties(kestrone::IKestroneStore& PropBag);
    void UserControl_ReadProperties(kestrone::IKestroneStore& PropBag);

    // --- the state above the core
    SensorState sensors;
    Motors motors;
    RunState run;

    // --- the operations of those subsystems, over the object's state
    SensorBars bars{sensors, panel};
    Simulation simulation{*this, sensors, bars, motors, run};
};

}  // namespace rovanta
