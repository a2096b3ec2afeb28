// The five sensor values, their full scale, and the mapping both ways between a value and the
// place of its bar. Panels 2 and 4 lie across; on panel 4 alone the value grows with the place,
// and only the arrows of panel 2 have their range the other way round.
#include "core/rovanta.h"
#include "platform/vb_numeric.h"
#include "simulation/params.h"

namespace rovanta {

using panel::Panel;
using sim::elem;

namespace {
bool across(Integer Index) {
    return Index == 2 || Index == 4;
}

// span = vSliderMax - vSliderMin, single.
float span_of(const Rovanta& r, Integer Index) {
    const std::size_t i = static_cast<std::size_t>(Index);
    return vb::to_single(vb::var_sub(r.vSliderMax[i], r.vSliderMin[i]));
}

// The value from lSliderPos at the present full scale, limited to 0 to iADCMax.
void value_from_position(Rovanta& r, Integer Index) {
    const float step = vb::fdiv(static_cast<float>(r.iADCMax), span_of(r, Index));
    const double raw =
        r.iADCMax - static_cast<double>(elem(r.lSliderPos, Index)) * static_cast<double>(step);
    Long& value = elem(r.lADCVal, Index);
    value = vb::clng(raw);
    if (Index == 4) value = vb::sub(Long{r.iADCMax}, value);
    if (value > r.iADCMax) value = r.iADCMax;
    if (value < 0) value = 0;
}
}  // namespace

void Rovanta::LayoutSlider(Integer Index) {
    const panel::Element& base = panel.at(Panel::member(panel.ids().imSlideBase, Index));
    const int bar = Panel::member(panel.ids().imSlideBar, Index);
    // Centred across the track, on the axis on which it does not travel.
    if (across(Index)) {
        const float size = vb::cint(static_cast<double>(base.height));
        panel.set_top(bar, vb::fadd(base.top, vb::fdiv(vb::fsub(size, panel.at(bar).height), 2)));
    } else {
        const float size = vb::cint(static_cast<double>(base.width));
        panel.set_left(bar, vb::fadd(base.left, vb::fdiv(vb::fsub(size, panel.at(bar).width), 2)));
    }
}

void Rovanta::InitSlider(Integer Index) {
    const panel::Element& base = panel.at(Panel::member(panel.ids().imSlideBase, Index));
    const panel::Element& bar = panel.at(Panel::member(panel.ids().imSlideBar, Index));
    // Half the bar comes off, not all of it: at the high limit it reaches past the track's end.
    if (across(Index)) {
        elem(vSliderMin, Index) = Variant::single(base.left);
        elem(vSliderMax, Index) =
            Variant::single(vb::fsub(vb::fadd(base.left, base.width), vb::fdiv(bar.width, 2)));
    } else {
        elem(vSliderMin, Index) = Variant::single(base.top);
        elem(vSliderMax, Index) =
            Variant::single(vb::fsub(vb::fadd(base.top, base.height), vb::fdiv(bar.height, 2)));
    }
}

void Rovanta::SetSliderValue(Integer Index, Long Value) {
    const int bar = Panel::member(panel.ids().imSlideBar, Index);
    const float step = vb::fdiv(span_of(*this, Index), static_cast<float>(iADCMax));
    const double raw = Index == 4 ? static_cast<double>(step) * Value
                                  : static_cast<double>(step) * vb::sub(Long{iADCMax}, Value);
    Long& pos = elem(lSliderPos, Index);
    pos = vb::clng(raw);
    const Integer position =
        vb::cint(vb::to_double(vb::var_add(elem(vSliderMin, Index), Variant::long_(pos))));
    if (across(Index))
        panel.set_left(bar, position);
    else
        panel.set_top(bar, position);
    panel.set_caption(Panel::member(panel.ids().lblADCVal, Index), vb::cstr(std::int64_t{Value}));
    panel.set_updown_value(Panel::member(panel.ids().updownADC, Index), elem(lADCVal, Index));
}

void Rovanta::ShowSliderValue(Integer Index) {
    value_from_position(*this, Index);
    const Long copy = elem(lADCVal, Index);
    const int arrows = Panel::member(panel.ids().updownADC, Index);
    if (Index == 2)
        panel.set_updown_min(arrows, iADCMax);
    else
        panel.set_updown_max(arrows, iADCMax);
    panel.set_updown_value(arrows, copy);
    // The arrows' Change may have moved the value meanwhile; the bar's value stands.
    elem(lADCVal, Index) = copy;
    panel.set_caption(Panel::member(panel.ids().lblADCVal, Index),
                      vb::cstr(std::int64_t{elem(lADCVal, Index)}));
}

void Rovanta::updownADC_Change(Integer& Index) {
    const Long arrows = panel.at(Panel::member(panel.ids().updownADC, Index)).value;
    Long& value = elem(lADCVal, Index);
    // Equal when the logic itself wrote the arrows: that ends the chain.
    if (arrows == value) return;
    value = arrows;
    if (value > iADCMax) value = iADCMax;
    if (value < 0) value = 0;
    SetSliderValue(Index, value);
}

void Rovanta::SliderMouseEvent(Integer Index, float X, float Y) {
    const int bar = Panel::member(panel.ids().imSlideBar, Index);
    const bool horizontal = across(Index);
    const float length = horizontal ? panel.at(bar).width : panel.at(bar).height;
    const float point = horizontal ? X : Y;
    const Long half = vb::clng(static_cast<double>(length)) / 2;
    const double min = vb::to_double(elem(vSliderMin, Index));
    const double max = vb::to_double(elem(vSliderMax, Index));
    // The bar held by its middle. A pointer past the 16-bit range is limited like any other.
    double position = vb::round_half_even(static_cast<double>(point) - half);
    if (position < min) position = vb::cint(min);
    if (position > max) position = vb::cint(max);
    const Integer place = vb::cint(position);
    elem(lSliderPos, Index) =
        vb::clng(static_cast<double>(vb::fsub(static_cast<float>(place), static_cast<float>(min))));
    value_from_position(*this, Index);
    const Long value = elem(lADCVal, Index);
    panel.set_caption(Panel::member(panel.ids().lblADCVal, Index), vb::cstr(std::int64_t{value}));
    panel.set_updown_value(Panel::member(panel.ids().updownADC, Index), value);
    // The bar moves last, to the pointer's place, not to the one the rounded value would give.
    if (horizontal)
        panel.set_left(bar, place);
    else
        panel.set_top(bar, place);
}

}  // namespace rovanta
