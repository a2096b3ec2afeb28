#include "panel/panel_model.h"

#include <algorithm>

#include "panel/layout.h"
#include "panel/panel_geometry.h"
#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace panel {

namespace {
// A label sized to its text: the dialogue font's digit is 90 twips wide and 195 high.
constexpr float kCharWidth = 90, kCharHeight = 195;

template <std::size_t N>
void fill_ids(const Panel& p, std::array<int, N>& ids, std::string_view name) {
    for (std::size_t i = 0; i < N; ++i)
        ids[i] = p.find(name, static_cast<std::int64_t>(i));
}
}  // namespace

Panel::Panel() {
    build_layout(elements_, top_level_, twips_per_pixel_);
    // The stacking is the layout's and never changes.
    paint_order_ = back_to_front(elements_, top_level_);
    paint_rank_.assign(elements_.size(), -1);
    for (std::size_t i = 0; i < paint_order_.size(); ++i)
        paint_rank_[static_cast<std::size_t>(paint_order_[i])] = static_cast<int>(i);
    fill_ids(*this, ids_.frameADC, "frameADC");
    fill_ids(*this, ids_.imSlideBase, "imSlideBase");
    fill_ids(*this, ids_.imSlideBar, "imSlideBar");
    fill_ids(*this, ids_.lblADCVal, "lblADCVal");
    fill_ids(*this, ids_.updownADC, "updownADC");
    fill_ids(*this, ids_.frameMotor, "frameMotor");
    fill_ids(*this, ids_.WheelBase, "WheelBase");
    fill_ids(*this, ids_.lblSpeedVal, "lblSpeedVal");
    fill_ids(*this, ids_.imageStopped, "imageStopped");
    fill_ids(*this, ids_.imageUp, "imageUp");
    fill_ids(*this, ids_.imageDown, "imageDown");
    fill_ids(*this, ids_.Timer1, "Timer1");
    fill_ids(*this, ids_.WheelLine, "WheelLine");
    fill_ids(*this, ids_.imageLedOn, "imageLedOn");
    fill_ids(*this, ids_.imageLedOff, "imageLedOff");
    fill_ids(*this, ids_.imDirection, "imDirection");
    ids_.chkSwitchLeft = find("chkSwitchLeft", -1);
    ids_.chkSwitchRight = find("chkSwitchRight", -1);
    ids_.chkLineLeft = find("chkLineLeft", -1);
    ids_.chkLineRight = find("chkLineRight", -1);
    ids_.Picture1 = find("Picture1", -1);
}

int Panel::find(std::string_view name, std::int64_t index) const {
    for (std::size_t i = 0; i < elements_.size(); ++i)
        if (elements_[i].index == index && elements_[i].name == name) return static_cast<int>(i);
    return -1;
}

bool Panel::is_control_array(std::string_view name) const {
    return std::any_of(elements_.begin(), elements_.end(),
                       [&](const Element& e) { return e.name == name && e.index >= 0; });
}

bool Panel::has_element(std::string_view name) const {
    return std::any_of(elements_.begin(), elements_.end(),
                       [&](const Element& e) { return e.name == name; });
}

void Panel::missing_element() {
    vb::raise_error(vb::kControlArrayElementMissing);
}

void Panel::raise(const Element* e, Event ev, const MouseArgs* mouse) {
    if (sink_) sink_->panel_event(e, ev, mouse);
}

// ---- writes

void Panel::set_left(int id, float v) {
    Element& e = mut(id);
    if (e.left == v) return;
    e.left = v;
    touch(e);
}
void Panel::set_top(int id, float v) {
    Element& e = mut(id);
    if (e.top == v) return;
    e.top = v;
    touch(e);
}
void Panel::set_width(int id, float v) {
    Element& e = mut(id);
    if (e.width == v) return;
    e.width = v;
    touch(e);
}
void Panel::set_height(int id, float v) {
    Element& e = mut(id);
    if (e.height == v) return;
    e.height = v;
    touch(e);
}
void Panel::set_visible(int id, bool v) {
    Element& e = mut(id);
    if (e.visible == v) return;
    e.visible = v;
    touch(e);
}

void Panel::autosize(Element& e) {
    // Sized to the text, growing and shrinking to the right: Left stays.
    e.width = kCharWidth * static_cast<float>(e.caption.size());
    e.height = kCharHeight;
}

void Panel::set_caption(int id, std::string v) {
    Element& e = mut(id);
    if (e.caption == v) return;
    e.caption = std::move(v);
    if (e.autosize) autosize(e);
    touch(e);
}

void Panel::set_check_value(int id, std::int16_t v) {
    Element& e = mut(id);
    if (v < 0 || v > 2) vb::raise_error(vb::kInvalidPropertyValue);
    if (e.check_value == v) return;
    e.check_value = v;
    touch(e);
    raise(&e, Event::Click);
}

void Panel::set_updown_value(int id, std::int32_t v) {
    Element& e = mut(id);
    const std::int32_t lo = std::min(e.min, e.max), hi = std::max(e.min, e.max);
    v = std::clamp(v, lo, hi);
    if (e.value == v) return;
    e.value = v;
    touch(e);
    raise(&e, Event::Change);
}

// The range may be narrowed below the Value: the Value stays until it is next moved.
void Panel::set_updown_min(int id, std::int32_t v) {
    Element& e = mut(id);
    if (e.min == v) return;
    e.min = v;
    touch(e);
}
void Panel::set_updown_max(int id, std::int32_t v) {
    Element& e = mut(id);
    if (e.max == v) return;
    e.max = v;
    touch(e);
}
void Panel::set_updown_increment(int id, std::int32_t v) {
    if (v <= 0) vb::raise_error(vb::kInvalidPropertyValue);
    Element& e = mut(id);
    if (e.increment == v) return;
    e.increment = v;
    touch(e);
}

