// The panel's elements as the panel's data place them.
#pragma once

#include <vector>

#include "panel/panel_model.h"

namespace panel {

// Appends every element; `top_level` gets the panel's own elements front to back. Geometry of
// the panel's own elements is in pixels at `twips_per_pixel`, of a frame's children in twips.
void build_layout(std::vector<Element>& elements, std::vector<int>& top_level,
                  float twips_per_pixel);

}  // namespace panel
