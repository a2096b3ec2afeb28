#include "gtkw_view.h"

#include <ostream>

#include "pins.h"

namespace signal_log {

namespace {
// GTKWave's trace flags: right-justified, in binary, hexadecimal or decimal; a blank comment row.
constexpr std::string_view kBinary = "@28", kHex = "@22", kDecimal = "@24", kComment = "@200";
}  // namespace

void write_gtkw(std::ostream& out, const std::string& dump_file) {
    out << "[*] The robot's pins, written by kestrone-host. Panel and chip one above the other:\n"
        << "[*]   twinwave PANEL.vcd THIS.gtkw + CHIP.vcd THIS.gtkw\n"
        << "[dumpfile] \"" << dump_file << "\"\n"
        << "[timestart] 0\n"
        << "[treeopen] " << kPinScope << ".\n";
    out << kComment << "\n-LEDs, switches, line sensors, directions, sounder\n";
    for (const PinInfo& p : pins()) {
        if (p.width != 1) continue;
        out << kBinary << '\n' << kPinScope << '.' << p.name << '\n';
    }
    out << kComment << "\n-Port and duties\n";
    for (const PinInfo& p : pins()) {
        if (p.width == 1) continue;
        out << (p.width == 8 ? kHex : kDecimal) << '\n'
            << kPinScope << '.' << p.name << '[' << p.width - 1 << ":0]\n";
    }
}

}  // namespace signal_log