// ---- size

void Panel::set_width_twips(float v) {
    if (v < 0) vb::raise_error(vb::kInvalidPropertyValue);
    if (width_ == v) return;
    width_ = v;
    ++revision_;
    raise(nullptr, Event::Resize);
}

void Panel::set_height_twips(float v) {
    if (v < 0) vb::raise_error(vb::kInvalidPropertyValue);
    if (height_ == v) return;
    height_ = v;
    ++revision_;
    raise(nullptr, Event::Resize);
}

float Panel::pixels_to_twips_x(float px) const {
    return vb::fmul(px, twips_per_pixel_);
}
float Panel::pixels_to_twips_y(float px) const {
    return vb::fmul(px, twips_per_pixel_);
}
float Panel::twips_to_pixels_x(float tw) const {
    return vb::fdiv(tw, twips_per_pixel_);
}
float Panel::twips_to_pixels_y(float tw) const {
    return vb::fdiv(tw, twips_per_pixel_);
}

// ---- pointer

int Panel::hit_test(float x, float y, float* local_x, float* local_y) const {
    // Front to back: the first that covers the point takes it. The panel is cut at its size.
    for (auto it = paint_order_.rbegin(); it != paint_order_.rend(); ++it) {
        if (!at(*it).takes_pointer || !element_shown(*this, *it) || !covers(*this, *it, x, y))
            continue;
        to_local(*this, *it, x, y, local_x, local_y);
        return *it;
    }
    return -1;
}

bool Panel::takes_focus(int id) const {
    const Element& e = at(id);
    const bool kind = e.kind == ElementKind::CheckBox || e.kind == ElementKind::PictureBox ||
                      e.kind == ElementKind::UpDown;
    return kind && e.tab_index >= 0 && e.enabled && element_shown(*this, id);
}

void Panel::deliver_mouse(int id, PointerAction action, std::int32_t buttons, std::int32_t shift,
                          float x, float y) {
    const Element& e = at(id);
    MouseArgs args;
    args.button = buttons >= INT16_MIN && buttons <= INT16_MAX ? static_cast<std::int16_t>(buttons)
                                                               : std::int16_t{0};
    args.shift = shift >= INT16_MIN && shift <= INT16_MAX ? static_cast<std::int16_t>(shift)
                                                          : std::int16_t{0};
    to_local(*this, id, x, y, &args.x, &args.y);
    const Event ev = action == PointerAction::Down   ? Event::MouseDown
                     : action == PointerAction::Move ? Event::MouseMove
                                                     : Event::MouseUp;
    raise(&e, ev, &args);
}

void Panel::pointer(PointerAction action, std::int32_t buttons, std::int32_t shift, float x,
                    float y) {
    float lx = 0, ly = 0;
    const int under = hit_test(x, y, &lx, &ly);
    switch (action) {
        case PointerAction::Down: {
            if (under < 0) return;
            capture_ = under;
            if (buttons == 1 && takes_focus(under)) focus_ = under;
            const Element& e = at(under);
            if (e.kind == ElementKind::UpDown) {
                // The arrows take the press themselves: the upper one moves towards Max.
                if (buttons == 1) arrow(under, ly < e.height / 2);
                return;
            }
            if (e.kind == ElementKind::CheckBox) return;  // it clicks on the release
            deliver_mouse(under, action, buttons, shift, x, y);
            return;
        }
        case PointerAction::Move: {
            const int target = capture_ >= 0 ? capture_ : under;
            if (target < 0) return;
            const ElementKind kind = at(target).kind;
            if (kind == ElementKind::UpDown || kind == ElementKind::CheckBox) return;
            deliver_mouse(target, action, buttons, shift, x, y);
            return;
        }
        case PointerAction::Up: {
            const int target = capture_ >= 0 ? capture_ : under;
            capture_ = -1;
            if (target < 0) return;
            const Element& e = at(target);
            if (e.kind == ElementKind::CheckBox) {
                // A press and a release on the same box, with the left button, is a click.
                if (buttons == 1 && under == target) click(target);
                return;
            }
            if (e.kind == ElementKind::UpDown) return;
            deliver_mouse(target, action, buttons, shift, x, y);
            return;
        }
    }
}

void Panel::click(int id) {
    Element& e = mut(id);
    if (e.kind != ElementKind::CheckBox) vb::raise_error(vb::kInvalidCall);
    set_check_value(id, e.check_value == 0 ? std::int16_t{1} : std::int16_t{0});
}

void Panel::arrow(int id, bool up) {
    const Element& e = at(id);
    if (e.kind != ElementKind::UpDown) vb::raise_error(vb::kInvalidCall);
    const std::int64_t end = up ? e.max : e.min;
    const std::int64_t v = e.value;
    if (v == end) return;
    // One Increment towards that end, stopping at it.
    const std::int64_t next =
        end > v ? std::min(v + e.increment, end) : std::max(v - e.increment, end);
    Element& m = mut(id);
    m.value = static_cast<std::int32_t>(next);
    touch(m);
    raise(&m, Event::Change);
}

void Panel::changed_since(std::uint64_t since, std::vector<std::int32_t>& ids) const {
    ids.clear();
    for (std::size_t i = 0; i < elements_.size(); ++i)
        if (elements_[i].revision > since) ids.push_back(static_cast<std::int32_t>(i));
}

}  // namespace panel
