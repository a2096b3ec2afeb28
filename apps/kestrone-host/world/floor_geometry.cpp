#include "floor_geometry.h"

#include <algorithm>

namespace world {

Vec nearest_point(const Segment& s, Vec p) {
    const Vec d = s.b - s.a;
    const double len2 = dot(d, d);
    if (len2 == 0) return s.a;
    const double t = std::clamp(dot(p - s.a, d) / len2, 0.0, 1.0);
    return s.a + t * d;
}

double distance(const Segment& s, Vec p) {
    return length(p - nearest_point(s, p));
}

std::optional<double> ray_hit(Vec from, Vec dir, const Segment& s) {
    const Vec d = s.b - s.a;
    const Vec w = s.a - from;
    const double denom = cross(dir, d);
    if (denom == 0) {
        // Parallel: only a segment on the ray's own line can be met, at its nearer end ahead.
        if (cross(w, dir) != 0) return std::nullopt;
        const double ta = dot(w, dir), tb = dot(s.b - from, dir);
        if (ta < 0 && tb < 0) return std::nullopt;
        if (ta < 0 || tb < 0) return 0.0;
        return std::min(ta, tb);
    }
    const double t = cross(w, d) / denom;    // along the ray
    const double u = cross(w, dir) / denom;  // along the segment
    if (t < 0 || u < 0 || u > 1) return std::nullopt;
    return t;
}

double wrap_angle(double r) {
    r = std::remainder(r, 2 * kPi);
    return r <= -kPi ? r + 2 * kPi : r;
}

}  // namespace world
