// An arena as the editor holds it: the items of a `.world` file, each remembering the line of the
// opened file it came from, so that what was not edited is written back as it stood, comments and
// all. Size and start come first; the items follow in the file's order, new ones at the end.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "arena.h"

namespace world {

// The robot's start as a file writes it: the heading in degrees, as written.
struct Start {
    Vec at;
    double degrees = 0;
};

// One item of the floor; a wall is a segment.
using Shape = std::variant<Line, Segment, Light, Zone>;

struct DocumentItem {
    Shape shape;
    int source = -1;  // its line in the opened file, 0 for the first; -1 for an item drawn since
    bool changed = false;
};

class ArenaDocument {
  public:
    // A bare floor, the robot in its middle facing +x.
    static ArenaDocument blank(double width, double height);
    // The document of a file's text, or nullopt with the reader's `error`.
    static std::optional<ArenaDocument> read(std::string_view text, ArenaError* error = nullptr);

    double width() const { return width_; }
    double height() const { return height_; }
    const Start& start() const { return start_; }
    const std::vector<DocumentItem>& items() const { return items_; }

    void set_start(const Start& start);
    // The new item's place among the items.
    std::size_t add(Shape shape);
    void replace(std::size_t index, Shape shape);
    void remove(std::size_t index);

    // The arena the document describes, built as the reader builds it.
    Arena arena() const;

    // The opened file as it was read, split at its newlines; none for a new arena.
    const std::vector<std::string>& source_lines() const { return lines_; }
    int size_source() const { return size_source_; }
    int start_source() const { return start_source_; }
    bool start_changed() const { return start_changed_; }

  private:
    double width_ = 0, height_ = 0;
    Start start_;
    std::vector<DocumentItem> items_;
    std::vector<std::string> lines_;
    int size_source_ = -1, start_source_ = -1;
    bool start_changed_ = false;
};

// The first word of a line of a `.world` file, comments aside; empty for a blank or comment line.
std::string_view first_word(std::string_view line);

}  // namespace world
