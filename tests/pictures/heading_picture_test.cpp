// The heading pictures: black on white, each arrow the way it points, and the mirrored ones true
// mirror images.
#include <gtest/gtest.h>

#include <utility>

#include "pictures/picture_view.h"

namespace {

using namespace picture_testing;

constexpr int kW = 64, kH = 72;

int black_in_row(const Picture& p, int y) {
    int n = 0;
    for (int x = 0; x < p.w(); ++x)
        n += p.at(x, y) == kBlack;
    return n;
}

// The mean column of the black pixels in the topmost (or bottommost) row that has any.
double end_row_centre(const Picture& p, bool top) {
    for (int i = 0; i < p.h(); ++i) {
        const int y = top ? i : p.h() - 1 - i;
        if (black_in_row(p, y) == 0) continue;
        double sum = 0;
        for (int x = 0; x < p.w(); ++x)
            if (p.at(x, y) == kBlack) sum += x;
        return sum / black_in_row(p, y);
    }
    return -1;
}

// Whether the straight line from the middle of the picture to (x, y) meets black.
bool ray_meets_black(const Picture& p, int x, int y) {
    const double cx = (kW - 1) / 2.0, cy = (kH - 1) / 2.0;
    for (int i = 0; i <= 200; ++i) {
        const double t = i / 200.0;
        if (p.at(static_cast<int>(cx + (x - cx) * t + 0.5),
                 static_cast<int>(cy + (y - cy) * t + 0.5)) == kBlack)
            return true;
    }
    return false;
}

TEST(HeadingPictures, AreBlackOnWhiteClearOfTheEdge) {
    for (int k = 0; k <= 12; ++k) {
        const Picture p(heading(k));
        EXPECT_EQ(p.colours(), (std::set<std::uint32_t>{kBlack, kWhite})) << k;
        // Nothing touches the edge, so the pictures sit on the white around them.
        for (int x = 0; x < kW; ++x)
            EXPECT_TRUE(p.at(x, 0) == kWhite && p.at(x, kH - 1) == kWhite) << k << " at " << x;
        for (int y = 0; y < kH; ++y)
            EXPECT_TRUE(p.at(0, y) == kWhite && p.at(kW - 1, y) == kWhite) << k << " at " << y;
    }
}

TEST(HeadingPictures, MirroredPicturesAreMirrorImages) {
    const std::pair<int, int> pairs[] = {{3, 6}, {4, 7}, {5, 8}, {9, 11}, {10, 12}};
    for (auto [k, m] : pairs) {
        const Picture a(heading(k)), b(heading(m));
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x)
                ASSERT_EQ(a.at(x, y), b.at(kW - 1 - x, y)) << k << "/" << m << " " << x << "," << y;
    }
}

TEST(HeadingPictures, StraightArrowsHaveTheirHeadAtTheirEnd) {
    for (auto [k, up] : {std::pair{1, true}, std::pair{2, false}}) {
        const Picture p(heading(k));
        int widest = 0, row = 0;
        for (int y = 0; y < kH; ++y)
            if (black_in_row(p, y) > widest) widest = black_in_row(p, y), row = y;
        EXPECT_EQ(row < kH / 2, up) << k;
        // Straight: every row's black is one run about the middle.
        EXPECT_NEAR(end_row_centre(p, true), (kW - 1) / 2.0, 1.0) << k;
        EXPECT_NEAR(end_row_centre(p, false), (kW - 1) / 2.0, 1.0) << k;
    }
}

// Gentle turns, up (3) and down (9) to the left, end towards their side and start near the
// middle; hard ones (4 and 10) start beside the middle away from their side. 6, 11, 7 and 12 are
// their mirror images.
TEST(HeadingPictures, TurnsEndTowardsTheirSide) {
    EXPECT_LT(end_row_centre(Picture(heading(3)), true), 24);
    EXPECT_LT(end_row_centre(Picture(heading(9)), false), 24);
    EXPECT_GT(end_row_centre(Picture(heading(3)), false), 28);
    EXPECT_GT(end_row_centre(Picture(heading(9)), true), 28);
    EXPECT_GT(end_row_centre(Picture(heading(4)), false), 36);
    EXPECT_GT(end_row_centre(Picture(heading(10)), true), 36);
}

TEST(HeadingPictures, RingsHaveTheirGapAtTheBottomOnTheirSide) {
    const Picture anticlockwise(heading(5)), clockwise(heading(8));
    EXPECT_FALSE(ray_meets_black(anticlockwise, kW - 1, kH - 1));
    EXPECT_TRUE(ray_meets_black(anticlockwise, 0, kH - 1));
    EXPECT_TRUE(ray_meets_black(anticlockwise, 0, 0));
    EXPECT_TRUE(ray_meets_black(anticlockwise, kW - 1, 0));
    EXPECT_FALSE(ray_meets_black(clockwise, 0, kH - 1));
    // The head sits at the bottom, below the middle: its widest part is the lowest black.
    int lowest = 0;
    for (int y = 0; y < kH; ++y)
        if (black_in_row(anticlockwise, y) > 0) lowest = y;
    EXPECT_GT(lowest, 56);
}

}  // namespace
