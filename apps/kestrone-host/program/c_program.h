// The whole C program of a robot program, as a host builds it for the chip: the component's
// definitions, one function per macro the program calls, the interrupt routine, and main() with
// the component's initialisation followed by the program's flow.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kestrone/component_v5.h"
#include "program.h"

namespace kflow {

// What the component gives for a program, every text already passed through
// MacroCodeOverride, so that the settings of the moment stand in it.
struct ComponentCode {
    std::string description;
    std::string defines;
    std::string initialisation;
    std::string interrupts;
    std::map<std::int32_t, std::string> macro_bodies;  // by id, for the macros used
    std::vector<std::string> warnings;                 // blocks the component could not read
};

// nullopt with `error` set when the component fails a query.
std::optional<ComponentCode> read_component_code(kestrone::IKestroneComponentV5& component,
                                                 const Program& program, std::string* error);

struct TargetChip {
    std::string name = "PIC16F877A";
    unsigned long clock_hz = 20000000UL;  // the crystal the robot's board carries
};

// `label` names the program in the header comment (no date: the same input gives the same file).
std::string write_c_program(const Program& program, const ComponentCode& code,
                            const std::string& label, const TargetChip& chip = {});

}  // namespace kflow
