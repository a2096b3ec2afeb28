// The sensors' tracks and bars, the buttons' pictures and the logo.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

#include "pictures/picture_view.h"

namespace {

using namespace picture_testing;

constexpr std::uint32_t kTrackGreen = 0x007F0E;

struct Track {
    PictureRole role;
    int x, y, dx, dy;  // the inside pixel at the white end, and the step away from it
};

// Along the middle of each track from its white end: white, a fade of 43 pixels ending on the
// full green, then the green to the other end. The white end is where the sensor's value is 0:
// the bottom of the upright track, the right end of panel 2's, the left end of panel 4's.
TEST(TrackPictures, FadeFromWhiteAtTheZeroEndToGreenOverFortyThreePixels) {
    const Track tracks[] = {{PictureRole::TrackVertical, 5, 78, 0, -1},
                            {PictureRole::TrackLeft, 78, 6, -1, 0},
                            {PictureRole::TrackRight, 1, 6, 1, 0}};
    for (const Track& t : tracks) {
        const Picture p(t.role);
        const int role = static_cast<int>(t.role);
        std::vector<std::uint32_t> line;
        for (int x = t.x, y = t.y; x > 0 && y > 0 && x < p.w() - 1 && y < p.h() - 1;
             x += t.dx, y += t.dy)
            line.push_back(p.at(x, y));
        ASSERT_EQ(line.size(), 78u) << role;
        EXPECT_EQ(line.front(), kWhite) << role;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (i >= 42) {
                EXPECT_EQ(line[i], kTrackGreen) << role << " at " << i;
            } else {
                EXPECT_NE(line[i], kTrackGreen) << role << " at " << i;
                EXPECT_GT(red(line[i]), red(line[i + 1])) << role << " at " << i;
                EXPECT_GT(green(line[i]), green(line[i + 1])) << role << " at " << i;
                EXPECT_GT(blue(line[i]), blue(line[i + 1])) << role << " at " << i;
            }
        }
    }
}

TEST(TrackPictures, HaveABlackRimAndAFillThatIsEvenAcrossTheTrack) {
    for (PictureRole role :
         {PictureRole::TrackVertical, PictureRole::TrackLeft, PictureRole::TrackRight}) {
        const Picture p(role);
        const bool upright = p.h() > p.w();
        for (int x = 1; x < p.w() - 1; ++x) {
            EXPECT_EQ(p.at(x, 0), kBlack) << static_cast<int>(role);
            EXPECT_EQ(p.at(x, p.h() - 1), kBlack) << static_cast<int>(role);
        }
        for (int y = 1; y < p.h() - 1; ++y) {
            EXPECT_EQ(p.at(0, y), kBlack) << static_cast<int>(role);
            EXPECT_EQ(p.at(p.w() - 1, y), kBlack) << static_cast<int>(role);
        }
        for (int y = 1; y < p.h() - 1; ++y)
            for (int x = 1; x < p.w() - 1; ++x)
                ASSERT_EQ(p.at(x, y), upright ? p.at(1, y) : p.at(x, 1))
                    << static_cast<int>(role) << " " << x << "," << y;
    }
}

TEST(BarPictures, CapsuleShadedFromLightGreenAtTheLeftToDarkOnTheFace) {
    const Picture bar(PictureRole::BarVertical);
    for (auto [x, y] : {std::array{0, 0}, {27, 0}, {0, 9}, {27, 9}})
        EXPECT_EQ(bar.at(x, y), kFace) << x << "," << y;
    std::vector<std::uint32_t> middle;
    for (int x = 0; x < bar.w(); ++x)
        if (bar.at(x, 5) != kFace) middle.push_back(bar.at(x, 5));
    ASSERT_EQ(middle.size(), 28u);  // lying flat, it runs from end to end
    EXPECT_EQ(middle.front(), 0x00D10Eu);
    EXPECT_EQ(middle.back(), 0x006D02u);
    for (std::size_t i = 0; i + 1 < middle.size(); ++i) {
        EXPECT_GE(green(middle[i]), green(middle[i + 1])) << i;
        EXPECT_EQ(red(middle[i]), 0) << i;
    }
}

