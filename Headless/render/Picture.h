// A picture of a composition, as the renderer draws it.

#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace headless::render {

// Premultiplied, one 32-bit word a pixel (blue in the lowest byte, alpha in the highest), rows without
// gaps, top row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    bool operator==(const Picture&) const = default;
};

// The same in somebody else's memory.
struct PictureView {
    PictureView() = default;
    PictureView(int pictureWidth, int pictureHeight, std::span<const std::uint32_t> itsPixels)
        : width(pictureWidth), height(pictureHeight), pixels(itsPixels) {}
    PictureView(const Picture& picture) : PictureView(picture.width, picture.height, picture.pixels) {}

    Picture copy() const { return {width, height, {pixels.begin(), pixels.end()}}; }

    int width = 0;
    int height = 0;
    std::span<const std::uint32_t> pixels;
};

}  // namespace headless::render
