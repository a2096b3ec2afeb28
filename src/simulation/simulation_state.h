// The simulation's share of the object's state: the motors and their wheels, and the run. The
// object owns them; the simulation (simulation.h) keeps them.
#pragma once

#include <array>
#include <cstdint>

namespace rovanta {

// The two motors, 0 left and 1 right: their speeds, and the drawing of their wheels.
struct Motors {
    std::array<std::int16_t, 2> iWheelPhase{};
    std::array<std::int16_t, 2> iMotorSpeed{};
    std::array<std::int16_t, 2> iWheelTravel{};
    std::array<std::int16_t, 2> iWheelCentre{};
};

// Whether a simulation runs, and the press that the wait-for-switch macro has seen during it: a
// new run starts with no press seen.
struct RunState {
    bool bSimulating = false;
    bool bSwitchLatch = false;
};

}  // namespace rovanta
