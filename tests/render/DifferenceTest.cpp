// What counts as an edge drawn a hair's breadth elsewhere, and what nobody may take for one.

#include "render/Difference.h"

#include <gtest/gtest.h>

namespace headless::render {
namespace {

// Levels of grey, opaque.
struct Grey : Picture {
    Grey(int side, int paper) : Picture{side, side, {}} {
        pixels.assign(std::size_t{1} * side * side, word(paper));
    }

    Grey with(int left, int top, int itsWidth, int itsHeight, int level) const {
        Grey result = *this;
        for (int y = top; y < top + itsHeight; ++y) {
            for (int x = left; x < left + itsWidth; ++x) {
                result.pixels[static_cast<std::size_t>(y) * width + x] = word(level);
            }
        }
        return result;
    }
    static std::uint32_t word(int level) { return 0xFF000000u | static_cast<std::uint32_t>(level) * 0x010101u; }
};

TEST(EdgeNoise, IsAnEdgeDrawnAtAnotherFractionOfAPixel) {
    // A square whose left edge covers half of a column, or a quarter more.
    const auto square = [](int side, int height, int edge) {
        return Grey(side, 0).with(20, 10, 20, height, 255).with(19, 10, 1, height, edge);
    };
    EXPECT_TRUE(isEdgeNoise(square(100, 30, 128), square(100, 30, 190)));
    EXPECT_FALSE(isEdgeNoise(square(100, 30, 128), square(100, 30, 194)));
    EXPECT_FALSE(isEdgeNoise(square(100, 60, 128), square(100, 60, 190)));  // too much of it
    EXPECT_TRUE(isEdgeNoise(square(100, 60, 128), square(100, 60, 136)));
    EXPECT_FALSE(isEdgeNoise(square(60, 30, 128), square(60, 30, 190)));  // in so small a picture
}

TEST(EdgeNoise, IsNothingThatIsGoneOrOfAnotherColour) {
    const auto gone = [](int side, int width, int height, int level) {
        const Grey paper(side, 128);
        const Grey drawn = paper.with(5, 4, width, height, 128 + level);
        EXPECT_EQ(isEdgeNoise(paper, drawn), isEdgeNoise(drawn, paper));
        return !isEdgeNoise(paper, drawn);
    };
    EXPECT_TRUE(gone(24, 6, 6, 64));
    EXPECT_TRUE(gone(24, 3, 3, 10));
    EXPECT_TRUE(gone(64, 2, 20, 64));   // uncovered along the side of an icon
    EXPECT_TRUE(gone(64, 1, 40, 5));    // a faint line
    EXPECT_TRUE(gone(400, 2, 300, 8));  // and in a large picture
    EXPECT_TRUE(gone(400, 2, 2, 40));
    const auto recoloured = [](int side, int dot, int level) {
        const Grey paper(side, 0);
        return !isEdgeNoise(paper.with(5, 5, dot, dot, 128), paper.with(5, 5, dot, dot, 128 + level));
    };
    EXPECT_TRUE(recoloured(16, 6, 10));
    EXPECT_TRUE(recoloured(100, 9, 4));
    EXPECT_TRUE(recoloured(400, 6, 60));
}

TEST(EdgeNoise, IsNothingThatLiesAPixelElsewhere) {
    const auto moved = [](int side, int level, int width) {
        const Grey paper(side, 128);
        return !isEdgeNoise(paper.with(8, 8, width, side - 20, 128 + level),
                            paper.with(9, 8, width, side - 20, 128 + level));
    };
    EXPECT_TRUE(moved(32, 32, 8));
    EXPECT_TRUE(moved(200, 6, 1));
    EXPECT_TRUE(moved(200, 6, 100));
    // Soft, so that each pixel changes by little.
    const auto slope = [](int from) {
        Grey picture(200, 0);
        for (int x = 0; x < 50; ++x) {
            picture = picture.with(from + x, 10, 1, 150, 4 * x);
        }
        return picture;
    };
    EXPECT_FALSE(isEdgeNoise(slope(20), slope(21)));
}

}  // namespace
}  // namespace headless::render
