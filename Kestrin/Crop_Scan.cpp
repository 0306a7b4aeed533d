#include "Crop_Scan.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace crop {
namespace {

bool isVisible(const PF_Pixel8& pixel) {
    return pixel.alpha != 0;
}

bool isVisible(const PF_Pixel16& pixel) {
    return pixel.alpha != 0;
}

// Compares the bits: where the processor is set to flush denormal numbers, `alpha > 0` would miss them.
bool isVisible(const PF_PixelFloat& pixel) {
    constexpr std::uint32_t infinity = 0x7F800000;
    return std::bit_cast<std::uint32_t>(pixel.alpha) - 1 < infinity;
}

}  // namespace

template <class Pixel>
VisibleRange findVisible(const Pixel* base, A_long width, A_long height, A_u_long rowBytes) noexcept {
    const auto pixelsPerRow = static_cast<std::ptrdiff_t>(rowBytes / sizeof(Pixel));
    VisibleRange range = nothingVisible(width, height);
    for (A_long row = 0; row < height; ++row) {
        const Pixel* pixels = base + row * pixelsPerRow;
        for (A_long col = 0; col < width; ++col) {
            if (isVisible(pixels[col])) {
                range.minRow = std::min(range.minRow, row);
                range.maxRow = std::max(range.maxRow, row);
                range.minCol = std::min(range.minCol, col);
                range.maxCol = std::max(range.maxCol, col);
            }
        }
    }
    return range;
}

template VisibleRange findVisible(const PF_Pixel8*, A_long, A_long, A_u_long) noexcept;
template VisibleRange findVisible(const PF_Pixel16*, A_long, A_long, A_u_long) noexcept;
template VisibleRange findVisible(const PF_PixelFloat*, A_long, A_long, A_u_long) noexcept;

}  // namespace crop
