#include <span>

#include "panel/pictures/compiled_pictures.h"

namespace panel {

const PictureData* picture_data(PictureRole role) {
    for (const auto& picture :
         std::span(pictures::kCompiledPictures, pictures::kCompiledPictureCount))
        if (picture.role == role) return &picture.data;
    return nullptr;
}

}  // namespace panel
