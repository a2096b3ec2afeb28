// An arena: the floor the robot drives on, with its lines, walls, lights and named zones, read
// from a `.world` file. Millimetres and degrees; x to the right, y up, headings anticlockwise
// from +x.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "floor_geometry.h"

namespace world {

// The robot's place on the floor: its centre and its heading in radians.
struct Pose {
    Vec centre;
    double heading = 0;
};

struct Line {
    double width = 0;
    std::vector<Vec> points;  // the path, two points or more
};

struct Light {
    Vec at;
    double intensity = 0;  // 0 to 1
};

struct Zone {
    std::string name;
    Vec corner;  // lower left
    double width = 0, height = 0;
    bool contains(Vec p) const {
        return p.x >= corner.x && p.x <= corner.x + width && p.y >= corner.y &&
               p.y <= corner.y + height;
    }
};

struct Arena {
    double width = 0, height = 0;
    Pose start;
    std::vector<Line> lines;
    // Every wall, the four sides of the floor first.
    std::vector<Segment> walls;
    std::vector<Light> lights;
    std::vector<Zone> zones;

    const Zone* zone(std::string_view name) const;
};

// Why a file was refused: the line (1 for the first) and what is wrong there.
struct ArenaError {
    int line = 0;
    std::string text;
};

// Reads an arena from the text of a `.world` file: the arena whole, or the first fault and
// nothing.
struct ArenaReading {
    std::optional<Arena> arena;
    ArenaError error;
};
ArenaReading read_arena(std::string_view text);

// The robot's body radius and the distance between its wheels.
inline constexpr double kBodyRadius = 60;
inline constexpr double kWheelBase = 100;

}  // namespace world
