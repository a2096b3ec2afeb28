#include "host/property_page_model.h"

#include <algorithm>
#include <array>

#include "host/guarded_call.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::InvokeKind;
using kestrone::WidgetAlignment;
using kestrone::WidgetKind;

namespace {
struct FormEntry {
    std::string_view name;
    WidgetKind kind;
    std::string_view container;
    std::string_view caption;
    std::int32_t left, top, width, height;  // twips
    std::int16_t tab_index;
    WidgetAlignment alignment;
};

constexpr auto F = WidgetKind::Frame, Lb = WidgetKind::Label, T = WidgetKind::TextBox,
               O = WidgetKind::OptionButton, C = WidgetKind::CheckBox, S = WidgetKind::Slider;
constexpr auto AL = WidgetAlignment::Left, AR = WidgetAlignment::Right,
               AC = WidgetAlignment::Center;

// The page's form, in its order. Text boxes hold their text in the caption column.
constexpr std::array<FormEntry, 17> kForm{{
    {"Frame3", F, "", "Motor balance", 240, 3000, 5535, 1455, 12, AL},
    {"sldMotorBias", S, "Frame3", "", 960, 480, 3375, 615, 13, AL},
    {"lblBiasVal", Lb, "Frame3", "0", 2280, 240, 735, 255, 16, AC},
    {"Label1", Lb, "Frame3", "Bias right", 4440, 720, 735, 255, 15, AL},
    {"lblBiasLeft", Lb, "Frame3", "Bias left", 240, 720, 615, 255, 14, AR},
    {"chkWaitForButton", C, "", "Wait for a button press before running program", 555, 315, 5160,
     465, 10, AL},
    {"Frame2", F, "", "Return type:", 255, 1005, 1665, 1800, 7, AL},
    {"optByte", O, "Frame2", "Byte", 300, 540, 1125, 300, 9, AL},
    {"optInt", O, "Frame2", "Int", 300, 1050, 1125, 300, 8, AL},
    {"Frame1", F, "", "Thresholds for IR sensors:", 2415, 990, 3300, 1800, 0, AL},
    {"txtiThreshR", T, "Frame1", "Text1", 1500, 1260, 1560, 330, 3, AL},
    {"txtiThreshL", T, "Frame1", "Text1", 1500, 345, 1560, 330, 2, AL},
    {"txtiThreshF", T, "Frame1", "Text1", 1500, 795, 1560, 330, 1, AL},
    {"lblThreshL", Lb, "Frame1", "Left:", 345, 405, 1065, 240, 6, AR},
    {"lblThreshF", Lb, "Frame1", "Front:", 345, 855, 1065, 240, 5, AR},
    {"lblThreshR", Lb, "Frame1", "Right:", 345, 1305, 1065, 240, 4, AR},
    {"lblVersion", Lb, "", "", 120, 120, 2055, 255, 11, AL},
}};

// The fixed values that every Apply puts into the settings the page does not show.
struct FixedSetting {
    std::string_view name;
    std::int16_t value;
    bool text;
};
constexpr std::array<FixedSetting, 9> kFixedOnApply{{
    {"iThreshMic", 128, false},
    {"iThreshLdr", 128, false},
    {"bUseI2C", 0, false},
    {"bDummyBool1", 0, false},
    {"bDummyBool2", 0, false},
    {"iDummyInt1", 0, false},
    {"iDummyInt2", 0, false},
    {"sDummyString1", 0, true},
    {"sDummyString2", 0, true},
}};

}  // namespace

// Which handler each widget's event runs; an event without a route does nothing.
struct PropertyPage2::Route {
    std::string_view widget;
    PageEvent event;
    void (PropertyPage2::*handler)();
};

const PropertyPage2::Route PropertyPage2::kRoutes[] = {
    {"txtiThreshR", PageEvent::Change, &PropertyPage2::txtiThreshR_Change},
    {"txtiThreshF", PageEvent::Change, &PropertyPage2::txtiThreshF_Change},
    {"txtiThreshL", PageEvent::Change, &PropertyPage2::txtiThreshL_Change},
    {"chkWaitForButton", PageEvent::Click, &PropertyPage2::chkWaitForButton_Click},
    {"optByte", PageEvent::Click, &PropertyPage2::optByte_Click},
    {"optInt", PageEvent::Click, &PropertyPage2::optInt_Click},
    {"sldMotorBias", PageEvent::Scroll, &PropertyPage2::sldMotorBias_Scroll},
    {"sldMotorBias", PageEvent::Change, &PropertyPage2::sldMotorBias_Change},
};

