#include "session_port.h"

namespace world {

using kestrone::Variant;

namespace {

const char* check_box(CheckInput input) {
    static const char* const kNames[] = {"chkLineLeft", "chkLineRight", "chkSwitchLeft",
                                         "chkSwitchRight"};
    return kNames[static_cast<int>(input)];
}

// A whole number of the kinds that fields and element properties come in.
std::optional<std::int32_t> whole(const Variant& v) {
    if (v.is_array()) return std::nullopt;
    switch (v.type()) {
        case kestrone::VarType::Integer:
            return v.as_integer();
        case kestrone::VarType::Long:
            return v.as_long();
        case kestrone::VarType::Byte:
            return v.as_byte();
        case kestrone::VarType::Boolean:
            return v.as_boolean() ? 1 : 0;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<std::int32_t> SessionPort::whole_field(const char* name,
                                                     std::optional<std::int32_t> index) {
    Variant v;
    if (session_.field(name, index, "", &v) != kestrone::S_OK) return std::nullopt;
    return whole(v);
}

std::optional<std::int32_t> SessionPort::element_number(const char* element,
                                                        std::optional<std::int32_t> index,
                                                        const char* property) {
    Variant v;
    if (session_.element_property(element, index, property, &v) != kestrone::S_OK)
        return std::nullopt;
    return whole(v);
}

std::optional<bool> SessionPort::simulating() {
    const auto v = whole_field("bSimulating", std::nullopt);
    if (!v) return std::nullopt;
    return *v != 0;
}

std::optional<std::int32_t> SessionPort::motor_speed(int motor) {
    return whole_field("iMotorSpeed", motor);
}

std::optional<std::int32_t> SessionPort::full_scale() {
    return whole_field("iADCMax", std::nullopt);
}

std::optional<std::int32_t> SessionPort::sensor_value(int sensor) {
    return whole_field("lADCVal", sensor);
}

std::optional<std::int32_t> SessionPort::check_value(CheckInput input) {
    return element_number(check_box(input), std::nullopt, "Value");
}

bool SessionPort::click(CheckInput input) {
    std::int32_t id = 0;
    if (session_.find_element(check_box(input), std::nullopt, &id) != kestrone::S_OK) return false;
    return session_.click(id) == kestrone::S_OK;
}

// The upper arrow moves towards Max, which is the lower end for a sensor whose range runs the
// other way round.
bool SessionPort::arrow(int sensor, bool raise) {
    std::int32_t id = 0;
    if (session_.find_element("updownADC", sensor, &id) != kestrone::S_OK) return false;
    const auto min = element_number("updownADC", sensor, "Min");
    const auto max = element_number("updownADC", sensor, "Max");
    if (!min || !max) return false;
    const bool up = (*max >= *min) == raise;
    return session_.arrow(id, up) == kestrone::S_OK;
}

}  // namespace world
