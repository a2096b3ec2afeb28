// The pictures as the build compiles them from their pixel maps: one entry for each picture
// role, with the pixels in static storage.
#pragma once

#include <cstddef>

#include "kestrone/panel.h"

// picture_data.h names the role as the panel's own code does.
namespace panel {
using kestrone::PictureRole;
}

#include "panel/picture_data.h"

namespace panel::pictures {

struct CompiledPicture {
    PictureRole role;
    PictureData data;
};

constexpr PictureRole role_at(PictureRole base, int offset) {
    return static_cast<PictureRole>(static_cast<int>(base) + offset);
}

extern const CompiledPicture kCompiledPictures[];
extern const std::size_t kCompiledPictureCount;

}  // namespace panel::pictures
