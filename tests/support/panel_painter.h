// A view for the tests: paints the panel from IKestronePanel alone, back to front, each element by
// its style and cut at its box and clip, into an RGBA image of the panel's size. Text is marked
// rather than drawn: each character is a block of the fore colour inside its cell.
#pragma once

#include <vector>

#include "kestrone/panel.h"

namespace testing_support {

// Whole pixels; right and bottom are the first outside.
struct PixelBox {
    int left = 0, top = 0, right = 0, bottom = 0;
};

// A rectangle as this view paints it: each edge at the nearest pixel.
PixelBox pixel_box(const kestrone::PanelRect& r);

struct PanelImage {
    int width = 0, height = 0;
    std::vector<kestrone::Rgba> pixels;  // rows top first
    kestrone::Rgba at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y * width + x)];
    }
};

// A picture as the panel hands it out.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgba;
    kestrone::Rgba at(int x, int y) const;
};
kestrone::HRESULT get_picture(kestrone::IKestronePanel& panel, std::uint32_t id, Picture* out);

// S_OK with the painting, or the first failure the panel gave.
kestrone::HRESULT paint_panel(kestrone::IKestronePanel& panel, PanelImage* image);

}  // namespace testing_support
