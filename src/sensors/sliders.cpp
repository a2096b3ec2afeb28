// The five sensor values, their full scale, and the mapping both ways between a value and the
// place of its bar. Panels 2 and 4 lie across; on panel 4 alone the value grows with the place,
// and only the arrows of panel 2 have their range the other way round.
#include "platform/vb_numeric.h"
#include "sensors/sensor_bars.h"

namespace rovanta {

using kestrone::Variant;
using panel::Panel;

namespace {
bool across(Integer Index) {
    return Index == 2 || Index == 4;
}

}  // namespace

// span = vSliderMax - vSliderMin, single.
float SensorBars::span_of(Integer Index) const {
    const std::size_t i = static_cast<std::size_t>(Index);
    return vb::to_single(vb::var_sub(s_.vSliderMax[i], s_.vSliderMin[i]));
}

// The value from lSliderPos at the present full scale, limited to 0 to iADCMax.
void SensorBars::value_from_position(Integer Index) {
    const float step = vb::fdiv(static_cast<float>(s_.iADCMax), span_of(Index));
    const double raw =
        s_.iADCMax - static_cast<double>(elem(s_.lSliderPos, Index)) * static_cast<double>(step);
    Long& value = elem(s_.lADCVal, Index);
    value = vb::clng(raw);
    if (Index == 4) value = vb::sub(Long{s_.iADCMax}, value);
    if (value > s_.iADCMax) value = s_.iADCMax;
    if (value < 0) value = 0;
}

void SensorBars::StartUp() {
    s_.iADCMax = 255;
    // SetSliderValue reads iADCMax, so it stands first.
    for (Integer i = 0; i < 5; ++i) {
        LayoutSlider(i);
        s_.lADCVal[static_cast<std::size_t>(i)] = 0;
        InitSlider(i);
        SetSliderValue(i, s_.lADCVal[static_cast<std::size_t>(i)]);
    }
}

void SensorBars::SelectFullScale(Integer bReturnInt) {
    s_.iADCMax = bReturnInt != 0 ? Integer{1023} : Integer{255};
    for (Integer i = 0; i <= 4; ++i)
        ShowSliderValue(i);
}

void SensorBars::LayoutSlider(Integer Index) {
    const panel::Element& base = panel_.at(Panel::member(panel_.ids().imSlideBase, Index));
    const int bar = Panel::member(panel_.ids().imSlideBar, Index);
    // Centred across the track, on the axis on which it does not travel.
    if (across(Index)) {
        const float size = vb::cint(static_cast<double>(base.height));
        panel_.set_top(bar, vb::fadd(base.top, vb::fdiv(vb::fsub(size, panel_.at(bar).height), 2)));
    } else {
        const float size = vb::cint(static_cast<double>(base.width));
        panel_.set_left(bar,
                        vb::fadd(base.left, vb::fdiv(vb::fsub(size, panel_.at(bar).width), 2)));
    }
}

void SensorBars::InitSlider(Integer Index) {
    const panel::Element& base = panel_.at(Panel::member(panel_.ids().imSlideBase, Index));
    const panel::Element& bar = panel_.at(Panel::member(panel_.ids().imSlideBar, Index));
    // Half the bar comes off, not all of it: at the high limit it reaches past the track's end.
    if (across(Index)) {
        elem(s_.vSliderMin, Index) = Variant::single(base.left);
        elem(s_.vSliderMax, Index) =
            Variant::single(vb::fsub(vb::fadd(base.left, base.width), vb::fdiv(bar.width, 2)));
    } else {
        elem(s_.vSliderMin, Index) = Variant::single(base.top);
        elem(s_.vSliderMax, Index) =
            Variant::single(vb::fsub(vb::fadd(base.top, base.height), vb::fdiv(bar.height, 2)));
    }
}

void SensorBars::SetSliderValue(Integer Index, Long Value) {
    const int bar = Panel::member(panel_.ids().imSlideBar, Index);
    const float step = vb::fdiv(span_of(Index), static_cast<float>(s_.iADCMax));
    const double raw = Index == 4 ? static_cast<double>(step) * Value
                                  : static_cast<double>(step) * vb::sub(Long{s_.iADCMax}, Value);
    Long& pos = elem(s_.lSliderPos, Index);
    pos = vb::clng(raw);
    const Integer position =
        vb::cint(vb::to_double(vb::var_add(elem(s_.vSliderMin, Index), Variant::long_(pos))));
    if (across(Index))
        panel_.set_left(bar, position);
    else
        panel_.set_top(bar, position);
    panel_.set_caption(Panel::member(panel_.ids().lblADCVal, Index), vb::cstr(std::int64_t{Value}));
    panel_.set_updown_value(Panel::member(panel_.ids().updownADC, Index), elem(s_.lADCVal, Index));
}

void SensorBars::ShowSliderValue(Integer Index) {
    value_from_position(Index);
    const Long copy = elem(s_.lADCVal, Index);
    const int arrows = Panel::member(panel_.ids().updownADC, Index);
    if (Index == 2)
        panel_.set_updown_min(arrows, s_.iADCMax);
    else
        panel_.set_updown_max(arrows, s_.iADCMax);
    panel_.set_updown_value(arrows, copy);
    // The arrows' Change may have moved the value meanwhile; the bar's value stands.
    elem(s_.lADCVal, Index) = copy;
    panel_.set_caption(Panel::member(panel_.ids().lblADCVal, Index),
                       vb::cstr(std::int64_t{elem(s_.lADCVal, Index)}));
}

void SensorBars::updownADC_Change(Integer& Index) {
    const Long arrows = panel_.at(Panel::member(panel_.ids().updownADC, Index)).value;
    Long& value = elem(s_.lADCVal, Index);
    // Equal when the logic itself wrote the arrows: that ends the chain.
    if (arrows == value) return;
    value = arrows;
    if (value > s_.iADCMax) value = s_.iADCMax;
    if (value < 0) value = 0;
    SetSliderValue(Index, value);
}

void SensorBars::SliderMouseEvent(Integer Index, float X, float Y) {
    const int bar = Panel::member(panel_.ids().imSlideBar, Index);
    const bool horizontal = across(Index);
    const float length = horizontal ? panel_.at(bar).width : panel_.at(bar).height;
    const float point = horizontal ? X : Y;
    const Long half = vb::clng(static_cast<double>(length)) / 2;
    const double min = vb::to_double(elem(s_.vSliderMin, Index));
    const double max = vb::to_double(elem(s_.vSliderMax, Index));
    // The bar held by its middle. A pointer past the 16-bit range is limited like any other.
    double position = vb::round_half_even(static_cast<double>(point) - half);
    if (position < min) position = vb::cint(min);
    if (position > max) position = vb::cint(max);
    const Integer place = vb::cint(position);
    elem(s_.lSliderPos, Index) =
        vb::clng(static_cast<double>(vb::fsub(static_cast<float>(place), static_cast<float>(min))));
    value_from_position(Index);
    const Long value = elem(s_.lADCVal, Index);
    panel_.set_caption(Panel::member(panel_.ids().lblADCVal, Index), vb::cstr(std::int64_t{value}));
    panel_.set_updown_value(Panel::member(panel_.ids().updownADC, Index), value);
    // The bar moves last, to the pointer's place, not to the one the rounded value would give.
    if (horizontal)
        panel_.set_left(bar, place);
    else
        panel_.set_top(bar, place);
}

}  // namespace rovanta
