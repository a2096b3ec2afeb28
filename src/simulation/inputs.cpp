// Macros 10 to 20: the LEDs, the switches and line sensors, the analogue readings and the tone;
// DrawLeds and the check boxes' clicks.
#include <array>

#include "core/rovanta.h"
#include "platform/vb_numeric.h"
#include "simulation/params.h"

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

void Rovanta::SimWriteLeds(const Variant& vParams, Variant& pvAffected, Long&) {
    for (Long i = 0; i < kLedCount; ++i) {
        // The bits are tested as a Long, bit 0 to pin 0; only the low eight count.
        const Long bits = vb::to_long(param(vParams, 0));
        Pins(i).SimValue = (bits & (Long{1} << i)) != 0;
    }
    std::vector<Variant> all;
    for (Long i = 0; i < kLedCount; ++i)
        all.push_back(Variant::long_(i));
    pvAffected = pin_numbers(std::move(all));
    bPinsChanged = true;
}

namespace {
// One LED on or off; a number out of range changes no pin but is reported all the same.
void set_led(Rovanta& r, const Variant& vParams, Variant& pvAffected, bool on) {
    const double n = vb::to_double(param(vParams, 0));
    if (n >= 0 && n <= kLedCount - 1) r.Pins(vb::to_long(param(vParams, 0))).SimValue = on;
    pvAffected = pin_numbers({Variant::long_(vb::to_long(param(vParams, 0)))});
    r.bPinsChanged = true;
}
}  // namespace

void Rovanta::SimLedOn(const Variant& vParams, Variant& pvAffected, Long&) {
    set_led(*this, vParams, pvAffected, true);
}

void Rovanta::SimLedOff(const Variant& vParams, Variant& pvAffected, Long&) {
    set_led(*this, vParams, pvAffected, false);
}

void Rovanta::SimReadSwitch(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkSwitchLeft : ids.chkSwitchRight;
    slot = panel.at(box).check_value != 0 ? 1 : 0;
}

void Rovanta::SimReadLine(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkLineLeft : ids.chkLineRight;
    slot = panel.at(box).check_value != 0 ? 1 : 0;
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

void Rovanta::SimWaitSwitch(const Variant& vParams, Variant&, Long& slot) {
    const auto& ids = panel.ids();
    const int box =
        side_of(param(vParams, 0), false) == Side::Left ? ids.chkSwitchLeft : ids.chkSwitchRight;
    const LatchStep& step = kWaitSwitch[panel.at(box).check_value != 0][bSwitchLatch];
    bSwitchLatch = step.latch_after;
    slot = step.result;
}

void Rovanta::SimPlayTone(const Variant& vParams, Variant&, Long&) {
    // A high byte of 128 or more overflows here, before any sound: the longest tone is 32767 ms.
    const Integer high = vb::mul(vb::to_integer(param(vParams, 1)), Integer{256});
    const Long duration = vb::to_long(vb::var_add(Variant::integer(high), param(vParams, 2)));
    const Long hertz = vb::to_long(vb::var_mul(Variant::integer(10), param(vParams, 0)));
    services_.beep(hertz, duration);
}

void Rovanta::SimReadMic(const Variant&, Variant&, Long& slot) {
    slot = lADCVal[1];
}

void Rovanta::SimReadLdr(const Variant&, Variant&, Long& slot) {
    slot = lADCVal[0];
}

namespace {
constexpr std::size_t sensor_of(Side side) {
    return side == Side::Left ? 2 : side == Side::Forward ? 3 : 4;
}
}  // namespace

void Rovanta::SimTestSideSensor(const Variant& vParams, Variant&, Long& slot) {
    const Side side = side_of(param(vParams, 0), true);
    const Integer threshold = side == Side::Left      ? settings.iThreshL
                              : side == Side::Forward ? settings.iThreshF
                                                      : settings.iThreshR;
    slot = Long{threshold} > lADCVal[sensor_of(side)] ? 1 : 0;
}

void Rovanta::SimReadSideSensor(const Variant& vParams, Variant&, Long& slot) {
    slot = lADCVal[sensor_of(side_of(param(vParams, 0), true))];
}

void Rovanta::DrawLeds() {
    const auto& ids = panel.ids();
    for (Long i = 0; i < kLedCount; ++i) {
        const int on = ids.imageLedOn[static_cast<std::size_t>(i)];
        const int off = ids.imageLedOff[static_cast<std::size_t>(i)];
        if (Pins(i).SimValue) {
            panel.set_visible(on, true);
            panel.set_visible(off, false);
        } else {
            panel.set_visible(on, false);
            panel.set_visible(off, true);
        }
    }
}

namespace {
// The four boxes: each writes its pin and gives the focus back to the logo.
void box_clicked(Rovanta& r, int box, Long pin) {
    r.Pins(pin).SimValue = r.panel.at(box).check_value != 0;
    r.panel.set_focus(r.panel.ids().Picture1);
}
}  // namespace

void Rovanta::chkSwitchLeft_Click() {
    box_clicked(*this, panel.ids().chkSwitchLeft, 8);
}
void Rovanta::chkSwitchRight_Click() {
    box_clicked(*this, panel.ids().chkSwitchRight, 9);
}
void Rovanta::chkLineLeft_Click() {
    box_clicked(*this, panel.ids().chkLineLeft, 10);
}
void Rovanta::chkLineRight_Click() {
    box_clicked(*this, panel.ids().chkLineRight, 11);
}

}  // namespace rovanta