TEST(BarPictures, StandingBarIsTheLyingOneTurnedAQuarter) {
    const Picture flat(PictureRole::BarVertical), standing(PictureRole::BarHorizontal);
    // Any of the ways to stand it up: turned either way, or flipped over a diagonal.
    const std::function<std::uint32_t(int, int)> ways[] = {
        [&](int x, int y) { return flat.at(y, x); },
        [&](int x, int y) { return flat.at(27 - y, 9 - x); },
        [&](int x, int y) { return flat.at(y, 9 - x); },
        [&](int x, int y) { return flat.at(27 - y, x); },
    };
    int matching = 0;
    for (const auto& way : ways) {
        bool same = true;
        for (int y = 0; y < standing.h(); ++y)
            for (int x = 0; x < standing.w(); ++x)
                same = same && standing.at(x, y) == way(x, y);
        matching += same;
    }
    EXPECT_GE(matching, 1);
}

TEST(ButtonPictures, PushSwitchHasABlackButtonOnAWhiteBodyWithCornerDots) {
    const Picture sw(PictureRole::PushSwitch);
    EXPECT_EQ(sw.at(12, 12), kBlack);
    EXPECT_EQ(sw.at(12, 15), kBlack);
    // White body between the button and each corner, an orange-brown dot in each corner.
    const auto orange_brown = [](std::uint32_t c) {
        return red(c) > 0x90 && red(c) > green(c) + 0x30 && green(c) > blue(c) + 0x20;
    };
    for (auto [qx, qy] : {std::array{0, 0}, {12, 0}, {0, 12}, {12, 12}}) {
        int dots = 0, white = 0;
        for (int y = qy; y < qy + 12; ++y)
            for (int x = qx; x < qx + 12; ++x) {
                dots += orange_brown(sw.at(x, y));
                white += sw.at(x, y) == kWhite;
            }
        EXPECT_GE(dots, 2) << qx << "," << qy;
        EXPECT_GE(white, 40) << qx << "," << qy;
    }
}

TEST(ButtonPictures, LineSensorHasTheBlueLensLeftAndTheBlackLensRight) {
    const Picture sensor(PictureRole::LineSensor);
    int blue_left = 0, blue_right = 0, black_left = 0, black_right = 0;
    for (int y = 0; y < sensor.h(); ++y)
        for (int x = 0; x < sensor.w(); ++x) {
            const bool left = x < sensor.w() / 2;
            (left ? blue_left : blue_right) += sensor.at(x, y) == 0x0000A7;
            (left ? black_left : black_right) += sensor.at(x, y) == kBlack;
        }
    EXPECT_GT(blue_left, 20);
    EXPECT_EQ(blue_right, 0);
    EXPECT_GT(black_right, 20);
    EXPECT_EQ(black_left, 0);
    for (auto [x, y] : {std::array{0, 0}, {29, 0}, {0, 23}, {29, 23}})
        EXPECT_EQ(sensor.at(x, y), kWhite);
}

TEST(LogoPicture, IsBlackOnWhiteWithFlagAtTheLeftAndNameInTwoLines) {
    const Picture logo(PictureRole::Logo);
    EXPECT_EQ(logo.colours(), (std::set<std::uint32_t>{kBlack, kWhite}));
    // Ink in the flag's part and in the name's; the name's two lines have white between them.
    const auto ink = [&](int x0, int x1, int y0, int y1) {
        int n = 0;
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                n += logo.at(x, y) == kBlack;
        return n;
    };
    EXPECT_GT(ink(0, 45, 0, 46), 200);
    EXPECT_GT(ink(55, 165, 0, 21), 150);
    EXPECT_GT(ink(55, 165, 25, 46), 150);
    EXPECT_EQ(ink(55, 165, 23, 23), 0);
}

}  // namespace
