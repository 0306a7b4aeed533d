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

// What an edge drawn a hair's breadth elsewhere may do to a picture, in levels of 255.
struct NoiseLimits {
    int invisible = 2;  // nobody sees that much, anywhere
    int faint = 8;
    int largest = 64;
    // By an edge that lies elsewhere by this part of a pixel, a channel changes by this part of its contrast.
    int partOfContrast = 4;
    // Of the pixels above faint, and of those that lie in no line of at most two pixels: so many, and no more
    // than one for each so many of the picture.
    std::size_t pixels = 40;
    std::size_t pictureForEach = 256;
    // Of those that no edge explains, this part of them.
    std::size_t strayPart = 20;
};

// Whether all that differs is such noise. What is gone, new, of another colour or a pixel elsewhere is none,
// however faint or small: there is no edge in both pictures that explains it.
bool isEdgeNoise(const PictureView& one, const PictureView& other, const NoiseLimits& limits = {});

// Around the pixels that are not wholly transparent; nothing where there are none.
std::optional<PixelBox> visibleBounds(const PictureView& picture);

}  // namespace headless::render
