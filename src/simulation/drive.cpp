// Macros 4 to 9, the wheels and their tick. A wheel is a drum with eleven lines placed by a cosine
// projection, so that they bunch at the drum's edges as on a turning cylinder.
#include <cmath>

#include "platform/vb_numeric.h"
#include "simulation/params.h"
#include "simulation/simulation.h"

namespace rovanta {

using panel::Panel;
using sim::param;

namespace {
// Eight decimals, not a fuller pi: the lines' places follow this constant.
constexpr double kHalfTurn = 3.14159265;

Variant zero() {
    return Variant::integer(0);
}

// A signed byte pair, h high, in two's complement.
Integer decode_pair(const Variant& h, const Variant& l) {
    if (vb::to_double(h) >= 128) {
        const Long sum = vb::to_long(vb::var_add(
            vb::var_mul(vb::var_sub(h, Variant::integer(128)), Variant::integer(256)), l));
        return vb::cint(std::int64_t{vb::sub(sum, Long{32768})});
    }
    return vb::to_integer(vb::var_add(vb::var_mul(h, Variant::integer(256)), l));
}
}  // namespace

void Simulation::SimDriveForwards(const Variant& vParams, Variant&, Long&) {
    motors_.iMotorSpeed[0] = vb::to_integer(param(vParams, 0));
    motors_.iMotorSpeed[1] = vb::to_integer(param(vParams, 0));
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::SimDriveBackwards(const Variant& vParams, Variant&, Long&) {
    motors_.iMotorSpeed[0] = vb::to_integer(vb::var_sub(zero(), param(vParams, 0)));
    motors_.iMotorSpeed[1] = vb::to_integer(vb::var_sub(zero(), param(vParams, 0)));
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::SimDriveStop(const Variant&, Variant&, Long&) {
    motors_.iMotorSpeed[0] = 0;
    motors_.iMotorSpeed[1] = 0;
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::SimSpinLeft(const Variant& vParams, Variant&, Long&) {
    motors_.iMotorSpeed[0] = vb::to_integer(vb::var_sub(zero(), param(vParams, 0)));
    motors_.iMotorSpeed[1] = vb::to_integer(param(vParams, 0));
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::SimSpinRight(const Variant& vParams, Variant&, Long&) {
    motors_.iMotorSpeed[0] = vb::to_integer(param(vParams, 0));
    motors_.iMotorSpeed[1] = vb::to_integer(vb::var_sub(zero(), param(vParams, 0)));
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::SimSetMotors(const Variant& vParams, Variant&, Long&) {
    // All of the left motor first: a failure in the right pair leaves the left one set.
    for (int m = 0; m < 2; ++m) {
        Integer v = decode_pair(param(vParams, 2 * m), param(vParams, 2 * m + 1));
        // -255 to 255, not -256 to 255.
        if (v > 255) v = 255;
        if (v < -255) v = -255;
        motors_.iMotorSpeed[static_cast<std::size_t>(m)] = v;
        const Integer size = v < 0 ? vb::sub(Integer{0}, v) : v;
        const Integer interval = vb::mul(vb::sub(Integer{256}, size), Integer{2});
        panel_.set_interval(panel_.ids().Timer1[static_cast<std::size_t>(m)], interval);
    }
    DrawWheel(0, motors_.iWheelPhase[0]);
    DrawWheel(1, motors_.iWheelPhase[1]);
}

void Simulation::InitWheel(Integer Index) {
    const panel::Element& base = panel_.at(Panel::member(panel_.ids().WheelBase, Index));
    elem(motors_.iWheelCentre, Index) =
        vb::cint(static_cast<double>(vb::fadd(vb::fdiv(base.height, 2), base.top)));
    elem(motors_.iWheelTravel, Index) = vb::cint(static_cast<double>(vb::fsub(base.height, 100)));
    const float left = vb::fadd(base.left, 8);
    const Integer width = vb::cint(static_cast<double>(vb::fsub(base.width, 48)));
    for (Integer i = 0; i <= 10; ++i) {
        const int line =
            Panel::member(panel_.ids().WheelLine, vb::add(vb::mul(Integer{11}, Index), i));
        panel_.set_left(line, left);
        panel_.set_width(line, static_cast<float>(width));
    }
    DrawWheel(Index, 0);
    panel_.set_visible(Panel::member(panel_.ids().imageStopped, Index), false);
    panel_.set_visible(Panel::member(panel_.ids().imageUp, Index), true);
    panel_.set_visible(Panel::member(panel_.ids().imageDown, Index), false);
}

void Simulation::DrawWheel(Integer Index, Integer Phase) {
    panel_.set_caption(Panel::member(panel_.ids().lblSpeedVal, Index),
                       vb::cstr(std::int64_t{elem(motors_.iMotorSpeed, Index)}));
    const double centre = elem(motors_.iWheelCentre, Index);
    const double travel = elem(motors_.iWheelTravel, Index);
    for (Integer i = 0; i <= 10; ++i) {
        double angle = (i * kHalfTurn + Phase) / 11;
        while (angle > kHalfTurn)
            angle -= kHalfTurn;
        const double offset = travel * std::cos(angle) / 2;
        // Made single only now, and not made whole.
        panel_.set_top(
            Panel::member(panel_.ids().WheelLine, vb::add(vb::mul(Integer{11}, Index), i)),
            vb::csng(centre + offset));
    }
    UpdateDirection();
}

namespace {
struct TickStep {
    bool stopped, up, down;  // which sign shows
    Integer step;            // the phase's step
};
// By the sign of the speed: above 0, below 0, 0.
constexpr TickStep kForward{false, true, false, 1}, kBackward{false, false, true, -1},
    kStill{true, false, false, 0};
}  // namespace

void Simulation::Timer1_Timer(Integer Index) {
    if (!run_.bSimulating) return;
    // The drawing comes first: a tick shows the phase that the tick before left.
    DrawWheel(Index, elem(motors_.iWheelPhase, Index));
    const Integer speed = elem(motors_.iMotorSpeed, Index);
    const TickStep& t = speed > 0 ? kForward : speed < 0 ? kBackward : kStill;
    const auto& ids = panel_.ids();
    panel_.set_visible(Panel::member(ids.imageStopped, Index), t.stopped);
    panel_.set_visible(Panel::member(ids.imageUp, Index), t.up);
    panel_.set_visible(Panel::member(ids.imageDown, Index), t.down);
    if (t.step == 0) return;
    Integer& phase = elem(motors_.iWheelPhase, Index);
    phase = vb::add(phase, t.step);
    if (phase > 10) phase = 0;
    if (phase < 0) phase = 10;
}

}  // namespace rovanta
