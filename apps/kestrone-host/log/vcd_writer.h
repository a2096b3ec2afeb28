// A value change dump (IEEE 1364) as GTKWave reads it: one module of variables, a time in
// microseconds, and after the first moment only the values that changed.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace signal_log {

struct VcdVariable {
    std::string_view name;
    int width;             // bits: 1 a wire, more a vector [width-1:0]
    bool integer = false;  // a signed 32-bit integer (width 32)
};

// A value not known at a moment: x.
inline constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::min();

class VcdWriter {
  public:
    // Writes the declarations: `comment`, a timescale of 1 us, and `variables` in one module
    // named `scope`.
    VcdWriter(std::ostream& out, std::string_view comment, std::string_view scope,
              std::span<const VcdVariable> variables);
    // Every variable's value at a moment; the first call gives them all at time 0 or later,
    // each later one the values that changed, if any. Times must not go back.
    void moment(std::int64_t time_us, std::span<const std::int64_t> values);
    // Moments written with a change, after the first.
    std::size_t changes() const { return changes_; }

  private:
    void write_value(std::size_t variable, std::int64_t value);

    std::ostream& out_;
    std::vector<VcdVariable> variables_;
    std::vector<std::int64_t> last_;
    bool started_ = false;
    std::size_t changes_ = 0;
};

}  // namespace signal_log