namespace {
float pixels(std::int32_t twips) {
    return vb::fdiv(vb::csng(twips), PropertyPage2::kTwipsPerPixel);
}
}  // namespace

PropertyPage2::PropertyPage2(const platform::ModuleFacts& app) : app_(app) {
    for (const FormEntry& e : kForm) {
        PageWidget widget;
        widget.name = std::string(e.name);
        widget.kind = e.kind;
        widget.container = e.container.empty() ? -1 : find(e.container);
        widget.left = pixels(e.left);
        widget.top = pixels(e.top);
        widget.width = pixels(e.width);
        widget.height = pixels(e.height);
        widget.tab_index = e.tab_index;
        widget.alignment = e.alignment;
        (e.kind == WidgetKind::TextBox ? widget.text : widget.caption) = std::string(e.caption);
        if (e.kind == WidgetKind::Slider) {
            widget.min = -100;
            widget.max = 100;
            widget.small_change = 1;
            widget.large_change = 5;
            widget.tick_frequency = 10;
        }
        widgets_.push_back(std::move(widget));
    }
    PropertyPage_Initialize();
}

int PropertyPage2::find(std::string_view name) const {
    for (std::size_t i = 0; i < widgets_.size(); ++i)
        if (widgets_[i].name == name) return static_cast<int>(i);
    return -1;
}

PageWidget& PropertyPage2::w(std::string_view name) {
    return widgets_.at(static_cast<std::size_t>(find(name)));
}

void PropertyPage2::changed_since(std::uint64_t since, std::vector<std::int32_t>& indices) const {
    indices.clear();
    for (std::size_t i = 0; i < widgets_.size(); ++i)
        if (widgets_[i].revision > since) indices.push_back(static_cast<std::int32_t>(i));
}

void PropertyPage2::PropertyPage_Initialize() {
    set_caption(w("lblVersion"), "v" + vb::cstr(std::int64_t{app_.Major}) + "." +
                                     vb::cstr(std::int64_t{app_.Minor}) + "." +
                                     vb::cstr(std::int64_t{app_.Revision}));
}

// Fills the widgets from the control. The writes raise the widgets' own events, which is why a
// page that was just filled already shows Changed.
HRESULT PropertyPage2::PropertyPage_SelectionChanged() {
    Variant v;
    HRESULT hr;
    for (std::string_view name : {"iThreshR", "iThreshF", "iThreshL"}) {
        if (kestrone::failed(hr = get_property(name, v))) return hr;
        const std::string box = "txt" + std::string(name);
        if (kestrone::failed(hr = guarded_call([&] { set_text(w(box), vb::to_string(v)); })))
            return hr;
    }
    Variant return_int, wait_for_button;
    if (kestrone::failed(hr = get_property("bReturnInt", return_int))) return hr;
    if (kestrone::failed(hr = get_property("iMotorBias", v))) return hr;
    PageWidget& slider = w("sldMotorBias");
    if (kestrone::failed(hr = guarded_call([&] {
                             set_slider(slider, vb::to_long(v), false);
                             set_caption(w("lblBiasVal"), vb::cstr(std::int64_t{slider.value}));
                         })))
        return hr;
    if (kestrone::failed(hr = get_property("bWaitForButton", wait_for_button))) return hr;
    return guarded_call([&] {
        if (vb::to_long(return_int) != 0)
            set_option(w("optInt"), true);
        else
            set_option(w("optByte"), true);
        set_check(w("chkWaitForButton"), vb::to_long(wait_for_button) != 0 ? 1 : 0);
    });
}

