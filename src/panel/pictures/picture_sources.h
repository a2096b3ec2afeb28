// Which pixel map is which picture of the panel, and the size the panel's layout gives it.
#pragma once

#include <span>
#include <string_view>

namespace picture_compiler {

struct PictureSource {
    std::string_view role;  // a PictureRole enumerator
    int offset;             // added to it: heading picture k is Heading0 + k
    std::string_view file;  // the pixel map, in the pictures' folder
    int width, height;
};

std::span<const PictureSource> picture_sources();

}  // namespace picture_compiler
