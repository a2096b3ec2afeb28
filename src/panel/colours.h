// The runtime's colours and the display's: 0x00BBGGRR, or 0x80000000 + n for the display's system
// colour n, resolved to red, green, blue and alpha in one table.
#pragma once

#include <cstdint>

#include "kestrone/panel.h"

namespace panel {

inline constexpr std::uint32_t kWindowBackground = 0x80000005, kWindowText = 0x80000008,
                               kButtonFace = 0x8000000F, kButtonShadow = 0x80000010,
                               kButtonText = 0x80000012, kButtonHighlight = 0x80000014;

// Opaque, as the display shows the colour; a system colour the display lacks shows black.
kestrone::Rgba resolve_colour(std::uint32_t colour);

}  // namespace panel
