// Macros 10 to 20: the LEDs, the switches and line sensors, the analogue readings and the tone;
// DrawLeds and the check boxes' clicks.
#include <array>

#include "platform/vb_numeric.h"
#include "simulation/params.h"
#include "simulation/simulation.h"

namespace rovanta {

using sim::param;
using sim::Side;
using sim::side_of;

namespace {
constexpr Long kLedCount = 8;

Variant pin_numbers(std::vector<Variant> numbers) {
    return Variant::array(kestrone::VarType::Long, 0, std::move(numbers));
}
}  // namespace

void Simulation::SimWriteLeds(const Variant& vParams, Variant& pvAffected, Long&) {
    for (Long i = 0; i < kLedCount; ++i) {
        // The bits are tested as a Long, bit 0 to pin 0; only the low eight count.
        const Long bits = vb::to_long(param(vParams, 0));
        core_.pin_table.Pins(i).SimValue = (bits & (Long{1} << i)) != 0;
    }
    std::vector<Variant> all;
    for (Long i = 0; i < kLedCount; ++i)
        all.push_back(Variant::long_(i));
    pvAffected = pin_numbers(std::move(all));
    core_.link.bPinsChanged = true;
}

// One LED on or off; a number out of range changes no pin but is reported all the same.
void Simulation::set_led(const Variant& vParams, Variant& pvAffected, bool on) {
    const double n = vb::to_double(param(vParams, 0));
    if (n >= 0 && n <= kLedCount - 1)
        core_.pin_table.Pins(vb::to_long(param(vParams, 0))).SimValue = on;
    pvAffected = pin_numbers({Variant::long_(vb::to_long(param(vParams, 0)))});
    core_.link.bPinsChanged = true;
}

void Simulation::SimLedOn(const Variant& vParams, Variant& pvAffected, Long&) {
    set_led(vParams, pvAffected, true);
}

void Simulation::SimLedOff(const Variant& vParams, Variant& pvAffected, Long&) {
    set_led(vParams, pvAffected, false);
}

void Simulation::SimReadSwitch(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel_.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkSwitchLeft : ids.chkSwitchRight;
    slot = panel_.at(box).check_value != 0 ? 1 : 0;
}

void Simulation::SimReadLine(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel_.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkLineLeft : ids.chkLineRight;
    slot = panel_.at(box).check_value != 0 ? 1 : 0;
}

namespace {
struct LatchStep {
    bool latch_after;
    Long result;
};
// By [box ticked][latch before]: 0 once, when a press seen before is let go. One latch serves
// both switches.
constexpr LatchStep kWaitSwitch[2][2] = {
    {{false, 1}, {false, 0}},  // let go: latch False, latch True
    {{true, 1}, {true, 1}},    // pressed
};
}  // namespace

void Simulation::SimWaitSwitch(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel_.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkSwitchLeft : ids.chkSwitchRight;
    const LatchStep& step = kWaitSwitch[panel_.at(box).check_value != 0][run_.bSwitchLatch];
    run_.bSwitchLatch = step.latch_after;
    slot = step.result;
}

void Simulation::SimPlayTone(const Variant& vParams, Variant&, Long&) {
    // A high byte of 128 or more overflows here, before any sound: the longest tone is 32767 ms.
    const Integer high = vb::mul(vb::to_integer(param(vParams, 1)), Integer{256});
    const Long duration = vb::to_long(vb::var_add(Variant::integer(high), param(vParams, 2)));
    const Long hertz = vb::to_long(vb::var_mul(Variant::integer(10), param(vParams, 0)));
    core_.services().beep(hertz, duration);
}

void Simulation::SimReadMic(const Variant&, Variant&, Long& slot) {
    slot = sensors_.lADCVal[1];
}

void Simulation::SimReadLdr(const Variant&, Variant&, Long& slot) {
    slot = sensors_.lADCVal[0];
}

namespace {
constexpr std::size_t sensor_of(Side side) {
    return side == Side::Left ? 2 : side == Side::Forward ? 3 : 4;
}
}  // namespace

void Simulation::SimTestSideSensor(const Variant& vParams, Variant&, Long& slot) {
    const Side side = side_of(param(vParams, 0), true);
    const Integer threshold = side == Side::Left      ? core_.settings.iThreshL
                              : side == Side::Forward ? core_.settings.iThreshF
                                                      : core_.settings.iThreshR;
    slot = Long{threshold} > sensors_.lADCVal[sensor_of(side)] ? 1 : 0;
}

void Simulation::SimReadSideSensor(const Variant& vParams, Variant&, Long& slot) {
    slot = sensors_.lADCVal[sensor_of(side_of(param(vParams, 0), true))];
}

void Simulation::DrawLeds() {
    const auto& ids = panel_.ids();
    for (Long i = 0; i < kLedCount; ++i) {
        const int on = ids.imageLedOn[static_cast<std::size_t>(i)];
        const int off = ids.imageLedOff[static_cast<std::size_t>(i)];
        if (core_.pin_table.Pins(i).SimValue) {
            panel_.set_visible(on, true);
            panel_.set_visible(off, false);
        } else {
            panel_.set_visible(on, false);
            panel_.set_visible(off, true);
        }
    }
}

// The four boxes: each writes its pin and gives the focus back to the logo.
void Simulation::box_clicked(int box, Long pin) {
    core_.pin_table.Pins(pin).SimValue = panel_.at(box).check_value != 0;
    panel_.set_focus(panel_.ids().Picture1);
}

void Simulation::chkSwitchLeft_Click() {
    box_clicked(panel_.ids().chkSwitchLeft, 8);
}
void Simulation::chkSwitchRight_Click() {
    box_clicked(panel_.ids().chkSwitchRight, 9);
}
void Simulation::chkLineLeft_Click() {
    box_clicked(panel_.ids().chkLineLeft, 10);
}
void Simulation::chkLineRight_Click() {
    box_clicked(panel_.ids().chkLineRight, 11);
}

}  // namespace rovanta
