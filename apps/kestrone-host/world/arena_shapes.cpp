#include "arena_shapes.h"

#include <algorithm>
#include <limits>

namespace world {

double distance(const Shape& shape, Vec p) {
    if (const auto* l = std::get_if<Line>(&shape)) {
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t i = 1; i < l->points.size(); ++i)
            nearest = std::min(nearest, distance(Segment{l->points[i - 1], l->points[i]}, p));
        return std::max(0.0, nearest - l->width / 2);
    }
    if (const auto* s = std::get_if<Segment>(&shape)) return distance(*s, p);
    if (const auto* l = std::get_if<Light>(&shape))
        return std::max(0.0, length(p - l->at) - kLightRadius);
    const Zone& z = std::get<Zone>(shape);
    const Vec outside{std::max({z.corner.x - p.x, 0.0, p.x - z.corner.x - z.width}),
                      std::max({z.corner.y - p.y, 0.0, p.y - z.corner.y - z.height})};
    return length(outside);
}

std::optional<std::size_t> item_at(const ArenaDocument& d, Vec p, double reach) {
    std::optional<std::size_t> found, zone;
    double best = reach;
    for (std::size_t i = 0; i < d.items().size(); ++i) {
        const Shape& shape = d.items()[i].shape;
        const double away = distance(shape, p);
        if (std::holds_alternative<Zone>(shape)) {
            if (away == 0) zone = i;
        } else if (away <= best) {
            best = away;
            found = i;
        }
    }
    return found ? found : zone;
}

Shape moved(const Shape& shape, Vec by) {
    Shape out = shape;
    if (auto* l = std::get_if<Line>(&out))
        for (Vec& p : l->points)
            p = p + by;
    if (auto* s = std::get_if<Segment>(&out)) *s = {s->a + by, s->b + by};
    if (auto* l = std::get_if<Light>(&out)) l->at = l->at + by;
    if (auto* z = std::get_if<Zone>(&out)) z->corner = z->corner + by;
    return out;
}

}  // namespace world
