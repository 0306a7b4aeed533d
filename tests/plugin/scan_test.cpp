#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

#include "Crop_Scan.h"

using crop::VisibleRange;

namespace {

// The last pixel lies right before a page that cannot be read. Gaps behind the rows are garbage, and so are
// the colours.
template <class Pixel>
class Frame {
 public:
    using Alpha = decltype(Pixel::alpha);

    Frame(A_long w, A_long h, std::size_t gapBytes)
        : width(w),
          height(h),
          rowBytes(static_cast<A_u_long>(static_cast<std::size_t>(w) * sizeof(Pixel) + gapBytes)) {
        const auto rowsBefore = static_cast<std::size_t>(std::max(h - 1, 0));
        const std::size_t size = rowsBefore * stride() + static_cast<std::size_t>(w) * sizeof(Pixel);
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t readable = (size + page - 1) / page * page;
        mapped_ = readable + page;
        memory_ = static_cast<unsigned char*>(
            mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        std::memset(memory_, 0x3F, readable);
        mprotect(memory_ + readable, page, PROT_NONE);
        base_ = memory_ + readable - size;
        for (A_long row = 0; row < h; ++row) {
            for (A_long col = 0; col < w; ++col) {
                set(row, col, {});
            }
        }
    }
    ~Frame() { munmap(memory_, mapped_); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    void set(A_long row, A_long col, Alpha alpha) { std::memcpy(at(row, col), &alpha, sizeof alpha); }
    Alpha alphaAt(A_long row, A_long col) const {
        Alpha alpha;
        std::memcpy(&alpha, at(row, col), sizeof alpha);
        return alpha;
    }
    VisibleRange scan() const {
        return crop::findVisible(reinterpret_cast<const Pixel*>(base_), width, height, rowBytes);
    }

    const A_long width, height;
    const A_u_long rowBytes;

 private:
    std::size_t stride() const { return rowBytes / sizeof(Pixel) * sizeof(Pixel); }
    unsigned char* at(A_long row, A_long col) const {
        return base_ + static_cast<std::size_t>(row) * stride() + static_cast<std::size_t>(col) * sizeof(Pixel);
    }

    std::size_t mapped_ = 0;
    unsigned char* memory_ = nullptr;
    unsigned char* base_ = nullptr;
};

std::array<A_long, 4> edges(const VisibleRange& range) {
    return {range.minRow, range.maxRow, range.minCol, range.maxCol};
}

template <class Pixel>
VisibleRange byDefinition(const Frame<Pixel>& frame) {
    VisibleRange range{frame.height, 0, frame.width, 0};
    for (A_long row = 0; row < frame.height; ++row) {
        for (A_long col = 0; col < frame.width; ++col) {
            if (static_cast<double>(frame.alphaAt(row, col)) > 0.0) {
                range = {std::min(range.minRow, row), std::max(range.maxRow, row), std::min(range.minCol, col),
                         std::max(range.maxCol, col)};
            }
        }
    }
    return range;
}

template <class Pixel>
class Scan : public testing::Test {
 protected:
    using Alpha = decltype(Pixel::alpha);

    int upTo(int limit) { return std::uniform_int_distribution<int>(0, limit)(random_); }

    // What one bit set can do, what the largest numbers do, and what is no content at all.
    Alpha anyAlpha() {
        using Limits = std::numeric_limits<Alpha>;
        if constexpr (std::is_same_v<Alpha, float>) {
            constexpr float alphas[] = {Limits::denorm_min(),
                                        Limits::max(),
                                        Limits::infinity(),
                                        1.0F,
                                        -1.0F,
                                        -0.0F,
                                        -Limits::infinity(),
                                        Limits::quiet_NaN(),
                                        std::bit_cast<float>(0x7F800001U)};
            return alphas[upTo(8)];
        } else {
            return static_cast<Alpha>(upTo(1) == 0 ? 1 << upTo(Limits::digits - 1) : Limits::max());
        }
    }

    // One random frame with a few pixels set, or many.
    void checkFrame(A_long width, A_long height) {
        Frame<Pixel> frame(width, height,
                           static_cast<std::size_t>(upTo(3)) * sizeof(Pixel) + (upTo(1) == 0 ? 0 : 2));
        const int area = width * height;
        const int count = area == 0 ? 0 : upTo(3) == 0 ? upTo(area) : upTo(4);
        for (int i = 0; i < count; ++i) {
            frame.set(upTo(height - 1), upTo(width - 1), anyAlpha());
        }
        ASSERT_EQ(edges(frame.scan()), edges(byDefinition(frame)))
            << width << " by " << height << ", row bytes " << frame.rowBytes << ", " << count
            << " pixels set, seed " << seed_;
    }

 private:
    const unsigned seed_ = std::random_device{}();
    std::mt19937 random_{seed_};
};
using Depths = testing::Types<PF_Pixel8, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(Scan, Depths);

TYPED_TEST(Scan, AgreesWithThePlainDefinitionOnRandomFrames) {
    for (A_long width = 0; width <= 70; ++width) {
        for (int round = 0; round < 40; ++round) {
            ASSERT_NO_FATAL_FAILURE(this->checkFrame(width, this->upTo(12)));
        }
    }
    for (int round = 0; round < 60; ++round) {
        ASSERT_NO_FATAL_FAILURE(this->checkFrame(1000 + this->upTo(4000), 1 + this->upTo(3)));
    }
}

#ifdef __SSE2__
// As a host may have set the processor, with denormal numbers counting as zero.
TEST(FloatScan, SeesDenormalAlphaWhereTheProcessorDoesNot) {
    Frame<PF_PixelFloat> frame(70, 3, 0);
    frame.set(1, 5, std::numeric_limits<float>::denorm_min());
    frame.set(2, 69, std::numeric_limits<float>::denorm_min());
    constexpr unsigned zeroDenormals = 0x8040;
    const unsigned before = _mm_getcsr();
    _mm_setcsr(before | zeroDenormals);
    const VisibleRange range = frame.scan();
    _mm_setcsr(before);
    EXPECT_EQ(edges(range), (std::array<A_long, 4>{1, 2, 5, 69}));
}
#endif

}  // namespace
