// Turns the pictures' pixel maps into the C++ source of their pixel arrays, at build time, so
// that the module carries its pictures without reading files when it runs.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "panel/pictures/picture_sources.h"
#include "panel/pictures/pixel_map.h"

namespace picture_compiler {

struct LoadedPicture {
    const PictureSource* source;
    PixelMap map;
};

struct LoadResult {
    std::vector<LoadedPicture> pictures;  // in the table's order
    std::vector<std::string> errors;      // "file:line: what is wrong", one for each bad picture
};

// Reads and checks every picture of the table from `folder`.
LoadResult load_pictures(const std::filesystem::path& folder);

// The C++ source that defines panel::pictures::kCompiledPictures for `pictures`.
std::string compiled_source(const std::vector<LoadedPicture>& pictures);

}  // namespace picture_compiler
