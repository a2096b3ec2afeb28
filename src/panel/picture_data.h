// The panel's pictures as plain pixel data: the component owns its looks, so a view paints them
// without knowing the robot. One picture for each PictureRole but None.
#pragma once

#include <cstdint>

#include "kestrone/panel.h"

namespace panel {

// `rgba` holds `height` rows of `width` pixels, top row first, 4 bytes a pixel (red, green, blue,
// alpha), with static storage duration.
struct PictureData {
    std::int32_t width = 0, height = 0;
    const std::uint8_t* rgba = nullptr;
};

// The picture of `role`; null for PictureRole::None or a value that names no picture.
const PictureData* picture_data(kestrone::PictureRole role);

}  // namespace panel
