#include "chip_trace.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <istream>
#include <sstream>

#include "gtkw_view.h"
#include "pic_compiler.h"
#include "pins.h"
#include "vcd_writer.h"

namespace kflow {

namespace {

// The registers logged, by their bank-0 address, and where each goes.
struct Logged {
    const char* name;
    std::uint16_t address;
    std::uint8_t signal_log::ChipRegisters::*field;
};
constexpr std::array<Logged, 7> kLogged{{
    {"portb", 0x06, &signal_log::ChipRegisters::portb},
    {"portc", 0x07, &signal_log::ChipRegisters::portc},
    {"portd", 0x08, &signal_log::ChipRegisters::portd},
    {"ccpr1l", 0x15, &signal_log::ChipRegisters::ccpr1l},
    {"ccp1con", 0x17, &signal_log::ChipRegisters::ccp1con},
    {"ccpr2l", 0x1B, &signal_log::ChipRegisters::ccpr2l},
    {"ccp2con", 0x1D, &signal_log::ChipRegisters::ccp2con},
}};

const Logged* logged_at(std::uint16_t address) {
    for (const Logged& l : kLogged)
        if (l.address == address) return &l;
    return nullptr;
}

// The inputs held idle, as 0 V sources: RB0 to RB3 (switches open, line sensors off the
// line) and the five analogue inputs.
constexpr std::array<const char*, 9> kIdleInputs{"portb0", "portb1", "portb2", "portb3", "porta0",
                                                 "porta1", "porta2", "porta3", "porta5"};

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string without_extension(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    return dot != std::string::npos && (slash == std::string::npos || dot > slash)
               ? path.substr(0, dot)
               : path;
}

std::string script_for(const std::string& cod, const std::string& log, std::int64_t cycles) {
    std::ostringstream s;
    s << "load s " << cod << "\nmodule library libgpsim_modules\n";
    for (const char* pin : kIdleInputs)
        s << "module load pullup idle_" << pin << "\nidle_" << pin << ".voltage = 0\nidle_" << pin
          << ".resistance = 100\nnode n_" << pin << "\nattach n_" << pin << ' ' << pin << " idle_"
          << pin << ".pin\n";
    s << "log on " << log << '\n';
    for (const Logged& l : kLogged)
        s << "log w " << l.name << '\n';
    s << "break c " << cycles << "\nrun\nlog off\nquit\n";
    return s.str();
}

}  // namespace

std::vector<RegisterWrite> read_register_writes(std::istream& log) {
    std::vector<RegisterWrite> writes;
    std::int64_t cycle = 0;
    for (std::string line; std::getline(log, line);) {
        // An instruction: "0x<cycle> <chip> <address> <opcode> <text>".
        if (line.rfind("0x", 0) == 0) {
            cycle = std::strtoll(line.c_str() + 2, nullptr, 16);
            continue;
        }
        // "  Wrote: 0x<value> to <name>(0x<address>) was 0x<old>".
        const std::size_t wrote = line.find("Wrote: 0x");
        const std::size_t at = line.find("(0x", wrote);
        if (wrote == std::string::npos || at == std::string::npos) continue;
        const auto address =
            static_cast<std::uint16_t>(std::strtoul(line.c_str() + at + 3, nullptr, 16));
        if (!logged_at(address)) continue;
        const auto value =
            static_cast<std::uint8_t>(std::strtoul(line.c_str() + wrote + 9, nullptr, 16));
        writes.push_back({cycle, address, value});
    }
    return writes;
}

std::size_t write_chip_vcd(std::span<const RegisterWrite> writes, std::int64_t cycles_per_us,
                           std::ostream& out) {
    std::vector<signal_log::VcdVariable> variables;
    for (const signal_log::PinInfo& p : signal_log::pins())
        variables.push_back({p.name, p.width});
    signal_log::VcdWriter vcd(out, "the robot's chip's pins, run in gpsim by kestrone-host",
                              signal_log::kPinScope, variables);
    signal_log::ChipRegisters chip;
    std::vector<std::int64_t> values(variables.size());
    const auto moment = [&](std::int64_t us) {
        // RB0 to RB3 are inputs, held idle at 0 V whatever their latches hold.
        signal_log::ChipRegisters pins = chip;
        pins.portb &= 0xF0;
        const signal_log::PinValues p = signal_log::pins_of(pins);
        std::copy(p.begin(), p.end(), values.begin());
        vcd.moment(us, values);
    };
    moment(0);
    for (std::size_t i = 0; i < writes.size(); ++i) {
        chip.*logged_at(writes[i].address)->field = writes[i].value;
        const std::int64_t us = writes[i].cycle / cycles_per_us;
        if (i + 1 == writes.size() || writes[i + 1].cycle / cycles_per_us != us) moment(us);
    }
    return vcd.changes();
}

std::string gpsim_path() {
    if (const char* named = std::getenv("KESTRONE_GPSIM"); named && *named) return named;
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::string candidate = (folder.empty() ? "." : folder) + "/gpsim";
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    return {};
}

TraceResult trace_chip(const std::string& cod, std::int64_t ms, unsigned long clock_hz,
                       const std::string& vcd) {
    const std::string gpsim = gpsim_path();
    if (gpsim.empty()) return {false, "gpsim is not installed (KESTRONE_GPSIM names another)"};
    const std::int64_t cycles_per_us = static_cast<std::int64_t>(clock_hz / 4 / 1000000);
    const std::string stem = without_extension(cod);
    const std::string script = stem + ".trace.stc", log = stem + ".trace.log";
    std::ofstream(script, std::ios::trunc) << script_for(cod, log, ms * cycles_per_us * 1000);
    std::string said;
    const bool ran = run_in(folder_of(cod), {gpsim, "-i", "-c", script}, said);
    std::ifstream in(log);
    const std::vector<RegisterWrite> writes = read_register_writes(in);
    in.close();
    std::remove(script.c_str());
    std::remove(log.c_str());
    if (!ran) return {false, "gpsim failed on " + cod + ":\n" + said};
    std::ofstream out(vcd, std::ios::binary | std::ios::trunc);
    write_chip_vcd(writes, cycles_per_us, out);
    std::ofstream view(without_extension(vcd) + ".gtkw", std::ios::trunc);
    signal_log::write_gtkw(view, vcd);
    out.close();
    view.close();
    if (!out || !view) return {false, "cannot write " + vcd + " and its .gtkw"};
    return {true, {}};
}

}  // namespace kflow
