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

TEST(WheelPictures, LineIsTheExactStripeAndDrumIsBlackInsideAFaceRim) {
    const Picture line(PictureRole::WheelLine);
    std::vector<std::uint32_t> stripe(3, kBlack);
    stripe.push_back(0xBFBFBF);
    stripe.insert(stripe.end(), 18, kWhite);
    stripe.push_back(0xBFBFBF);
    stripe.insert(stripe.end(), 3, kBlack);
    stripe.push_back(kFace);
    ASSERT_EQ(line.w(), static_cast<int>(stripe.size()));
    for (int x = 0; x < line.w(); ++x)
        EXPECT_EQ(line.at(x, 0), stripe[x]) << x;

    const Picture drum(PictureRole::WheelDrum);
    for (int y = 0; y < drum.h(); ++y)
        for (int x = 0; x < drum.w(); ++x) {
            const bool rim = x == 0 || y == 0 || x == drum.w() - 1 || y == drum.h() - 1;
            ASSERT_EQ(drum.at(x, y), rim ? kFace : kBlack) << x << "," << y;
        }
}

TEST(MotorPictures, StoppedIsExactlyTheBar) {
    const Picture stopped(PictureRole::MotorStopped);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) {
            const bool bar = x >= 4 && x <= 18 && y >= 11 && y <= 13;
            ASSERT_EQ(stopped.at(x, y), bar ? kBlack : kWhite) << x << "," << y;
        }
}

TEST(MotorPictures, ArrowsSpanRowsThreeToNineteenOnAThreePixelShaft) {
    const Picture up(PictureRole::MotorForward), down(PictureRole::MotorBackward);
    for (int y = 0; y < 24; ++y) {
        int black = 0;
        for (int x = 0; x < 24; ++x)
            black += up.at(x, y) == kBlack;
        if (y < 3 || y > 19) {
            EXPECT_EQ(black, 0) << "row " << y;
            continue;
        }
        // The shaft runs through the whole arrow, the head included.
        for (int x = 10; x <= 12; ++x)
            EXPECT_EQ(up.at(x, y), kBlack) << x << "," << y;
    }
    // Below the head only the shaft: 3 pixels wide. The head is at the top.
    int widest_row = 0, widest = 0;
    for (int y = 3; y <= 19; ++y) {
        int black = 0;
        for (int x = 0; x < 24; ++x)
            black += up.at(x, y) == kBlack;
        if (black > widest) widest = black, widest_row = y;
    }
    EXPECT_LT(widest_row, 11);
    for (int x = 0; x < 24; ++x)
        EXPECT_EQ(up.at(x, 19) == kBlack, x >= 10 && x <= 12) << x;
    // Backward is the same arrow turned over within its rows.
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) {
            const std::uint32_t mirrored = y >= 3 && y <= 19 ? up.at(x, 22 - y) : kWhite;
            ASSERT_EQ(down.at(x, y), mirrored) << x << "," << y;
        }
}

TEST(MotorPictures, UseOnlyTheSixteenColourPalette) {
    const std::set<std::uint32_t> palette = {
        0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
        0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    for (PictureRole role :
         {PictureRole::MotorStopped, PictureRole::MotorForward, PictureRole::MotorBackward})
        for (std::uint32_t c : Picture(role).colours())
            EXPECT_TRUE(palette.count(c)) << static_cast<int>(role) << std::hex << " " << c;
}

// The LED's disc: the pixels of red hue (red well above green), which grey, white and the dark
// LED's pale body are not.
bool reddish(std::uint32_t c) {
    return red(c) > green(c) + 60;
}

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
    // Every row and column of the disc ends on the rim: red never meets the square directly.
    for (int y = top; y <= bottom; ++y) {
        int first = -1, last = -1;
        for (int x = left; x <= right; ++x)
            if (reddish(lit.at(x, y))) last = x, first = first < 0 ? x : first;
        EXPECT_EQ(lit.at(first, y), 0x87181Cu) << "row " << y;
        EXPECT_EQ(lit.at(last, y), 0x87181Cu) << "row " << y;
    }
    for (int x = left; x <= right; ++x) {
        int first = -1, last = -1;
        for (int y = top; y <= bottom; ++y)
            if (reddish(lit.at(x, y))) last = y, first = first < 0 ? y : first;
        EXPECT_EQ(lit.at(x, first), 0x87181Cu) << "column " << x;
        EXPECT_EQ(lit.at(x, last), 0x87181Cu) << "column " << x;
    }
    const int cx = (left + right) / 2, cy = (top + bottom) / 2;
    EXPECT_EQ(lit.at(cx, cy), 0xFF0000u);
    EXPECT_GT(lit.count(0xFF0000), lit.count(0xBA0000));
    EXPECT_GT(lit.count(0xBA0000), 0);
    // The highlight: white inside the disc, above its centre.
    int highlight = 0;
    for (int y = top; y < cy; ++y)
        for (int x = left + 3; x <= right - 3; ++x)
            highlight += lit.at(x, y) == kWhite;
    EXPECT_GT(highlight, 0);
}

TEST(LedPictures, DarkIsTheSameSquareOneRowUpWithAnUnlitDisc) {
    const Picture lit(PictureRole::LedLit), dark(PictureRole::LedDark);
    EXPECT_EQ(dark.count(0xFF0000), 0);
    EXPECT_EQ(dark.count(0xBA0000), 0);
    EXPECT_GT(dark.count(0xFFD6D6), 0);
    // Shown one row apart, the two coincide except in the disc, whose centre is pale grey.
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
    // The grey square reaches from the first column to the last.
    EXPECT_NE(dark.at(0, (top + bottom) / 2), kWhite);
    EXPECT_NE(dark.at(dark.w() - 1, (top + bottom) / 2), kWhite);
}

}  // namespace
