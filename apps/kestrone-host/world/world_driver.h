// The world at work on the component: at each step of the clock the robot moves by the wheels'
// speeds while the component simulates. On a load or a reset every input the world owns is
// brought to its reading; after that an input is set only when the world's reading of it has
// changed since its last step, so that between changes a user's click or bar holds.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
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
    // Every input the world owns brought to its reading, whatever the panel holds.
    void sync();
    // Load and reset also bring the inputs to the new place at once.
    bool load_file(const std::string& path, std::string* error);
    bool load_text(std::string_view text, const std::string& name, std::string* error);
    void reset();
    // After the robot was put down by hand: the readings that changed with the place.
    void placed() { follow_readings(); }

    World& world() { return world_; }

  private:
    // The inputs the world owns: the four check boxes, then the four analogue sensors.
    static constexpr int kInputs = 8;
    // A reading as set on the panel: a box's 0 or 1, or a sensor's value at its full scale.
    struct Setting {
        std::int32_t value = 0;
        std::int32_t full_scale = 0;
        bool operator==(const Setting&) const = default;
    };
    // Sets every input whose reading differs from the one last set (all of them after a
    // forget()), where the panel holds another value.
    void follow_readings();
    void forget() { settled_.fill(std::nullopt); }
    // True once the panel holds the value, or holds what is nearest to it.
    bool set_check(CheckInput input, bool ticked);
    bool set_sensor(int sensor, std::int32_t target);

    World& world_;
    PanelPort& port_;
    // The world's reading of each input as it was last brought to the panel; none: to be set.
    std::array<std::optional<Setting>, kInputs> settled_{};
};

}  // namespace world
