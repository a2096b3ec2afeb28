// Stand-in pictures until the drawn ones come: each of the size of its picture, in two tones (the
// top half and the bottom half), a different pair for every picture.
#include <array>
#include <vector>

#include "panel/panel.h"  // declares the role that the pictures header names
#include "panel/picture_data.h"

namespace panel {

namespace {

using P = PictureRole;

struct Placeholder {
    P role;
    std::int32_t width, height;
    std::uint32_t top, bottom;  // 0xRRGGBB
};

constexpr Placeholder kPlaceholders[] = {
    {P::LedLit, 23, 27, 0xFF0000, 0x87181C},        {P::LedDark, 23, 26, 0xC6D3D3, 0x5A6060},
    {P::MotorStopped, 24, 24, 0x202020, 0xF0F0F0},  {P::MotorForward, 24, 24, 0x303030, 0xD0E0F0},
    {P::MotorBackward, 24, 24, 0xE0D0C0, 0x404040}, {P::WheelDrum, 29, 76, 0x000000, 0x101010},
    {P::WheelLine, 27, 1, 0xFFFFFF, 0xFFFFFF},      {P::BarVertical, 28, 10, 0x00D10E, 0x006D02},
    {P::BarHorizontal, 10, 28, 0x00B00A, 0x005A01}, {P::TrackVertical, 12, 80, 0x007F0E, 0xF8FFF8},
    {P::TrackLeft, 80, 12, 0x20A030, 0xE8F8E8},     {P::TrackRight, 80, 12, 0xE0F0E0, 0x106020},
    {P::PushSwitch, 24, 24, 0xB0B0B0, 0xC07030},    {P::LineSensor, 30, 24, 0x0000A7, 0x505050},
    {P::Logo, 166, 47, 0xFAFAFA, 0x181818},
};

constexpr int kHeadings = 13;
constexpr std::int32_t kHeadingWidth = 64, kHeadingHeight = 72;
constexpr std::size_t kCount = std::size(kPlaceholders) + kHeadings;

void fill(std::vector<std::uint8_t>& rgba, std::int32_t width, std::int32_t height,
          std::uint32_t top, std::uint32_t bottom) {
    rgba.clear();
    for (std::int32_t y = 0; y < height; ++y) {
        const std::uint32_t c = 2 * y < height ? top : bottom;
        for (std::int32_t x = 0; x < width; ++x)
            rgba.insert(rgba.end(),
                        {static_cast<std::uint8_t>(c >> 16), static_cast<std::uint8_t>(c >> 8),
                         static_cast<std::uint8_t>(c), 255});
    }
}

struct Store {
    std::array<std::vector<std::uint8_t>, kCount> pixels;
    std::array<PictureData, kCount> pictures;
    std::array<P, kCount> roles;

    Store() {
        std::size_t i = 0;
        for (const Placeholder& p : kPlaceholders)
            add(i++, p.role, p.width, p.height, p.top, p.bottom);
        // Heading k: a darker top for a higher k, a white bottom.
        for (int k = 0; k < kHeadings; ++k)
            add(i++, static_cast<P>(static_cast<int>(P::Heading0) + k), kHeadingWidth,
                kHeadingHeight, 0x0A0A00u * static_cast<std::uint32_t>(20 - k), 0xFFFFFF);
    }
    void add(std::size_t i, P role, std::int32_t w, std::int32_t h, std::uint32_t top,
             std::uint32_t bottom) {
        fill(pixels[i], w, h, top, bottom);
        pictures[i] = {w, h, pixels[i].data()};
        roles[i] = role;
    }
};

}  // namespace

const PictureData* picture_data(PictureRole role) {
    static const Store store;
    for (std::size_t i = 0; i < kCount; ++i)
        if (store.roles[i] == role) return &store.pictures[i];
    return nullptr;
}

}  // namespace panel