// Writes the widgets back, then the fixed values, in order; a write that fails ends it there
// and the earlier writes stand.
HRESULT PropertyPage2::PropertyPage_ApplyChanges() {
    HRESULT hr;
    for (std::string_view name : {"iThreshR", "iThreshF", "iThreshL"}) {
        const std::string box = "txt" + std::string(name);
        if (kestrone::failed(hr = let_property(name, Variant::string(w(box).text)))) return hr;
    }
    if (kestrone::failed(hr = let_property("iMotorBias", Variant::long_(w("sldMotorBias").value))))
        return hr;
    const std::int16_t return_int = w("optByte").value != 0 ? 0 : 1;
    if (kestrone::failed(hr = let_property("bReturnInt", Variant::integer(return_int)))) return hr;
    const std::int16_t wait = w("chkWaitForButton").value == 1 ? 1 : 0;
    if (kestrone::failed(hr = let_property("bWaitForButton", Variant::integer(wait)))) return hr;
    for (const FixedSetting& f : kFixedOnApply) {
        Variant value = f.text ? Variant::string({}) : Variant::integer(f.value);
        if (kestrone::failed(hr = let_property(f.name, std::move(value)))) return hr;
    }
    return kestrone::S_OK;
}

// Both value events of the slider show its value above it.
void PropertyPage2::sldMotorBias_Scroll() {
    set_caption(w("lblBiasVal"), vb::cstr(std::int64_t{w("sldMotorBias").value}));
    Changed = true;
}
void PropertyPage2::sldMotorBias_Change() {
    set_caption(w("lblBiasVal"), vb::cstr(std::int64_t{w("sldMotorBias").value}));
    Changed = true;
}

void PropertyPage2::raise_event(const PageWidget& source, PageEvent event) {
    for (const Route& r : kRoutes)
        if (r.event == event && r.widget == source.name) (this->*r.handler)();
}

// A text box raises Change only when its text really changes.
void PropertyPage2::set_text(PageWidget& box, const std::string& text) {
    if (box.text == text) return;
    box.text = text;
    touch(box);
    raise_event(box, PageEvent::Change);
}

// Turning an option button on turns the others of its container off; it clicks when it goes on.
void PropertyPage2::set_option(PageWidget& option, bool on) {
    const bool was_on = option.value != 0;
    if (on) {
        for (PageWidget& other : widgets_)
            if (&other != &option && other.kind == WidgetKind::OptionButton &&
                other.container == option.container && other.value != 0) {
                other.value = 0;
                touch(other);
            }
    }
    option.value = on ? -1 : 0;
    if (was_on != on) touch(option);
    if (on && !was_on) raise_event(option, PageEvent::Click);
}

// 0 clear, 1 ticked, 2 grey; anything else is not a value of a check box. It clicks on a change.
void PropertyPage2::set_check(PageWidget& check, std::int32_t value) {
    if (value < 0 || value > 2) vb::raise_error(vb::kInvalidPropertyValue);
    if (check.value == value) return;
    check.value = value;
    touch(check);
    raise_event(check, PageEvent::Click);
}

// The slider keeps its value within its range. A drag raises Scroll as the thumb moves; any
// change of value then raises Change.
void PropertyPage2::set_slider(PageWidget& slider, std::int32_t value, bool user_drag) {
    const std::int32_t v =
        std::clamp(value, std::min(slider.min, slider.max), std::max(slider.min, slider.max));
    if (slider.value == v) return;
    slider.value = v;
    touch(slider);
    if (user_drag) raise_event(slider, PageEvent::Scroll);
    raise_event(slider, PageEvent::Change);
}

void PropertyPage2::set_caption(PageWidget& label, const std::string& caption) {
    if (label.caption == caption) return;
    label.caption = caption;
    touch(label);
}

HRESULT PropertyPage2::get_property(std::string_view name, Variant& value) {
    if (SelectedControls.empty() || !SelectedControls[0])
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    const std::int32_t id =
        kestrone::member_number(kestrone::kRovantaMembers, name, InvokeKind::Query);
    if (id < 0) return kestrone::basic_error_status(vb::kNoSuchMember);
    return SelectedControls[0]->Invoke(kestrone::Interface::Rovanta, id, nullptr, 0, &value);
}

HRESULT PropertyPage2::let_property(std::string_view name, Variant value) {
    if (SelectedControls.empty() || !SelectedControls[0])
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    const std::int32_t id =
        kestrone::member_number(kestrone::kRovantaMembers, name, InvokeKind::Set);
    if (id < 0) return kestrone::basic_error_status(vb::kNoSuchMember);
    return SelectedControls[0]->Invoke(kestrone::Interface::Rovanta, id, &value, 1, nullptr);
}

}  // namespace rovanta
