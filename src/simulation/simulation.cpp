// The simulation stands on the object's parts, and brings its own steps to the start-up.
#include "simulation/simulation.h"

namespace rovanta {

Simulation::Simulation(RovantaCore& core, SensorState& sensors, SensorBars& bars, Motors& motors,
                       RunState& run)
    : core_(core), panel_(core.panel), sensors_(sensors), bars_(bars), motors_(motors), run_(run) {
    panel_.set_sink(this);
}

void Simulation::StartUp() {
    motors_.iWheelPhase = {0, 0};
    motors_.iMotorSpeed = {0, 0};
    InitWheel(0);
    InitWheel(1);
    UpdateDirection();
    run_.bSimulating = false;
}

}  // namespace rovanta
