// Where and how an element is painted, from the element alone: its rectangle, clip and place in
// the paint order, its style and its colours resolved.
#pragma once

#include "kestrone/panel.h"
#include "panel/panel_model.h"

namespace panel {

kestrone::ElementView element_view(const Panel& p, int id);

}  // namespace panel
