// The chip's side of a log: the program's hex run in gpsim for a while with its inputs idle, and
// the pins it drove written as VCD with the names and module of the panel's log, so that one
// viewer shows both.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace kflow {

// A write to one of the registers that drive the robot's pins, at an instruction cycle.
struct RegisterWrite {
    std::int64_t cycle = 0;
    std::uint16_t address = 0;
    std::uint8_t value = 0;
    bool operator==(const RegisterWrite&) const = default;
};

// The writes to those registers in gpsim's log of register writes (`log w REG`), in order;
// writes to any other register (the status a write also changes) are left out.
std::vector<RegisterWrite> read_register_writes(std::istream& log);

// The pins as VCD, `cycles_per_us` instruction cycles a microsecond (the chip starts with every
// register 0); the moments written after the first.
std::size_t write_chip_vcd(std::span<const RegisterWrite> writes, std::int64_t cycles_per_us,
                           std::ostream& out);

// ${KESTRONE_GPSIM}, or gpsim on the PATH; empty when there is none.
std::string gpsim_path();

struct TraceResult {
    bool ok = false;
    std::string why;  // what failed, with what gpsim said
};

// Runs `cod` (beside the hex) in gpsim for `ms` milliseconds of a `clock_hz` crystal, switches
// open, line sensors off the line and analogue inputs at 0 V; writes `vcd` and a GTKWave view
// of it (the same name, .gtkw).
TraceResult trace_chip(const std::string& cod, std::int64_t ms, unsigned long clock_hz,
                       const std::string& vcd);

}  // namespace kflow
