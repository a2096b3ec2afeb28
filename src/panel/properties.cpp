#include "panel/properties.h"

#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace panel {

using kestrone::Variant;

namespace {

constexpr unsigned bit(ElementKind k) {
    return 1u << static_cast<unsigned>(k);
}
constexpr unsigned kFrame = bit(ElementKind::Frame), kImage = bit(ElementKind::Image),
                   kLabel = bit(ElementKind::Label), kCheck = bit(ElementKind::CheckBox),
                   kPicture = bit(ElementKind::PictureBox), kShape = bit(ElementKind::Shape),
                   kTimer = bit(ElementKind::Timer), kUpDown = bit(ElementKind::UpDown);
constexpr unsigned kPlaced = kFrame | kImage | kLabel | kCheck | kPicture | kShape | kUpDown;
constexpr unsigned kAll = kPlaced | kTimer;

using Getter = Variant (*)(const Element&);
using Setter = void (*)(Panel&, int, const Variant&);

struct Property {
    std::string_view name;
    unsigned kinds;
    Getter get;
    Setter put;  // null: read-only
};

Variant S(float v) {
    return Variant::single(v);
}
Variant L(std::int32_t v) {
    return Variant::long_(v);
}
Variant I(std::int16_t v) {
    return Variant::integer(v);
}

float size_value(const Variant& v) {
    const float f = vb::to_single(v);
    if (f < 0) vb::raise_error(vb::kInvalidPropertyValue);
    return f;
}

const Property kProperties[] = {
    {"Name", kAll, [](const Element& e) { return Variant::string(e.name); }, nullptr},
    {"Left", kPlaced, [](const Element& e) { return S(e.left); },
     [](Panel& p, int id, const Variant& v) { p.set_left(id, vb::to_single(v)); }},
    {"Top", kPlaced, [](const Element& e) { return S(e.top); },
     [](Panel& p, int id, const Variant& v) { p.set_top(id, vb::to_single(v)); }},
    {"Width", kPlaced, [](const Element& e) { return S(e.width); },
     [](Panel& p, int id, const Variant& v) { p.set_width(id, size_value(v)); }},
    {"Height", kPlaced, [](const Element& e) { return S(e.height); },
     [](Panel& p, int id, const Variant& v) { p.set_height(id, size_value(v)); }},
    {"Visible", kPlaced, [](const Element& e) { return Variant::boolean(e.visible); },
     [](Panel& p, int id, const Variant& v) { p.set_visible(id, vb::to_boolean(v)); }},
    {"Caption", kFrame | kLabel | kCheck,
     [](const Element& e) { return Variant::string(e.caption); },
     [](Panel& p, int id, const Variant& v) { p.set_caption(id, vb::to_string(v)); }},
    {"ForeColor", kFrame | kLabel | kCheck | kPicture,
     [](const Element& e) { return L(static_cast<std::int32_t>(e.fore_colour)); }, nullptr},
    {"BackColor", kFrame | kLabel | kCheck | kPicture,
     [](const Element& e) { return L(static_cast<std::int32_t>(e.back_colour)); }, nullptr},
    {"BorderColor", kShape,
     [](const Element& e) { return L(static_cast<std::int32_t>(e.fore_colour)); }, nullptr},
    {"BackStyle", kLabel | kShape, [](const Element& e) { return I(e.back_transparent ? 0 : 1); },
     nullptr},
    {"BorderStyle", kImage | kLabel | kPicture, [](const Element& e) { return I(e.border_style); },
     nullptr},
    {"Alignment", kLabel | kCheck, [](const Element& e) { return I(e.alignment); }, nullptr},
    {"AutoSize", kLabel, [](const Element& e) { return Variant::boolean(e.autosize); }, nullptr},
    {"Stretch", kImage, [](const Element& e) { return Variant::boolean(e.stretch); }, nullptr},
    {"TabIndex", kFrame | kLabel | kCheck | kPicture | kUpDown,
     [](const Element& e) { return I(static_cast<std::int16_t>(e.tab_index)); }, nullptr},
    {"Picture", kImage | kCheck | kPicture,
     [](const Element& e) { return L(static_cast<std::int32_t>(e.picture)); }, nullptr},
    {"Value", kCheck | kUpDown,
     [](const Element& e) {
         return e.kind == ElementKind::CheckBox ? I(e.check_value) : L(e.value);
     },
     [](Panel& p, int id, const Variant& v) {
         if (p.at(id).kind == ElementKind::CheckBox)
             p.set_check_value(id, vb::to_integer(v));
         else
             p.set_updown_value(id, vb::to_long(v));
     }},
    {"Min", kUpDown, [](const Element& e) { return L(e.min); },
     [](Panel& p, int id, const Variant& v) { p.set_updown_min(id, vb::to_long(v)); }},
    {"Max", kUpDown, [](const Element& e) { return L(e.max); },
     [](Panel& p, int id, const Variant& v) { p.set_updown_max(id, vb::to_long(v)); }},
    {"Increment", kUpDown, [](const Element& e) { return L(e.increment); },
     [](Panel& p, int id, const Variant& v) { p.set_updown_increment(id, vb::to_long(v)); }},
    {"Interval", kTimer, [](const Element& e) { return L(e.interval); },
     [](Panel& p, int id, const Variant& v) { p.set_interval(id, vb::to_long(v)); }},
    {"Enabled", kTimer, [](const Element& e) { return Variant::boolean(e.enabled); },
     [](Panel& p, int id, const Variant& v) { p.set_timer_enabled(id, vb::to_boolean(v)); }},
};

const Property* find_property(const Element& e, std::string_view name) {
    for (const Property& prop : kProperties)
        if (prop.name == name && (prop.kinds & bit(e.kind))) return &prop;
    return nullptr;
}

}  // namespace

