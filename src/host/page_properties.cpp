// The page's widgets by name, as a program reads them and as a user edits them: one table of
// properties per widget kind, with how each reads and how a user's edit writes it.
#include "host/guarded_call.h"
#include "host/property_page_model.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::WidgetKind;

namespace {
constexpr unsigned bit(WidgetKind k) {
    return 1u << static_cast<unsigned>(k);
}
constexpr unsigned kFrame = bit(WidgetKind::Frame), kLabel = bit(WidgetKind::Label),
                   kText = bit(WidgetKind::TextBox), kOption = bit(WidgetKind::OptionButton),
                   kCheck = bit(WidgetKind::CheckBox), kSlider = bit(WidgetKind::Slider);
constexpr unsigned kAll = kFrame | kLabel | kText | kOption | kCheck | kSlider;

// Lengths read in twips, the page's scale.
Variant twips(float pixels) {
    return Variant::single(vb::fmul(pixels, PropertyPage2::kTwipsPerPixel));
}
Variant L(std::int32_t v) {
    return Variant::long_(v);
}
}  // namespace

struct PropertyPage2::Property {
    std::string_view name;
    unsigned kinds;
    Variant (*get)(const PropertyPage2&, const PageWidget&);
    void (*user_put)(PropertyPage2&, PageWidget&, const Variant&);  // null: not the user's to set
};

using Page = PropertyPage2;
using W = PageWidget;

const PropertyPage2::Property PropertyPage2::kProperties[] = {
    {"Caption", kFrame | kLabel | kOption | kCheck,
     [](const Page&, const W& w) { return Variant::string(w.caption); }, nullptr},
    {"Text", kText, [](const Page&, const W& w) { return Variant::string(w.text); },
     [](Page& p, W& w, const Variant& v) { p.set_text(w, vb::to_string(v)); }},
    {"Value", kOption, [](const Page&, const W& w) { return Variant::boolean(w.value != 0); },
     [](Page& p, W& w, const Variant& v) { p.set_option(w, vb::to_boolean(v)); }},
    {"Value", kCheck,
     [](const Page&, const W& w) { return Variant::integer(static_cast<std::int16_t>(w.value)); },
     [](Page& p, W& w, const Variant& v) { p.set_check(w, vb::to_integer(v)); }},
    {"Value", kSlider, [](const Page&, const W& w) { return L(w.value); },
     [](Page& p, W& w, const Variant& v) { p.set_slider(w, vb::to_long(v), true); }},
    {"Min", kSlider, [](const Page&, const W& w) { return L(w.min); }, nullptr},
    {"Max", kSlider, [](const Page&, const W& w) { return L(w.max); }, nullptr},
    {"SmallChange", kSlider, [](const Page&, const W& w) { return L(w.small_change); }, nullptr},
    {"LargeChange", kSlider, [](const Page&, const W& w) { return L(w.large_change); }, nullptr},
    {"TickFrequency", kSlider, [](const Page&, const W& w) { return L(w.tick_frequency); },
     nullptr},
    {"Alignment", kLabel,
     [](const Page&, const W& w) { return Variant::integer(static_cast<std::int16_t>(w.alignment)); },
     nullptr},
    {"Enabled", kAll, [](const Page&, const W& w) { return Variant::boolean(w.enabled); }, nullptr},
    {"Left", kAll, [](const Page&, const W& w) { return twips(w.left); }, nullptr},
    {"Top", kAll, [](const Page&, const W& w) { return twips(w.top); }, nullptr},
    {"Width", kAll, [](const Page&, const W& w) { return twips(w.width); }, nullptr},
    {"Height", kAll, [](const Page&, const W& w) { return twips(w.height); }, nullptr},
    {"TabIndex", kAll, [](const Page&, const W& w) { return Variant::integer(w.tab_index); },
     nullptr},
    {"Container", kAll,
     [](const Page& p, const W& w) {
         return Variant::string(w.container < 0 ? std::string()
                                                : p.widgets_[static_cast<std::size_t>(w.container)].name);
     },
     nullptr},
};

// What a user's click does to a widget of each kind.
struct PropertyPage2::ClickAction {
    WidgetKind kind;
    void (*click)(PropertyPage2&, PageWidget&);
};

// A click on an option button turns it on and clicks it even when it was on already; a click on
// a check box toggles it between clear and ticked.
const PropertyPage2::ClickAction PropertyPage2::kClicks[] = {
    {WidgetKind::OptionButton,
     [](Page& p, W& w) {
         if (w.value != 0)
             p.raise_event(w, PageEvent::Click);
         else
             p.set_option(w, true);
     }},
    {WidgetKind::CheckBox, [](Page& p, W& w) { p.set_check(w, w.value == 1 ? 0 : 1); }},
};

const PropertyPage2::Property* PropertyPage2::property_of(const PageWidget& w,
                                                          std::string_view name) {
    for (const Property& prop : kProperties)
        if (prop.name == name && (prop.kinds & bit(w.kind))) return &prop;
    return nullptr;
}

HRESULT PropertyPage2::get(std::string_view widget, std::string_view property,
                           Variant& value) const {
    const int index = find(widget);
    if (index < 0) return kestrone::DISP_E_UNKNOWNNAME;
    const PageWidget& x = widgets_[static_cast<std::size_t>(index)];
    const Property* prop = property_of(x, property);
    if (!prop) return kestrone::DISP_E_UNKNOWNNAME;
    value = prop->get(*this, x);
    return kestrone::S_OK;
}

// What a user can change: a text box's text, a slider's position, an option button or a check
// box. Anything else on the page is the form's and not the user's to set.
HRESULT PropertyPage2::user_put(std::string_view widget, std::string_view property,
                                const Variant& value) {
    const int index = find(widget);
    if (index < 0) return kestrone::DISP_E_UNKNOWNNAME;
    PageWidget& x = widgets_[static_cast<std::size_t>(index)];
    const Property* prop = property_of(x, property);
    if (!prop) return kestrone::DISP_E_UNKNOWNNAME;
    return guarded_call([&] {
        if (!prop->user_put) vb::raise_error(vb::kNoSuchMember);
        prop->user_put(*this, x, value);
    });
}

HRESULT PropertyPage2::user_click(std::string_view widget) {
    const int index = find(widget);
    if (index < 0) return kestrone::DISP_E_UNKNOWNNAME;
    PageWidget& x = widgets_[static_cast<std::size_t>(index)];
    return guarded_call([&] {
        for (const ClickAction& c : kClicks)
            if (c.kind == x.kind) return c.click(*this, x);
        vb::raise_error(vb::kNoSuchMember);
    });
}

}  // namespace rovanta
