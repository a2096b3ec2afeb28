// A part of a layout in coordinates of its own: its axis at x 0, its top at y 0. Parts are
// measured first and then placed inside the part that holds them.
#pragma once

#include <utility>
#include <vector>

#include "chart_layout.h"

namespace chart {

struct Fragment {
    std::vector<Icon> icons;
    std::vector<Path> ways;
    std::vector<Note> notes;
    std::vector<std::pair<int, int>> lines;  // (line, icon)
    int left = 0;                            // the extent left of the axis, 0 or less
    int right = 0;                           // and right of it
    int height = 0;                          // from the top
    int entry = -1;                          // the icon the way in reaches
    int exit = -1;  // the icon the way out leaves from; -1 when the flow does not go on

    // Takes `part` in with its axis at `dx` and its top at `dy`; the index its icons start at.
    int place(Fragment&& part, int dx, int dy);
    // The extents measured again from everything in it.
    void measure();
    // A way straight down at `x`, from the bottom of icon `from` to the top of icon `to`.
    void add_down(int x, int from, int to, std::optional<Way> place,
                  WayLabel label = WayLabel::None);
};

}  // namespace chart