PropertyLookup get_property(const Panel& p, int id, std::string_view property, Variant& out) {
    const Element& e = p.at(id);
    if (property == "Index" && e.index >= 0) {
        out = I(static_cast<std::int16_t>(e.index));
        return PropertyLookup::Found;
    }
    const Property* prop = find_property(e, property);
    if (!prop) return PropertyLookup::Unknown;
    out = prop->get(e);
    return PropertyLookup::Found;
}

PropertyLookup put_property(Panel& p, int id, std::string_view property, const Variant& value) {
    const Element& e = p.at(id);
    if (property == "Index" && e.index >= 0) vb::raise_error(vb::kPropertyReadOnly);
    const Property* prop = find_property(e, property);
    if (!prop) return PropertyLookup::Unknown;
    if (!prop->put) vb::raise_error(vb::kPropertyReadOnly);
    prop->put(p, id, value);
    return PropertyLookup::Found;
}

PropertyLookup get_panel_property(const Panel& p, std::string_view property, Variant& out) {
    if (property == "Width")
        out = S(p.width_twips());
    else if (property == "Height")
        out = S(p.height_twips());
    else if (property == "ScaleWidth")
        out = S(p.twips_to_pixels_x(p.width_twips()));
    else if (property == "ScaleHeight")
        out = S(p.twips_to_pixels_y(p.height_twips()));
    else if (property == "ScaleMode")
        out = I(3);  // pixels
    else
        return PropertyLookup::Unknown;
    return PropertyLookup::Found;
}

PropertyLookup put_panel_property(Panel& p, std::string_view property, const Variant& value) {
    if (property == "Width")
        p.set_width_twips(vb::to_single(value));
    else if (property == "Height")
        p.set_height_twips(vb::to_single(value));
    else if (property == "ScaleWidth" || property == "ScaleHeight" || property == "ScaleMode")
        vb::raise_error(vb::kPropertyReadOnly);
    else
        return PropertyLookup::Unknown;
    return PropertyLookup::Found;
}

}  // namespace panel
