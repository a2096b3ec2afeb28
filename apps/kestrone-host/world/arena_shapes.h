// The floor's items as the editor handles them: which one lies under the pointer, and one moved.
#pragma once

#include <optional>

#include "arena_document.h"

namespace world {

// How far `p` lies from what is drawn of the shape: a line's stroke, a light's halo, a wall; a
// zone is its whole rectangle.
double distance(const Shape& shape, Vec p);
// The item under `p`: the nearest within `reach` that is not a zone, else the last zone that holds
// `p` (the last drawn lies on top).
std::optional<std::size_t> item_at(const ArenaDocument& document, Vec p, double reach);
Shape moved(const Shape& shape, Vec by);
// What a light is drawn as, a disc of this radius.
inline constexpr double kLightRadius = 40;

}  // namespace world
