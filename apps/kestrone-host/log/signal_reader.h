// Reads the robot's signals from the stage: the component's fields by name, the panel's LEDs,
// check boxes and heading picture, and the world's pose. Each clock event reads only what it can
// change (a tick its wheel's phase, a world step the sensors and pose), and the panel only where
// its change counter says that elements changed, so that a log costs a run little.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "signals.h"
#include "stage.h"

namespace signal_log {

class SignalReader {
  public:
    explicit SignalReader(stage::Stage& stage);

    // Everything anew, the panel's elements found again by name: at the start, and after
    // anything a face did (which may have made a new object).
    void read_all(Values& values);
    // A tick: the wheels' phases, and the heading picture, which a tick redraws from the motors
    // (nothing else of the panel's that the log shows).
    void read_tick(Values& values);
    // The clock brought to a moment: the wheels (a held panel's kept ticks are raised only now)
    // and whatever of the panel changed.
    void read_wheels(Values& values);
    // A world step: the sensors it sets and the pose.
    void read_world(Values& values);
    // A program slice: the motors, wheels and sensors, and the pose.
    void read_program(Values& values);

  private:
    // An array field of the component, read whole (one read instead of one a member): its
    // members are the signals from `first` on.
    struct Field {
        std::string name;
        Signal first;
        std::size_t count;
    };
    enum FieldIndex : std::uint8_t { kPhases, kMotors, kSensors, kFieldCount };
    // What an element of the panel shows in the log.
    enum class Role : std::uint8_t { None, Led, Box, Heading };
    struct Element {
        Role role = Role::None;
        std::uint8_t arg = 0;  // the LED's bit, the box's signal, the heading picture's number
    };

    void read_field(Values& values, FieldIndex field);
    void read_pose(Values& values);
    void find_elements();
    void read_element(Values& values, std::int32_t id);
    void read_heading(Values& values);
    void check_heading(Values& values);
    void read_panel_changes(Values& values);

    stage::Stage& stage_;
    std::array<Field, kFieldCount> fields_;
    std::vector<Element> elements_;       // by element id
    std::vector<std::int32_t> headings_;  // the ids of the heading pictures, 0 to 12
    std::vector<std::int32_t> changed_;   // room for the ids the panel reports
    std::uint64_t revision_ = 0;          // the panel's counter when last read
    const void* panel_ = nullptr;         // the panel whose elements were found
};

}  // namespace signal_log
