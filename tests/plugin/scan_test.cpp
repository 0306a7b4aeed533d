#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "Crop_Scan.h"

using crop::VisibleRange;

namespace crop {
bool operator==(const VisibleRange& a, const VisibleRange& b) {
    return a.minRow == b.minRow && a.maxRow == b.maxRow && a.minCol == b.minCol && a.maxCol == b.maxCol;
}
std::ostream& operator<<(std::ostream& out, const VisibleRange& range) {
    return out << "rows " << range.minRow << ".." << range.maxRow << ", columns " << range.minCol << ".."
               << range.maxCol;
}
}  // namespace crop

namespace {

// Row bytes are a few pixels more than the width; the gap is opaque garbage, and so are the colours.
template <class Pixel>
struct Frame {
    A_long width, height;
    A_u_long rowBytes;
    std::vector<unsigned char> bytes;

    Frame(A_long w, A_long h, int gapBytes)
        : width(w),
          height(h),
          rowBytes(static_cast<A_u_long>(static_cast<std::size_t>(w) * sizeof(Pixel)) + gapBytes),
          bytes(rowBytes * static_cast<std::size_t>(h) + sizeof(Pixel), 0x3F) {
        for (A_long row = 0; row < h; ++row) {
            for (A_long col = 0; col < w; ++col) {
                set(row, col, {});
            }
        }
    }
    void set(A_long row, A_long col, decltype(Pixel::alpha) alpha) {
        const auto stride = rowBytes / sizeof(Pixel) * sizeof(Pixel);
        std::memcpy(
            &bytes[static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(col) * sizeof(Pixel)],
            &alpha, sizeof alpha);
    }
    VisibleRange scan() const {
        return crop::findVisible(reinterpret_cast<const Pixel*>(bytes.data()), width, height, rowBytes);
    }
};

template <class Pixel>
class Scan : public testing::Test {};
using Depths = testing::Types<PF_Pixel8, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(Scan, Depths);

TYPED_TEST(Scan, FindsTheVisiblePixelsOfRandomFrames) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) { return std::uniform_int_distribution<int>(0, limit)(random); };
    for (int round = 0; round < 300; ++round) {
        const A_long width = upTo(70);
        const A_long height = upTo(20);
        Frame<TypeParam> frame(width, height, upTo(3) * static_cast<int>(sizeof(TypeParam)) + upTo(1) * 2);
        VisibleRange expected{height, 0, width, 0};
        const int visible = width == 0 || height == 0 ? 0 : upTo(4);
        for (int i = 0; i < visible; ++i) {
            const A_long row = upTo(height - 1);
            const A_long col = upTo(width - 1);
            frame.set(row, col, static_cast<decltype(TypeParam::alpha)>(1 + upTo(200)));
            expected = {std::min(expected.minRow, row), std::max(expected.maxRow, row),
                        std::min(expected.minCol, col), std::max(expected.maxCol, col)};
        }
        ASSERT_EQ(frame.scan(), expected) << width << " by " << height << ", row bytes " << frame.rowBytes;
    }
}

TEST(ScanOfFloats, CountsEveryNumberAboveZeroAndNothingElse) {
    using Limits = std::numeric_limits<float>;
    for (const float visible : {Limits::denorm_min(), Limits::min(), 1.0F, Limits::max(), Limits::infinity()}) {
        Frame<PF_PixelFloat> frame(3, 2, 0);
        frame.set(1, 2, visible);
        EXPECT_EQ(frame.scan(), (VisibleRange{1, 1, 2, 2})) << visible;
        frame.set(1, 2, -visible);
        EXPECT_EQ(frame.scan(), crop::nothingVisible(3, 2)) << -visible;
    }
    Frame<PF_PixelFloat> frame(1, 1, 0);
    const float smallestNaN = std::bit_cast<float>(0x7F800001U);
    for (const float invisible : {-0.0F, smallestNaN, Limits::quiet_NaN(), -Limits::quiet_NaN()}) {
        frame.set(0, 0, invisible);
        EXPECT_EQ(frame.scan(), crop::nothingVisible(1, 1)) << invisible;
    }
}

}  // namespace
