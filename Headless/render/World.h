// A rendered frame as the host hands it to a plug-in.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace headless::render {

enum class Depth { Bits8 = 1, Bits16 = 2, Bits32 = 3 };

// Pixels of four channels, alpha, red, green, blue: bytes, 16-bit words from 0 to 32768, or floats from 0 to 1.
// Premultiplied, top row first. Behind each row is a gap, full of opaque pixels, so that a reader who runs into
// one notices.
struct WorldShape {
    Depth depth = Depth::Bits8;
    int width = 0;
    int height = 0;

    std::size_t rowBytes() const;
    std::size_t bytes() const { return rowBytes() * static_cast<std::size_t>(height); }
};

struct World : WorldShape {
    std::shared_ptr<std::byte> memory;  // aligned to 16 bytes at least
};

// A world is drawn as a picture (words of premultiplied pixels, as in Picture) in its own memory and then laid
// out there. Where the picture's first row is, and how far its rows are apart:
struct Canvas {
    std::uint32_t* pixels = nullptr;
    std::size_t rowBytes = 0;
};
Canvas canvasOf(const WorldShape& shape, std::byte* memory);
void layOut(const WorldShape& shape, std::byte* memory);

World transparentWorld(const WorldShape& shape);

}  // namespace headless::render
