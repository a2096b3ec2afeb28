#include "world.h"

#include "motion.h"
#include "user_file.h"

namespace world {

namespace {
// A trail point every this many millimetres keeps a long run's trail small.
constexpr double kTrailSpacing = 2;
// And no more than this many: the oldest half goes when it is full.
constexpr std::size_t kTrailLimit = 200000;
}  // namespace

bool World::load_file(const std::string& path, std::string* error) {
    std::string text, why;
    if (!host::read_user_file(path, host::kLargestTextFile, "an arena", &text, &why)) {
        if (error) *error = path + ": cannot read the file: " + why;
        return false;
    }
    return load_text(text, path, error);
}

bool World::load_text(std::string_view text, const std::string& name, std::string* error) {
    ArenaReading reading = read_arena(text);
    if (!reading.arena) {
        if (error)
            *error = name + ":" + std::to_string(reading.error.line) + ": " + reading.error.text;
        return false;
    }
    arena_ = std::move(reading.arena);
    ++arena_revision_;
    reset();
    return true;
}

void World::unload() {
    arena_.reset();
    ++arena_revision_;
    trail_.clear();
    ++revision_;
}

void World::reset() {
    if (!arena_) return;
    pose_ = arena_->start;
    restart_trail();
}

void World::restart_trail() {
    trail_.assign(1, pose_.centre);
    ++revision_;
}

bool World::step(double left_speed, double right_speed) {
    const Pose next = drive(pose_, left_speed, right_speed, kStepMs / 1000.0);
    if (!clear_of_walls(*arena_, next.centre)) return false;
    if (next.centre == pose_.centre && next.heading == pose_.heading) return true;
    pose_ = next;
    if (trail_.empty() || length(pose_.centre - trail_.back()) >= kTrailSpacing) {
        if (trail_.size() >= kTrailLimit)
            trail_.erase(trail_.begin(), trail_.begin() + kTrailLimit / 2);
        trail_.push_back(pose_.centre);
    }
    ++revision_;
    return true;
}

bool World::place(const Pose& pose) {
    if (!arena_ || !clear_of_walls(*arena_, pose.centre)) return false;
    const Vec c = pose.centre;
    if (c.x < 0 || c.y < 0 || c.x > arena_->width || c.y > arena_->height) return false;
    pose_ = {c, wrap_angle(pose.heading)};
    restart_trail();
    return true;
}

double nearest_whole(double x) {
    // The default rounding mode is to nearest, ties to even; nearbyint keeps to it.
    return std::nearbyint(x);
}

WholePose whole_pose(const Pose& pose) {
    WholePose w;
    w.x = static_cast<std::int32_t>(nearest_whole(pose.centre.x));
    w.y = static_cast<std::int32_t>(nearest_whole(pose.centre.y));
    const auto deg = static_cast<std::int32_t>(nearest_whole(degrees(pose.heading)));
    w.heading = ((deg % 360) + 360) % 360;
    return w;
}

}  // namespace world
