// Plane geometry of the floor, in millimetres: points, segments, the distance between them and a
// ray's first hit. Angles are in radians unless a name says degrees.
#pragma once

#include <cmath>
#include <optional>

namespace world {

inline constexpr double kPi = 3.14159265358979323846;

struct Vec {
    double x = 0, y = 0;
    friend Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y}; }
    friend Vec operator-(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
    friend Vec operator*(double k, Vec a) { return {k * a.x, k * a.y}; }
    bool operator==(const Vec&) const = default;
};

inline double dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y;
}
inline double cross(Vec a, Vec b) {
    return a.x * b.y - a.y * b.x;
}
inline double length(Vec a) {
    return std::hypot(a.x, a.y);
}
// The unit vector at `angle` from +x, anticlockwise.
inline Vec direction(double angle) {
    return {std::cos(angle), std::sin(angle)};
}

struct Segment {
    Vec a, b;
};

// The point of `s` nearest to `p`.
Vec nearest_point(const Segment& s, Vec p);
double distance(const Segment& s, Vec p);
// How far along the ray from `from` in the unit direction `dir` it first meets `s`; nullopt when
// it passes by. A ray that runs along the segment meets it at its nearer end.
std::optional<double> ray_hit(Vec from, Vec dir, const Segment& s);

// An angle brought into (-pi, pi].
double wrap_angle(double radians);
inline double radians(double degrees) {
    return degrees * kPi / 180.0;
}
inline double degrees(double radians) {
    return radians * 180.0 / kPi;
}

}  // namespace world
