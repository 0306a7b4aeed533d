// How far two pictures of the same frame are apart.

#pragma once

#include <cstddef>
#include <optional>

#include "render/Picture.h"

namespace headless::render {

struct PixelPoint {
    int x = 0;
    int y = 0;
    bool operator==(const PixelPoint&) const = default;
};

struct PixelBox {  // right and bottom lie outside
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const PixelBox&) const = default;
};

struct Difference {
    int largest = 0;              // between two channels, of 255
    PixelPoint worst;             // the first pixel that differs by `largest`
    std::size_t count = 0;        // of the pixels where a channel differs by more than the tolerance
    std::optional<PixelBox> box;  // around those pixels
};

// Compares premultiplied channels. The pictures must be equal in size.
Difference difference(const PictureView& one, const PictureView& other, int tolerance = 2);

// How many pixels that differ by more than the tolerance lie wholly among others that do: none where the
// differences are lines of at most two pixels.
std::size_t pixelsInside(const PictureView& one, const PictureView& other, int tolerance);

// Whether the pixels that differ by more than the tolerance, with those around them, come closer to the other
// picture's by more than half once that one is moved by one pixel. Not asked of a handful of pixels: those fit
// by chance.
bool fitsBetterMoved(const PictureView& one, const PictureView& other, int tolerance);

// Around the pixels that are not wholly transparent; nothing where there are none.
std::optional<PixelBox> visibleBounds(const PictureView& picture);

}  // namespace headless::render
