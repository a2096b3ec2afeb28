// The world the robot drives in: an arena loaded from a file, the robot's pose on it and the
// trail of its path. It knows nothing of the component: a driver reads the wheels' speeds and
// sets the panel's inputs from the readings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "arena.h"
#include "sensors.h"

namespace world {

class World {
  public:
    // Loads the file's arena and puts the robot at its start. False with `error` as
    // "FILE:LINE: TEXT" (or the file that can't be read): the world is then as it was.
    bool load_file(const std::string& path, std::string* error);
    // The same from text, `name` standing for the file in an error.
    bool load_text(std::string_view text, const std::string& name, std::string* error);
    void unload();
    bool loaded() const { return arena_.has_value(); }
    // Only while loaded.
    const Arena& arena() const { return *arena_; }

    const Pose& pose() const { return pose_; }
    // The robot back at its start; the trail starts again.
    void reset();
    // One step of kStepMs at these wheel speeds (mm/s). A step that would bring the body closer
    // than its radius to a wall is not taken: false, and the robot stays.
    bool step(double left_speed, double right_speed);
    // The robot picked up and put down: false (and nothing moves) where the body would not be
    // clear of the walls.
    bool place(const Pose& pose);

    Readings readings() const { return sense(*arena_, pose_); }
    // The centre's path since the last load, reset or placing, a point every few millimetres.
    const std::vector<Vec>& trail() const { return trail_; }
    // Grows with every change of pose, arena or trail, so that a view repaints only then.
    std::uint64_t revision() const { return revision_; }
    // Grows with every load and unload: a view keeps its drawing of the floor until then.
    std::uint64_t arena_revision() const { return arena_revision_; }

  private:
    void restart_trail();
    std::optional<Arena> arena_;
    Pose pose_;
    std::vector<Vec> trail_;
    std::uint64_t revision_ = 0;
    std::uint64_t arena_revision_ = 0;
};

// The pose as the console gives it: whole millimetres and degrees (0 to 359), to the nearest,
// ties to the even one.
struct WholePose {
    std::int32_t x = 0, y = 0, heading = 0;
};
WholePose whole_pose(const Pose& pose);
// To the nearest whole number, ties to the even one.
double nearest_whole(double x);

}  // namespace world
