// The panel's pictures as Qt images, fetched once per picture id: they never change while the
// panel lives, so the cache is cleared only when the panel object is replaced.
#pragma once

#include <QImage>
#include <cstdint>
#include <unordered_map>

#include "kestrone/panel.h"

namespace panelqt {

class PictureCache {
  public:
    // The picture, or nullptr when the panel has none by that id.
    const QImage* get(kestrone::IKestronePanel& panel, std::uint32_t picture);
    void clear() { images_.clear(); }
    std::size_t size() const { return images_.size(); }

  private:
    std::unordered_map<std::uint32_t, QImage> images_;
};

// RGBA rows, top first, as a Qt image; a null image when the sizes and the data disagree.
QImage image_from_rgba(std::int32_t width, std::int32_t height,
                       const std::vector<std::uint8_t>& rgba);

}  // namespace panelqt
