// A rendered frame as the host hands it to a plug-in.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "render/Renderer.h"

namespace headless::render {

enum class Depth { Bits8 = 1, Bits16 = 2, Bits32 = 3 };

// Pixels of four channels, alpha, red, green, blue: bytes, 16-bit words from 0 to 32768, or floats from 0 to 1.
// Premultiplied, top row first. A row may be followed by a gap before the next.
struct World {
    struct alignas(16) Block {
        std::byte bytes[16];
    };

    Depth depth = Depth::Bits8;
    int width = 0;
    int height = 0;
    std::uint32_t rowBytes = 0;
    std::unique_ptr<Block[]> blocks;

    std::byte* data() { return blocks ? blocks[0].bytes : nullptr; }
    const std::byte* data() const { return blocks ? blocks[0].bytes : nullptr; }
};

// The gaps are full of opaque pixels, so that a reader who runs into one notices.
World makeWorld(const PictureView& picture, Depth depth);

}  // namespace headless::render
