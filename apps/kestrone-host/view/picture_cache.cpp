#include "picture_cache.h"

#include <cstring>

namespace panelqt {

QImage image_from_rgba(std::int32_t width, std::int32_t height,
                       const std::vector<std::uint8_t>& rgba) {
    if (width <= 0 || height <= 0) return {};
    const auto row_bytes = static_cast<std::size_t>(width) * 4;
    if (rgba.size() != row_bytes * static_cast<std::size_t>(height)) return {};
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y)
        std::memcpy(image.scanLine(y), rgba.data() + row_bytes * static_cast<std::size_t>(y),
                    row_bytes);
    return image;
}

const QImage* PictureCache::get(kestrone::IKestronePanel& panel, std::uint32_t picture) {
    if (picture == 0) return nullptr;
    if (auto it = images_.find(picture); it != images_.end())
        return it->second.isNull() ? nullptr : &it->second;
    std::int32_t width = 0, height = 0;
    std::vector<std::uint8_t> rgba;
    QImage image;
    if (panel.GetPicture(picture, &width, &height, &rgba) == kestrone::S_OK)
        image = image_from_rgba(width, height, rgba);
    // A picture the panel refuses is remembered as missing, so it is not asked for on every paint.
    const QImage& kept = images_.emplace(picture, std::move(image)).first->second;
    return kept.isNull() ? nullptr : &kept;
}

}  // namespace panelqt
