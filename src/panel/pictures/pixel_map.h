// A picture's source: an XPM-style pixel map (a header, a palette of keyed colours, then one
// quoted text row per pixel row), read into RGBA pixels. Only the subset our pictures use is
// accepted, and anything else is refused with the line it stands on, so that a slip in a hand
// edit stops the build instead of showing as a wrong pixel.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace picture_compiler {

struct PixelMap {
    int width = 0, height = 0;
    int header_line = 0;             // the line of the "width height colours chars" header
    std::vector<std::uint8_t> rgba;  // height rows of width pixels, top first, 4 bytes a pixel
};

struct PixelMapResult {
    PixelMap map;
    int error_line = 0;  // 1-based; 0 with an error means the text as a whole
    std::string error;   // empty when the map was read
    bool ok() const { return error.empty(); }
};

// Reads the text of a pixel map. Colours are "#RRGGBB"; every pixel is opaque.
PixelMapResult parse_pixel_map(std::string_view text);

}  // namespace picture_compiler
