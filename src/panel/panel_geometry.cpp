#include "panel/panel_geometry.h"

#include <algorithm>

namespace panel {

// The conversions here are the toolkit's own placing of elements, not the program's Single
// arithmetic: plain float operations, as the pointer's coordinates come in.

float twips_per_unit(int container, float twips_per_pixel) {
    return container < 0 ? twips_per_pixel : 1.0f;
}

namespace {

PanelRect panel_rect(const Panel& p) {
    return {0, 0, p.width_twips() / p.twips_per_pixel(), p.height_twips() / p.twips_per_pixel()};
}

PanelRect intersect(const PanelRect& a, const PanelRect& b) {
    const float left = std::max(a.left, b.left), top = std::max(a.top, b.top);
    const float right = std::min(a.left + a.width, b.left + b.width);
    const float bottom = std::min(a.top + a.height, b.top + b.height);
    return {left, top, std::max(right - left, 0.0f), std::max(bottom - top, 0.0f)};
}

bool inside_panel(const Panel& p, float x, float y) {
    const PanelRect r = panel_rect(p);
    return x >= 0 && y >= 0 && x < r.width && y < r.height;
}

void emit(const std::vector<Element>& elements, int id, std::vector<int>& out) {
    const Element& e = elements[static_cast<std::size_t>(id)];
    if (e.style == ElementStyle::None) return;
    out.push_back(id);
    for (auto it = e.children.rbegin(); it != e.children.rend(); ++it)
        emit(elements, *it, out);
}

}  // namespace

PanelRect element_box(const Panel& p, int id) {
    const Element& e = p.at(id);
    float left = 0, top = 0;
    if (e.container >= 0) {
        const PanelRect c = element_box(p, e.container);
        left = c.left;
        top = c.top;
    }
    // A container's units to panel pixels.
    const float units = p.twips_per_pixel() / twips_per_unit(e.container, p.twips_per_pixel());
    return {left + e.left / units, top + e.top / units, e.width / units, e.height / units};
}

PanelRect element_clip(const Panel& p, int id) {
    const int c = p.at(id).container;
    if (c < 0) return panel_rect(p);
    return intersect(element_box(p, c), element_clip(p, c));
}

bool element_shown(const Panel& p, int id) {
    const Element& e = p.at(id);
    return e.visible && (e.container < 0 || element_shown(p, e.container));
}

void to_container(const Panel& p, int container, float x, float y, float* cx, float* cy) {
    if (container < 0) {
        *cx = x;
        *cy = y;
        return;
    }
    // A frame's coordinates are twips from its corner.
    const Element& f = p.at(container);
    float px = 0, py = 0;
    to_container(p, f.container, x, y, &px, &py);
    const float scale = twips_per_unit(f.container, p.twips_per_pixel());
    *cx = (px - f.left) * scale;
    *cy = (py - f.top) * scale;
}

void to_local(const Panel& p, int id, float x, float y, float* lx, float* ly) {
    const Element& e = p.at(id);
    if (e.kind == ElementKind::Frame) return to_container(p, id, x, y, lx, ly);
    float cx = 0, cy = 0;
    to_container(p, e.container, x, y, &cx, &cy);
    *lx = cx - e.left;
    *ly = cy - e.top;
}

bool covers(const Panel& p, int id, float x, float y) {
    const Element& e = p.at(id);
    float cx = 0, cy = 0;
    to_container(p, e.container, x, y, &cx, &cy);
    if (!(cx >= e.left && cx < e.left + e.width && cy >= e.top && cy < e.top + e.height))
        return false;
    return e.container < 0 ? inside_panel(p, x, y) : covers(p, e.container, x, y);
}

std::vector<int> back_to_front(const std::vector<Element>& elements,
                               const std::vector<int>& top_level) {
    std::vector<int> out;
    for (auto it = top_level.rbegin(); it != top_level.rend(); ++it)
        emit(elements, *it, out);
    return out;
}

}  // namespace panel
