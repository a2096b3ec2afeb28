#include "log_writers.h"

#include <limits>
#include <ostream>
#include <vector>

#include "gtkw_view.h"
#include "pins.h"
#include "vcd_writer.h"

namespace signal_log {

namespace {
constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kAllBefore = std::numeric_limits<std::int64_t>::min();
}  // namespace

std::size_t write_csv(const SignalLog& log, std::ostream& out) {
    out << "time_ms";
    for (const SignalInfo& s : signal_table())
        out << ',' << s.name;
    out << '\n';
    std::size_t rows = 0;
    log.replay(kAllBefore, kAll, [&](const Moment& m) {
        out << m.at_ms;
        for (const std::int32_t v : m.values) {
            out << ',';
            if (v != kAbsent) out << v;
        }
        out << '\n';
        ++rows;
    });
    return rows - 1;
}

std::size_t write_vcd(const SignalLog& log, std::ostream& out) {
    std::vector<VcdVariable> variables;
    for (const PinInfo& p : pins())
        variables.push_back({p.name, p.width});
    const bool pose = log.had_arena();
    if (pose)
        for (const Signal s : {kX, kY, kTheta})
            variables.push_back({signal_table()[s].name, 32, true});
    VcdWriter vcd(out, "the robot's panel as its chip's pins, logged by kestrone-host", kPinScope,
                  variables);
    std::vector<std::int64_t> values(variables.size());
    log.replay(kAllBefore, kAll, [&](const Moment& m) {
        const PinValues p = pins_of(m.values);
        std::copy(p.begin(), p.end(), values.begin());
        if (pose)
            for (std::size_t k = 0; k < 3; ++k) {
                const std::int32_t v = m.values[kX + k];
                values[kPinCount + k] = v == kAbsent ? kUnknown : v;
            }
        vcd.moment(m.at_ms * 1000, values);
    });
    return vcd.changes();
}

}  // namespace signal_log
