#include "panel/colours.h"

namespace panel {

namespace {

constexpr std::uint32_t kSystem = 0x80000000;

struct SystemColour {
    std::uint32_t colour;
    std::uint32_t rgb;  // 0xRRGGBB
};

// The display's scheme: light windows, beige buttons.
constexpr SystemColour kSystemColours[] = {
    {kWindowBackground, 0xFFFFFF}, {0x80000006, 0x000000},  // window frame
    {kWindowText, 0x000000},       {kButtonFace, 0xECE9D8},
    {kButtonShadow, 0xACA899},     {kButtonText, 0x000000},
    {kButtonHighlight, 0xFFFFFF},  {0x80000015, 0x716F64},  // the dark shadow of a 3-D edge
    {0x80000016, 0xF1EFE2},                                 // the light of a 3-D edge
};

kestrone::Rgba opaque(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return {r, g, b, 255};
}

}  // namespace

kestrone::Rgba resolve_colour(std::uint32_t colour) {
    if ((colour & kSystem) == 0)
        return opaque(static_cast<std::uint8_t>(colour), static_cast<std::uint8_t>(colour >> 8),
                      static_cast<std::uint8_t>(colour >> 16));
    for (const SystemColour& s : kSystemColours)
        if (s.colour == colour)
            return opaque(static_cast<std::uint8_t>(s.rgb >> 16),
                          static_cast<std::uint8_t>(s.rgb >> 8), static_cast<std::uint8_t>(s.rgb));
    return opaque(0, 0, 0);
}

}  // namespace panel
