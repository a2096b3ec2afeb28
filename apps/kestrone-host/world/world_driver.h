// The world at work on the component: at each step of the clock the robot moves by the wheels'
// speeds while the component simulates, and every input the world owns is set from the
// readings where the panel holds something else, as a user's clicks and arrows would set it.
#pragma once

#include <string>

#include "motion.h"
#include "panel_port.h"
#include "world.h"

namespace world {

class WorldDriver {
  public:
    WorldDriver(World& world, PanelPort& port) : world_(world), port_(port) {}

    // One step of the clock: nothing without an arena.
    void step();
    // Every input the world owns brought to its reading.
    void sync();
    // Load and reset also bring the inputs to the new place at once.
    bool load_file(const std::string& path, std::string* error);
    void reset();
    // After the robot was put down by hand.
    void placed() { sync(); }

    World& world() { return world_; }

  private:
    void set_check(CheckInput input, bool ticked);
    void set_sensor(int sensor, double fraction, std::int32_t full_scale);

    World& world_;
    PanelPort& port_;
};

}  // namespace world
