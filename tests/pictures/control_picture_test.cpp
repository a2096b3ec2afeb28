// The sensors' tracks and bars, the buttons' pictures and the logo.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "pictures/picture_view.h"

namespace {

using namespace picture_testing;

constexpr std::uint32_t kTrackGreen = 0x007F0E;

// Inside a black rim, a fill even across the track; along it from its white end, where the
// sensor's value is 0, a fade of 43 pixels ending on the full green, then green to the other end.
// The white end is the bottom of the upright track, the right end of panel 2's, the left of 4's.
TEST(TrackPictures, FadeFromWhiteAtTheZeroEndToGreenInsideABlackRim) {
    struct Track {
        PictureRole role;
        int x, y, dx, dy;  // the inside pixel at the white end, and the step away from it
    };
    for (const Track& t : {Track{PictureRole::TrackVertical, 5, 78, 0, -1},
                           Track{PictureRole::TrackLeft, 78, 6, -1, 0},
                           Track{PictureRole::TrackRight, 1, 6, 1, 0}}) {
        const Picture p(t.role);
        SCOPED_TRACE(static_cast<int>(t.role));
        const bool upright = p.h() > p.w();
        for (int y = 0; y < p.h(); ++y)
            for (int x = 0; x < p.w(); ++x) {
                const bool rim = x == 0 || y == 0 || x == p.w() - 1 || y == p.h() - 1;
                const bool corner = (x == 0 || x == p.w() - 1) && (y == 0 || y == p.h() - 1);
                const std::uint32_t want = rim ? kBlack : upright ? p.at(1, y) : p.at(x, 1);
                ASSERT_TRUE(corner || p.at(x, y) == want) << x << "," << y;
            }
        std::vector<std::uint32_t> line;
        for (int x = t.x, y = t.y; x > 0 && y > 0 && x < p.w() - 1 && y < p.h() - 1;
             x += t.dx, y += t.dy)
            line.push_back(p.at(x, y));
        ASSERT_EQ(line.size(), 78u);
        EXPECT_EQ(line.front(), kWhite);
        for (std::size_t i = 0; i < line.size(); ++i) {
            EXPECT_EQ(line[i] == kTrackGreen, i >= 42) << i;
            const bool darker = i + 1 < line.size() && red(line[i]) > red(line[i + 1]) &&
                                green(line[i]) > green(line[i + 1]) &&
                                blue(line[i]) > blue(line[i + 1]);
            EXPECT_TRUE(i >= 42 || darker) << i;
        }
    }
}

// Lying flat, a capsule from end to end shaded from light green at the left to dark, on the face;
// standing, the same turned a quarter.
TEST(BarPictures, CapsuleShadedFromLightGreenAtTheLeftAndStandingTheSameTurned) {
    const Picture bar(PictureRole::BarVertical), standing(PictureRole::BarHorizontal);
    for (auto [x, y] : {std::array{0, 0}, {27, 0}, {0, 9}, {27, 9}})
        EXPECT_EQ(bar.at(x, y), kFace) << x << "," << y;
    EXPECT_EQ(bar.at(0, 5), 0x00D10Eu);
    EXPECT_EQ(bar.at(27, 5), 0x006D02u);
    for (int x = 0; x + 1 < bar.w(); ++x)
        EXPECT_TRUE(red(bar.at(x, 5)) == 0 && green(bar.at(x, 5)) >= green(bar.at(x + 1, 5))) << x;
    // Standing, the light end is at the top or the bottom, and every shade is there as often.
    EXPECT_TRUE(standing.at(5, 0) == 0x00D10Eu || standing.at(5, 27) == 0x00D10Eu);
    for (const std::uint32_t c : bar.colours())
        EXPECT_EQ(standing.count(c), bar.count(c)) << std::hex << c;
}

// The push switch: a black button on a white body, an orange-brown dot in each quarter. The line
// sensor: the blue lens on the left, the black one on the right, on white. The logo: black on
// white, the flag at the left and the name in two lines.
TEST(ButtonPictures, SwitchSensorAndLogoHaveTheirPartsInPlace) {
    const Picture sw(PictureRole::PushSwitch), sensor(PictureRole::LineSensor),
        logo(PictureRole::Logo);
    EXPECT_EQ(sw.at(12, 12), kBlack);
    const auto orange_brown = [](std::uint32_t c) {
        return red(c) > 0x90 && red(c) > green(c) + 0x30 && green(c) > blue(c) + 0x20;
    };
    for (auto [x, y] : {std::array{0, 0}, {12, 0}, {0, 12}, {12, 12}}) {
        EXPECT_GE(sw.count_if(orange_brown, x, y, x + 11, y + 11), 2) << x << "," << y;
        EXPECT_GE(sw.count(kWhite, x, y, x + 11, y + 11), 40) << x << "," << y;
    }
    EXPECT_GT(sensor.count(0x0000A7, 0, 0, 14), 20);
    EXPECT_EQ(sensor.count(0x0000A7, 15), 0);
    EXPECT_GT(sensor.count(kBlack, 15), 20);
    EXPECT_EQ(sensor.count(kBlack, 0, 0, 14), 0);
    EXPECT_EQ(logo.colours(), (std::set<std::uint32_t>{kBlack, kWhite}));
    EXPECT_GT(logo.count(kBlack, 0, 0, 45, 46), 200);
    EXPECT_GT(logo.count(kBlack, 55, 0, 165, 21), 150);
    EXPECT_GT(logo.count(kBlack, 55, 25, 165, 46), 150);
    EXPECT_EQ(logo.count(kBlack, 55, 23, 165, 23), 0);
}

}  // namespace
