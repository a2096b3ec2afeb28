#include "host/property_page.h"

#include <algorithm>

#include "host/guarded_call.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::InvokeKind;
using kestrone::VarType;
using kestrone::WidgetAlignment;
using kestrone::WidgetKind;

namespace {
struct FormEntry {
    std::string_view name;
    WidgetKind kind;
    std::string_view container;
    std::string_view caption;
    std::int32_t left, top, width, height;
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

HRESULT unknown_name() {
    return kestrone::DISP_E_UNKNOWNNAME;
}
}  // namespace

std::int32_t rovanta_member_id(std::string_view name, InvokeKind kind) {
    return kestrone::member_number(kestrone::kRovantaMembers, name, kind);
}

PropertyPage2::PropertyPage2(const platform::ModuleFacts& app) : app_(app) {
    for (const FormEntry& e : kForm) {
        PageWidget widget;
        widget.info = {std::string(e.name),
                       e.kind,
                       std::string(e.container),
                       e.left,
                       e.top,
                       e.width,
                       e.height,
                       e.tab_index,
                       e.alignment};
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

const PageWidget* PropertyPage2::find(std::string_view name) const {
    for (const PageWidget& widget : widgets_)
        if (widget.info.name == name) return &widget;
    return nullptr;
}

PageWidget& PropertyPage2::w(std::string_view name) {
    return *const_cast<PageWidget*>(find(name));
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

void PropertyPage2::sldMotorBias_Scroll() {
    set_caption(w("lblBiasVal"), vb::cstr(std::int64_t{w("sldMotorBias").value}));
    Changed = true;
}
void PropertyPage2::sldMotorBias_Change() {
    set_caption(w("lblBiasVal"), vb::cstr(std::int64_t{w("sldMotorBias").value}));
    Changed = true;
}

void PropertyPage2::raise_event(const PageWidget& source, std::string_view event) {
    const std::string_view name = source.info.name;
    if (event == "Change") {
        if (name == "txtiThreshR") txtiThreshR_Change();
        if (name == "txtiThreshF") txtiThreshF_Change();
        if (name == "txtiThreshL") txtiThreshL_Change();
        if (name == "sldMotorBias") sldMotorBias_Change();
    } else if (event == "Click") {
        if (name == "chkWaitForButton") chkWaitForButton_Click();
        if (name == "optByte") optByte_Click();
        if (name == "optInt") optInt_Click();
    } else if (event == "Scroll") {
        if (name == "sldMotorBias") sldMotorBias_Scroll();
    }
}

// A text box raises Change only when its text really changes.
void PropertyPage2::set_text(PageWidget& box, const std::string& text) {
    if (box.text == text) return;
    box.text = text;
    ++change_count_;
    raise_event(box, "Change");
}

// Turning an option button on turns the others of its container off; it clicks when it goes on.
void PropertyPage2::set_option(PageWidget& option, bool on) {
    const bool was_on = option.value != 0;
    if (on) {
        for (PageWidget& other : widgets_)
            if (&other != &option && other.info.kind == WidgetKind::OptionButton &&
                other.info.container == option.info.container && other.value != 0) {
                other.value = 0;
                ++change_count_;
            }
    }
    option.value = on ? -1 : 0;
    if (was_on != on) ++change_count_;
    if (on && !was_on) raise_event(option, "Click");
}

// 0 clear, 1 ticked, 2 grey; anything else is not a value of a check box. It clicks on a change.
void PropertyPage2::set_check(PageWidget& check, std::int32_t value) {
    if (value < 0 || value > 2) vb::raise_error(vb::kInvalidPropertyValue);
    if (check.value == value) return;
    check.value = value;
    ++change_count_;
    raise_event(check, "Click");
}

// The slider keeps its value within its range. A drag raises Scroll as the thumb moves; any
// change of value then raises Change.
void PropertyPage2::set_slider(PageWidget& slider, std::int32_t value, bool user_drag) {
    const std::int32_t v =
        std::clamp(value, std::min(slider.min, slider.max), std::max(slider.min, slider.max));
    if (slider.value == v) return;
    slider.value = v;
    ++change_count_;
    if (user_drag) raise_event(slider, "Scroll");
    raise_event(slider, "Change");
}

void PropertyPage2::set_caption(PageWidget& label, const std::string& caption) {
    if (label.caption == caption) return;
    label.caption = caption;
    ++change_count_;
}

HRESULT PropertyPage2::get_property(std::string_view name, Variant& value) {
    if (SelectedControls.empty() || !SelectedControls[0])
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    const std::int32_t id = rovanta_member_id(name, InvokeKind::Query);
    if (id < 0) return kestrone::basic_error_status(vb::kNoSuchMember);
    return SelectedControls[0]->Invoke(kestrone::Interface::Rovanta, id, nullptr, 0, &value);
}

HRESULT PropertyPage2::let_property(std::string_view name, Variant value) {
    if (SelectedControls.empty() || !SelectedControls[0])
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    const std::int32_t id = rovanta_member_id(name, InvokeKind::Set);
    if (id < 0) return kestrone::basic_error_status(vb::kNoSuchMember);
    return SelectedControls[0]->Invoke(kestrone::Interface::Rovanta, id, &value, 1, nullptr);
}

namespace {
bool has(const PageWidget& w, std::string_view property) {
    const WidgetKind k = w.info.kind;
    if (property == "Caption")
        return k == WidgetKind::Frame || k == WidgetKind::Label || k == WidgetKind::OptionButton ||
               k == WidgetKind::CheckBox;
    if (property == "Text") return k == WidgetKind::TextBox;
    if (property == "Value")
        return k == WidgetKind::OptionButton || k == WidgetKind::CheckBox ||
               k == WidgetKind::Slider;
    if (property == "Min" || property == "Max" || property == "SmallChange" ||
        property == "LargeChange" || property == "TickFrequency")
        return k == WidgetKind::Slider;
    if (property == "Alignment") return k == WidgetKind::Label;
    return property == "Left" || property == "Top" || property == "Width" || property == "Height" ||
           property == "TabIndex" || property == "Container";
}
}  // namespace

HRESULT PropertyPage2::get(std::string_view widget, std::string_view property,
                           Variant& value) const {
    const PageWidget* found = find(widget);
    if (!found || !has(*found, property)) return unknown_name();
    const PageWidget& x = *found;
    const auto twips = [](std::int32_t t) { return Variant::single(static_cast<float>(t)); };
    if (property == "Caption") value = Variant::string(x.caption);
    if (property == "Text") value = Variant::string(x.text);
    if (property == "Value") {
        if (x.info.kind == WidgetKind::OptionButton)
            value = Variant::boolean(x.value != 0);
        else if (x.info.kind == WidgetKind::CheckBox)
            value = Variant::integer(static_cast<std::int16_t>(x.value));
        else
            value = Variant::long_(x.value);
    }
    if (property == "Min") value = Variant::long_(x.min);
    if (property == "Max") value = Variant::long_(x.max);
    if (property == "SmallChange") value = Variant::long_(x.small_change);
    if (property == "LargeChange") value = Variant::long_(x.large_change);
    if (property == "TickFrequency") value = Variant::long_(x.tick_frequency);
    if (property == "Alignment")
        value = Variant::integer(static_cast<std::int16_t>(x.info.alignment));
    if (property == "Left") value = twips(x.info.left);
    if (property == "Top") value = twips(x.info.top);
    if (property == "Width") value = twips(x.info.width);
    if (property == "Height") value = twips(x.info.height);
    if (property == "TabIndex") value = Variant::integer(x.info.tab_index);
    if (property == "Container") value = Variant::string(x.info.container);
    return kestrone::S_OK;
}

// What a user can change: a text box's text, a slider's position, an option button or a check
// box. Anything else on the page is the form's and not the user's to set.
HRESULT PropertyPage2::user_put(std::string_view widget, std::string_view property,
                                const Variant& value) {
    const PageWidget* found = find(widget);
    if (!found || !has(*found, property)) return unknown_name();
    PageWidget& x = w(widget);
    const WidgetKind k = x.info.kind;
    return guarded_call([&] {
        if (k == WidgetKind::TextBox && property == "Text")
            set_text(x, vb::to_string(value));
        else if (k == WidgetKind::Slider && property == "Value")
            set_slider(x, vb::to_long(value), true);
        else if (k == WidgetKind::OptionButton && property == "Value")
            set_option(x, vb::to_boolean(value));
        else if (k == WidgetKind::CheckBox && property == "Value")
            set_check(x, vb::to_integer(value));
        else
            vb::raise_error(vb::kNoSuchMember);
    });
}

// A click on an option button turns it on and clicks it even when it was on already; a click on
// a check box toggles it between clear and ticked.
HRESULT PropertyPage2::user_click(std::string_view widget) {
    const PageWidget* found = find(widget);
    if (!found) return unknown_name();
    PageWidget& x = w(widget);
    return guarded_call([&] {
        if (x.info.kind == WidgetKind::OptionButton) {
            if (x.value != 0)
                raise_event(x, "Click");
            else
                set_option(x, true);
        } else if (x.info.kind == WidgetKind::CheckBox) {
            set_check(x, x.value == 1 ? 0 : 1);
        } else {
            vb::raise_error(vb::kNoSuchMember);
        }
    });
}

// ---- the page as the frame reaches it

PropertyPageObject::PropertyPageObject(const platform::ModuleFacts& app) : page_(app) {}
PropertyPageObject::~PropertyPageObject() = default;

HRESULT PropertyPageObject::create(const platform::ModuleFacts& app,
                                   kestrone::IKestronePropertyPage** out) {
    if (!out) return kestrone::E_POINTER;
    *out = nullptr;
    return guarded_call([&] { *out = new PropertyPageObject(app); });
}

HRESULT PropertyPageObject::QueryInterface(const kestrone::Guid& iid, void** ppv) noexcept {
    if (!ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (!(iid == kestrone::IID_IUnknown) && !(iid == kestrone::IID_IKestronePropertyPage))
        return kestrone::E_NOINTERFACE;
    *ppv = static_cast<kestrone::IKestronePropertyPage*>(this);
    AddRef();
    return kestrone::S_OK;
}
std::uint32_t PropertyPageObject::AddRef() noexcept {
    return ++refs_;
}
std::uint32_t PropertyPageObject::Release() noexcept {
    const std::uint32_t left = --refs_;
    if (left == 0) delete this;
    return left;
}

HRESULT PropertyPageObject::GetCaption(std::string* caption) noexcept {
    if (!caption) return kestrone::E_POINTER;
    return guarded_call([&] { *caption = std::string(PropertyPage2::kCaption); });
}
HRESULT PropertyPageObject::GetSize(std::int32_t* width, std::int32_t* height) noexcept {
    if (!width || !height) return kestrone::E_POINTER;
    *width = PropertyPage2::kWidth;
    *height = PropertyPage2::kHeight;
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetWidgetCount(std::int32_t* count) noexcept {
    if (!count) return kestrone::E_POINTER;
    *count = static_cast<std::int32_t>(page_.widgets().size());
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetWidget(std::int32_t index, kestrone::WidgetInfo* info) noexcept {
    if (!info) return kestrone::E_POINTER;
    if (index < 0 || index >= static_cast<std::int32_t>(page_.widgets().size()))
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    return guarded_call([&] { *info = page_.widgets()[static_cast<std::size_t>(index)].info; });
}

HRESULT PropertyPageObject::SetSelectedControls(kestrone::IUnknown* const* controls,
                                                std::int32_t count) noexcept {
    if (count < 0 || (count > 0 && !controls)) return kestrone::E_INVALIDARG;
    const HRESULT hr = guarded_call([&] {
        std::vector<kestrone::ComPtr<kestrone::IKestroneDispatch>> selected;
        for (std::int32_t i = 0; i < count; ++i) {
            kestrone::ComPtr<kestrone::IKestroneDispatch> d;
            if (controls[i]) controls[i]->QueryInterface(kestrone::IID_IKestroneDispatch, d.put());
            selected.push_back(std::move(d));
        }
        page_.SelectedControls = std::move(selected);
    });
    if (kestrone::failed(hr)) return hr;
    return page_.PropertyPage_SelectionChanged();
}
HRESULT PropertyPageObject::Apply() noexcept {
    return page_.PropertyPage_ApplyChanges();
}
HRESULT PropertyPageObject::GetChanged(bool* changed) noexcept {
    if (!changed) return kestrone::E_POINTER;
    *changed = page_.Changed;
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::PutChanged(bool changed) noexcept {
    page_.Changed = changed;
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetProperty(const std::string& widget, const std::string& property,
                                        Variant* value) noexcept {
    if (!value) return kestrone::E_POINTER;
    HRESULT status = kestrone::S_OK;
    const HRESULT hr = guarded_call([&] { status = page_.get(widget, property, *value); });
    return kestrone::failed(hr) ? hr : status;
}
HRESULT PropertyPageObject::UserPut(const std::string& widget, const std::string& property,
                                    const Variant& value) noexcept {
    return page_.user_put(widget, property, value);
}
HRESULT PropertyPageObject::UserClick(const std::string& widget) noexcept {
    return page_.user_click(widget);
}
HRESULT PropertyPageObject::GetChangeCount(std::uint32_t* count) noexcept {
    if (!count) return kestrone::E_POINTER;
    *count = page_.change_count();
    return kestrone::S_OK;
}

}  // namespace rovanta
