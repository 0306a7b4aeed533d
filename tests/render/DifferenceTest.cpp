#include "render/Difference.h"

#include <gtest/gtest.h>

namespace headless::render {
namespace {

TEST(Difference, CountsWhatIsAboveTheTolerance) {
    const Picture plain{4, 3, std::vector<std::uint32_t>(12, 0x80808080)};
    Picture other = plain;
    EXPECT_EQ(difference(plain, other).largest, 0);
    EXPECT_FALSE(difference(plain, other).box);
    other.pixels[0] = 0x80808082;  // two levels: counts only without tolerance
    other.pixels[1 * 4 + 2] = 0x80807880;
    other.pixels[2 * 4 + 1] = 0x78808080;
    const Difference found = difference(plain, other);
    EXPECT_EQ(found.largest, 8);
    EXPECT_EQ(found.worst, (PixelPoint{2, 1}));
    EXPECT_EQ(found.count, 2u);
    EXPECT_EQ(found.box, (PixelBox{1, 1, 3, 3}));
    EXPECT_EQ(difference(other, plain, 0).count, 3u);
}

TEST(Difference, BoundsHoldEveryPixelWithAlpha) {
    Picture picture{4, 3, std::vector<std::uint32_t>(12, 0x00FFFFFF)};
    EXPECT_FALSE(visibleBounds(picture));
    picture.pixels[1 * 4 + 3] = 0x01000000;
    EXPECT_EQ(visibleBounds(picture), (PixelBox{3, 1, 4, 2}));
    picture.pixels[2 * 4] = 0xFF000000;
    EXPECT_EQ(visibleBounds(picture), (PixelBox{0, 1, 4, 3}));
}

}  // namespace
}  // namespace headless::render
