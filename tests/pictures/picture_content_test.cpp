// The compiled pictures: every role has its picture at the panel's size, and the colours and
// shapes that the panel's look depends on are where they must be.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "pictures/picture_view.h"

namespace {

using namespace picture_testing;

TEST(PictureTable, EveryRoleHasAnOpaquePictureOfItsElementsSize) {
    struct Size {
        PictureRole role;
        int w, h;
    };
    std::vector<Size> sizes = {
        {PictureRole::LedLit, 23, 27},        {PictureRole::LedDark, 23, 26},
        {PictureRole::MotorStopped, 24, 24},  {PictureRole::MotorForward, 24, 24},
        {PictureRole::MotorBackward, 24, 24}, {PictureRole::WheelDrum, 29, 76},
        {PictureRole::WheelLine, 27, 1},      {PictureRole::BarVertical, 28, 10},
        {PictureRole::BarHorizontal, 10, 28}, {PictureRole::TrackVertical, 12, 80},
        {PictureRole::TrackLeft, 80, 12},     {PictureRole::TrackRight, 80, 12},
        {PictureRole::PushSwitch, 24, 24},    {PictureRole::LineSensor, 30, 24},
        {PictureRole::Logo, 166, 47},
    };
    for (int k = 0; k <= 12; ++k)
        sizes.push_back({heading(k), 64, 72});
    for (const Size& s : sizes) {
        const panel::PictureData* p = panel::picture_data(s.role);
        const int role = static_cast<int>(s.role);
        ASSERT_NE(p, nullptr) << role;
        ASSERT_NE(p->rgba, nullptr) << role;
        EXPECT_EQ(p->width, s.w) << role;
        EXPECT_EQ(p->height, s.h) << role;
        for (std::int32_t i = 0; i < p->width * p->height; ++i)
            ASSERT_EQ(p->rgba[4 * i + 3], 255) << role << " pixel " << i;
    }
    EXPECT_EQ(panel::picture_data(PictureRole::None), nullptr);
    EXPECT_EQ(panel::picture_data(heading(13)), nullptr);
}

// Forward: rows 3 to 19, the shaft 3 pixels wide through all of them and alone in the last, the
// head, widest, in the upper half. Backward is the same arrow turned over within its rows.
TEST(MotorPictures, ArrowsSpanRowsThreeToNineteenOnAThreePixelShaft) {
    const Picture up(PictureRole::MotorForward), down(PictureRole::MotorBackward);
    int widest_row = 0;
    for (int y = 0; y < 24; ++y) {
        const int black = up.count(kBlack, 0, y, 23, y);
        EXPECT_EQ(black > 0, y >= 3 && y <= 19) << "row " << y;
        if (black > 0) {
            EXPECT_EQ(up.count(kBlack, 10, y, 12, y), 3) << "row " << y;
        }
        if (black > up.count(kBlack, 0, widest_row, 23, widest_row)) widest_row = y;
        for (int x = 0; x < 24; ++x)
            ASSERT_EQ(down.at(x, y), y >= 3 && y <= 19 ? up.at(x, 22 - y) : kWhite)
                << x << "," << y;
    }
    EXPECT_LT(widest_row, 11);
    EXPECT_EQ(up.count(kBlack, 0, 19, 23, 19), 3);
}

// The LED's disc: the pixels of red hue (red well above green), which grey, white and the dark
// LED's pale body are not.
bool reddish(std::uint32_t c) {
    return red(c) > green(c) + 60;
}

// The lit disc: red, every row and column of it ending on the rim so that red never meets the
// square directly, a darker band, and a white highlight above the centre.
TEST(LedPictures, LitDiscIsRedWithItsRimBandAndHighlight) {
    const Picture lit(PictureRole::LedLit);
    int left = lit.w(), right = -1, top = lit.h(), bottom = -1;
    for (int y = 0; y < lit.h(); ++y)
        for (int x = 0; x < lit.w(); ++x)
            if (reddish(lit.at(x, y))) {
                left = std::min(left, x), right = std::max(right, x);
                top = std::min(top, y), bottom = std::max(bottom, y);
            }
    ASSERT_GE(right - left, 10);
    ASSERT_GE(bottom - top, 10);
    // From (x, y) on along (dx, dy): the first and the last reddish pixel.
    const auto ends = [&](int x, int y, int dx, int dy) {
        std::vector<std::uint32_t> seen;
        for (; x <= right && y <= bottom; x += dx, y += dy)
            if (reddish(lit.at(x, y))) seen.push_back(lit.at(x, y));
        return seen.empty() ? std::pair(0u, 0u) : std::pair{seen.front(), seen.back()};
    };
    for (int y = top; y <= bottom; ++y)
        EXPECT_EQ(ends(left, y, 1, 0), std::pair(0x87181Cu, 0x87181Cu)) << "row " << y;
    for (int x = left; x <= right; ++x)
        EXPECT_EQ(ends(x, top, 0, 1), std::pair(0x87181Cu, 0x87181Cu)) << "column " << x;
    const int cx = (left + right) / 2, cy = (top + bottom) / 2;
    EXPECT_EQ(lit.at(cx, cy), 0xFF0000u);
    EXPECT_GT(lit.count(0xFF0000), lit.count(0xBA0000));
    EXPECT_GT(lit.count(0xBA0000), 0);
    EXPECT_GT(lit.count(kWhite, left + 3, top, right - 3, cy - 1), 0);
}

// Shown one row apart, the dark and the lit LED coincide except in the disc, unlit: its centre
// pale grey, and the grey square reaching from the first column to the last.
TEST(LedPictures, DarkIsTheSameSquareOneRowUpWithAnUnlitDisc) {
    const Picture lit(PictureRole::LedLit), dark(PictureRole::LedDark);
    EXPECT_EQ(dark.count(0xFF0000) + dark.count(0xBA0000), 0);
    EXPECT_GT(dark.count(0xFFD6D6), 0);
    int differ = 0, left = dark.w(), right = -1, top = dark.h(), bottom = -1;
    for (int y = 0; y < dark.h(); ++y)
        for (int x = 0; x < dark.w(); ++x) {
            if (dark.at(x, y) == lit.at(x, y + 1)) continue;
            ++differ;
            EXPECT_TRUE(reddish(lit.at(x, y + 1)) || lit.at(x, y + 1) == kWhite) << x << "," << y;
            left = std::min(left, x), right = std::max(right, x);
            top = std::min(top, y), bottom = std::max(bottom, y);
        }
    ASSERT_GT(differ, 50);
    EXPECT_EQ(dark.at((left + right) / 2, (top + bottom) / 2), 0xC6D3D3u);
    EXPECT_GT(dark.count(0xC6D3D3), differ / 2);
    EXPECT_NE(dark.at(0, (top + bottom) / 2), kWhite);
    EXPECT_NE(dark.at(dark.w() - 1, (top + bottom) / 2), kWhite);
}

}  // namespace
