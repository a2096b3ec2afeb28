#include "panel/pictures/compiled_pictures.h"

namespace panel {

const PictureData* picture_data(PictureRole role) {
    for (std::size_t i = 0; i < pictures::kCompiledPictureCount; ++i)
        if (pictures::kCompiledPictures[i].role == role)
            return &pictures::kCompiledPictures[i].data;
    return nullptr;
}

}  // namespace panel
