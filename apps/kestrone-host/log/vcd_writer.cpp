#include "vcd_writer.h"

#include <ostream>

namespace signal_log {

namespace {

// Identifiers from '!' on: one printable character each for the few variables a log has.
char identifier(std::size_t variable) {
    return static_cast<char>('!' + variable);
}

// A vector's bits, highest first, without the zeros above its highest 1 (a reader fills them in
// again); a negative integer in all its 32 bits, as it would otherwise read back positive.
std::string binary(std::int64_t value, int width) {
    const std::uint64_t bits =
        width >= 64 ? static_cast<std::uint64_t>(value)
                    : static_cast<std::uint64_t>(value) & ((std::uint64_t{1} << width) - 1);
    int top = width - 1;
    if (value >= 0)
        while (top > 0 && ((bits >> top) & 1) == 0)
            --top;
    std::string out;
    for (int b = top; b >= 0; --b)
        out += ((bits >> b) & 1) ? '1' : '0';
    return out;
}

}  // namespace

VcdWriter::VcdWriter(std::ostream& out, std::string_view comment, std::string_view scope,
                     std::span<const VcdVariable> variables)
    : out_(out), variables_(variables.begin(), variables.end()), last_(variables.size()) {
    out_ << "$comment\n  " << comment << "\n$end\n$timescale 1 us $end\n";
    out_ << "$scope module " << scope << " $end\n";
    for (std::size_t i = 0; i < variables_.size(); ++i) {
        const VcdVariable& v = variables_[i];
        out_ << "$var " << (v.integer ? "integer" : "wire") << ' ' << v.width << ' '
             << identifier(i) << ' ' << v.name;
        if (v.width > 1 && !v.integer) out_ << " [" << v.width - 1 << ":0]";
        out_ << " $end\n";
    }
    out_ << "$upscope $end\n$enddefinitions $end\n";
}

void VcdWriter::write_value(std::size_t i, std::int64_t value) {
    const VcdVariable& v = variables_[i];
    if (v.width == 1 && !v.integer)
        out_ << (value == kUnknown ? "x" : value != 0 ? "1" : "0") << identifier(i) << '\n';
    else
        out_ << 'b' << (value == kUnknown ? "x" : binary(value, v.width)) << ' ' << identifier(i)
             << '\n';
    last_[i] = value;
}

void VcdWriter::moment(std::int64_t time_us, std::span<const std::int64_t> values) {
    if (!started_) {
        started_ = true;
        out_ << '#' << time_us << "\n$dumpvars\n";
        for (std::size_t i = 0; i < variables_.size(); ++i)
            write_value(i, values[i]);
        out_ << "$end\n";
        return;
    }
    bool stamped = false;
    for (std::size_t i = 0; i < variables_.size(); ++i) {
        if (values[i] == last_[i]) continue;
        if (!stamped) {
            out_ << '#' << time_us << '\n';
            stamped = true;
            ++changes_;
        }
        write_value(i, values[i]);
    }
}

}  // namespace signal_log
