// The compiled pictures as the panel's look needs them: the pictures shown as another's mirror or
// turn really are, and the colours and shapes a user tells them by are where they must be.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "panel/pictures/compiled_pictures.h"

namespace {

using kestrone::PictureRole;

constexpr std::uint32_t kWhite = 0xFFFFFF, kBlack = 0x000000, kFace = 0xECE9D8;

PictureRole heading(int k) {
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

constexpr auto red = [](std::uint32_t c) { return static_cast<int>(c >> 16); };
constexpr auto green = [](std::uint32_t c) { return static_cast<int>(c >> 8 & 0xFF); };
constexpr auto blue = [](std::uint32_t c) { return static_cast<int>(c & 0xFF); };

constexpr int kW = 64, kH = 72;

// The mean column of the black pixels in the topmost (or bottommost) row that has any.
double end_row_centre(const Picture& p, bool top) {
    for (int i = 0; i < p.h(); ++i) {
        const int y = top ? i : p.h() - 1 - i;
        double sum = 0;
        int n = 0;
        for (int x = 0; x < p.w(); ++x)
            if (p.at(x, y) == kBlack) sum += x, ++n;
        if (n > 0) return sum / n;
    }
    return -1;
}

// Whether the straight line from the middle of the picture to (x, y) meets black.
bool ray_meets_black(const Picture& p, int x, int y) {
    const double cx = (kW - 1) / 2.0, cy = (kH - 1) / 2.0;
    for (double t = 0; t <= 1; t += 0.005)
        if (p.at(static_cast<int>(cx + (x - cx) * t + 0.5),
                 static_cast<int>(cy + (y - cy) * t + 0.5)) == kBlack)
            return true;
    return false;
}

TEST(HeadingPictures, BlackArrowsOnWhiteEachTheWayItPoints) {
    for (int k = 0; k <= 12; ++k) {
        const Picture p(heading(k));
        EXPECT_EQ(p.colours(), (std::set<std::uint32_t>{kBlack, kWhite})) << k;
        // Nothing touches the edge, so the pictures sit on the white around them.
        EXPECT_EQ(p.count(kBlack, 0, 0, kW - 1, 0) + p.count(kBlack, 0, kH - 1, kW - 1, kH - 1) +
                      p.count(kBlack, 0, 0, 0, kH - 1) + p.count(kBlack, kW - 1, 0, kW - 1, kH - 1),
                  0)
            << k;
    }
    for (auto [k, m] : {std::pair{3, 6}, {4, 7}, {5, 8}, {9, 11}, {10, 12}}) {
        const Picture a(heading(k)), b(heading(m));
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x)
                ASSERT_EQ(a.at(x, y), b.at(kW - 1 - x, y)) << k << "/" << m << " " << x << "," << y;
    }
    // Straight up (1) and down (2): both ends on the middle, the head at the end it points to.
    for (int k : {1, 2}) {
        const Picture p(heading(k));
        EXPECT_NEAR(end_row_centre(p, true), (kW - 1) / 2.0, 1.0) << k;
        EXPECT_NEAR(end_row_centre(p, false), (kW - 1) / 2.0, 1.0) << k;
        EXPECT_EQ(p.count(kBlack, 0, 0, kW, kH / 2) > p.count(kBlack, 0, kH / 2, kW, kH), k == 1);
    }
    // Gentle turns to the left, up (3) and down (9), end towards their side and start near the
    // middle; hard ones (4 and 10) start beside the middle away from their side.
    EXPECT_LT(end_row_centre(Picture(heading(3)), true), 24);
    EXPECT_GT(end_row_centre(Picture(heading(3)), false), 28);
    EXPECT_LT(end_row_centre(Picture(heading(9)), false), 24);
    EXPECT_GT(end_row_centre(Picture(heading(9)), true), 28);
    EXPECT_GT(end_row_centre(Picture(heading(4)), false), 36);
    EXPECT_GT(end_row_centre(Picture(heading(10)), true), 36);
    // The anticlockwise ring (5) has its gap at the bottom right.
    EXPECT_FALSE(ray_meets_black(Picture(heading(5)), kW - 1, kH - 1));
    EXPECT_TRUE(ray_meets_black(Picture(heading(5)), 0, kH - 1));
    EXPECT_TRUE(ray_meets_black(Picture(heading(5)), kW - 1, 0));
}

// Forward: rows 3 to 19 on a shaft 3 pixels wide, the head in the upper half. Backward is the same
// arrow turned over within its rows.
TEST(MotorPictures, BackwardIsForwardTurnedOver) {
    const Picture up(PictureRole::MotorForward), down(PictureRole::MotorBackward);
    for (int y = 0; y < 24; ++y) {
        EXPECT_EQ(up.count(kBlack, 0, y, 23, y) > 0, y >= 3 && y <= 19) << "row " << y;
        if (y >= 3 && y <= 19) {
            EXPECT_EQ(up.count(kBlack, 10, y, 12, y), 3) << "row " << y;
        }
        for (int x = 0; x < 24; ++x)
            ASSERT_EQ(down.at(x, y), y >= 3 && y <= 19 ? up.at(x, 22 - y) : kWhite)
                << x << "," << y;
    }
    EXPECT_GT(up.count(kBlack, 0, 3, 23, 10), up.count(kBlack, 0, 12, 23, 19));
}

// The lit LED: a red disc on a darker band with a white highlight. The dark one is the same square
// a row higher but for its disc, unlit pale grey.
TEST(LedPictures, TheDarkIsTheLitOneRowUpWithAnUnlitDisc) {
    const Picture lit(PictureRole::LedLit), dark(PictureRole::LedDark);
    EXPECT_EQ(lit.at(11, 14), 0xFF0000u);
    EXPECT_GT(lit.count(0xFF0000), lit.count(0xBA0000));
    EXPECT_GT(lit.count(0xBA0000), 0);
    EXPECT_GT(lit.count(0x87181C), 0);
    EXPECT_GT(lit.count(kWhite, 6, 0, 16, 13), 0);
    EXPECT_EQ(dark.count(0xFF0000) + dark.count(0xBA0000), 0);
    int differ = 0;
    for (int y = 0; y < dark.h(); ++y)
        for (int x = 0; x < dark.w(); ++x)
            if (dark.at(x, y) != lit.at(x, y + 1)) {
                ++differ;
                EXPECT_TRUE(red(lit.at(x, y + 1)) > green(lit.at(x, y + 1)) + 60 ||
                            lit.at(x, y + 1) == kWhite)
                    << x << "," << y;
            }
    ASSERT_GT(differ, 50);
    EXPECT_GT(dark.count(0xC6D3D3), differ / 2);
    EXPECT_NE(dark.at(0, 13), kWhite);
}

// Inside a black rim, along the track from its white end (the sensor's 0) a fade of 42 pixels, then
// the full green to the other end.
TEST(TrackPictures, FadeFromWhiteAtTheZeroEndToGreenInsideABlackRim) {
    struct Track {
        PictureRole role;
        int x, y, dx,
            dy;  // the inside pixel at the white end, and the step away from it
    };
    for (const Track& t : {Track{PictureRole::TrackVertical, 5, 78, 0, -1},
                           Track{PictureRole::TrackLeft, 78, 6, -1, 0},
                           Track{PictureRole::TrackRight, 1, 6, 1, 0}}) {
        const Picture p(t.role);
        SCOPED_TRACE(static_cast<int>(t.role));
        EXPECT_EQ(p.count(kBlack, 1, 0, p.w() - 2, 0) + p.count(kBlack, 0, 1, 0, p.h() - 2),
                  p.w() + p.h() - 4);
        std::vector<std::uint32_t> line;
        for (int x = t.x, y = t.y; x > 0 && y > 0 && x < p.w() - 1 && y < p.h() - 1;
             x += t.dx, y += t.dy)
            line.push_back(p.at(x, y));
        ASSERT_EQ(line.size(), 78u);
        EXPECT_EQ(line.front(), kWhite);
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            EXPECT_EQ(line[i] == 0x007F0Eu, i >= 42) << i;
            EXPECT_TRUE(i >= 42 || green(line[i]) > green(line[i + 1])) << i;
        }
    }
}

