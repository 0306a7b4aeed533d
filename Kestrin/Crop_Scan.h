// The scan of one frame's pixels, without a host.

#pragma once

#include "AEGP_Host.h"

namespace crop {

// First and last visible row and column, inclusive, in pixels of the frame.
struct VisibleRange {
    A_long minRow;
    A_long maxRow;
    A_long minCol;
    A_long maxCol;
};

// What a frame without visible pixels gives: the minima beyond the last row and column, the maxima 0.
inline VisibleRange nothingVisible(A_long width, A_long height) {
    return {height, 0, width, 0};
}

// The range of pixels whose alpha is above zero; not-a-number is not. Reads `width` pixels of each row; the
// rest of a row's bytes is skipped. Row bytes that are no multiple of the pixel size are rounded down. Defined
// for PF_Pixel8, PF_Pixel16 and PF_PixelFloat. Main thread or any other.
template <class Pixel>
VisibleRange findVisible(const Pixel* base, A_long width, A_long height, A_u_long rowBytes) noexcept;

}  // namespace crop
