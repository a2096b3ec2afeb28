#include "panel/element_view.h"

#include "panel/colours.h"
#include "panel/panel_geometry.h"

namespace panel {

namespace {

// Whether a style fills its box with the back colour. Images have no background, and the plate
// paints in its one colour, the fore colour.
bool has_background(const Element& e) {
    switch (e.style) {
        case ElementStyle::PictureBox:
        case ElementStyle::GroupFrame:
        case ElementStyle::GraphicalCheckBox:
        case ElementStyle::Arrows:
            return true;
        case ElementStyle::Label:
            return !e.back_transparent;
        case ElementStyle::None:
        case ElementStyle::Picture:
        case ElementStyle::BorderedPicture:
        case ElementStyle::Plate:
            return false;
    }
    return false;
}

}  // namespace

kestrone::ElementView element_view(const Panel& p, int id) {
    const Element& e = p.at(id);
    kestrone::ElementView v;
    v.style = e.style;
    v.box = element_box(p, id);
    v.clip = element_clip(p, id);
    v.paint_order = p.paint_rank(id);
    v.shown = element_shown(p, id);
    v.fore = resolve_colour(e.fore_colour);
    if (has_background(e)) v.back = resolve_colour(e.back_colour);
    v.light = resolve_colour(kButtonHighlight);
    v.shadow = resolve_colour(kButtonShadow);
    return v;
}

}  // namespace panel
