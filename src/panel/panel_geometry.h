// The panel's geometry in one place. Each element keeps its place in its container's units, as the
// runtime gives them to the logic: pixels for the panel's own elements, twips inside a frame. From
// those come its rectangle in panel pixels, the clip its containers impose, and a point of the
// pointer in any element's coordinates.
#pragma once

#include <vector>

#include "kestrone/panel.h"
#include "panel/panel_model.h"

namespace panel {

using kestrone::PanelRect;

// The twips in one unit of a container's coordinates (-1: the panel, whose scale is pixels).
float twips_per_unit(int container, float twips_per_pixel);

// Element `id`'s rectangle in panel pixels.
PanelRect element_box(const Panel& p, int id);
// What the panel's edges and every container of element `id` leave of the panel.
PanelRect element_clip(const Panel& p, int id);
// Visible, and so is every container that holds it.
bool element_shown(const Panel& p, int id);

// A point in panel pixels in the coordinates of `container` (-1: the panel itself).
void to_container(const Panel& p, int container, float x, float y, float* cx, float* cy);
// A point in panel pixels in element `id`'s own coordinates: a frame's are twips from its corner
// (also at the panel's top level), any other element's are its container's units from its corner.
void to_local(const Panel& p, int id, float x, float y, float* lx, float* ly);
// The point lies on element `id`, inside its clip.
bool covers(const Panel& p, int id, float x, float y);

// Every element but the timers, back to front: the panel's own elements from the back, each
// frame followed by its own elements from the back. `top_level` is front to back.
std::vector<int> back_to_front(const std::vector<Element>& elements,
                               const std::vector<int>& top_level);

}  // namespace panel