// The bar: a capsule shaded from light green at the left to dark; standing, the same turned. The
// switch: a black button, an orange-brown dot in each quarter. The line sensor: the blue lens left,
// the black one right. The logo: black on white.
TEST(ButtonPictures, BarSwitchSensorAndLogoHaveTheirPartsInPlace) {
    const Picture bar(PictureRole::BarVertical), standing(PictureRole::BarHorizontal);
    EXPECT_EQ(bar.at(0, 0), kFace);
    EXPECT_EQ(bar.at(0, 5), 0x00D10Eu);
    EXPECT_EQ(bar.at(27, 5), 0x006D02u);
    EXPECT_TRUE(standing.at(5, 0) == 0x00D10Eu || standing.at(5, 27) == 0x00D10Eu);
    for (const std::uint32_t c : bar.colours())
        EXPECT_EQ(standing.count(c), bar.count(c)) << std::hex << c;
    const Picture sw(PictureRole::PushSwitch), sensor(PictureRole::LineSensor),
        logo(PictureRole::Logo);
    EXPECT_EQ(sw.at(12, 12), kBlack);
    const auto orange_brown = [](std::uint32_t c) {
        return red(c) > 0x90 && red(c) > green(c) + 0x30 && green(c) > blue(c) + 0x20;
    };
    for (auto [x, y] : {std::array{0, 0}, {12, 0}, {0, 12}, {12, 12}})
        EXPECT_GE(sw.count_if(orange_brown, x, y, x + 11, y + 11), 2) << x << "," << y;
    EXPECT_GT(sensor.count(0x0000A7, 0, 0, 14), 20);
    EXPECT_EQ(sensor.count(0x0000A7, 15), 0);
    EXPECT_GT(sensor.count(kBlack, 15), 20);
    EXPECT_EQ(sensor.count(kBlack, 0, 0, 14), 0);
    EXPECT_EQ(logo.colours(), (std::set<std::uint32_t>{kBlack, kWhite}));
    EXPECT_GT(logo.count(kBlack, 0, 0, 45, 46), 200);
}

}  // namespace
