// Reading a compiled picture in tests: colours as 0xRRGGBB, counted and collected.
#pragma once

#include <algorithm>
#include <cstdint>
#include <set>

#include "panel/pictures/compiled_pictures.h"

namespace picture_testing {

using kestrone::PictureRole;

constexpr std::uint32_t kWhite = 0xFFFFFF, kBlack = 0x000000, kFace = 0xECE9D8;

inline PictureRole heading(int k) {
    return panel::pictures::role_at(PictureRole::Heading0, k);
}

// A picture read as 0xRRGGBB colours.
struct Picture {
    const panel::PictureData* data;
    explicit Picture(PictureRole role) : data(panel::picture_data(role)) {}
    int w() const { return data->width; }
    int h() const { return data->height; }
    std::uint32_t at(int x, int y) const {
        const std::uint8_t* p = data->rgba + 4 * (static_cast<std::size_t>(y) * data->width + x);
        return std::uint32_t{p[0]} << 16 | std::uint32_t{p[1]} << 8 | p[2];
    }
    // The pixels whose colour passes `test` in the columns x0 to x1 and the rows y0 to y1.
    template <class Test>
    int count_if(Test test, int x0 = 0, int y0 = 0, int x1 = 1 << 20, int y1 = 1 << 20) const {
        int n = 0;
        for (int y = y0; y <= std::min(y1, h() - 1); ++y)
            for (int x = x0; x <= std::min(x1, w() - 1); ++x)
                n += test(at(x, y));
        return n;
    }
    int count(std::uint32_t colour, int x0 = 0, int y0 = 0, int x1 = 1 << 20,
              int y1 = 1 << 20) const {
        return count_if([colour](std::uint32_t c) { return c == colour; }, x0, y0, x1, y1);
    }
    std::set<std::uint32_t> colours() const {
        std::set<std::uint32_t> out;
        for (int y = 0; y < h(); ++y)
            for (int x = 0; x < w(); ++x)
                out.insert(at(x, y));
        return out;
    }
};

inline int red(std::uint32_t c) {
    return static_cast<int>(c >> 16);
}
inline int green(std::uint32_t c) {
    return static_cast<int>(c >> 8 & 0xFF);
}
inline int blue(std::uint32_t c) {
    return static_cast<int>(c & 0xFF);
}

}  // namespace picture_testing
