#include "render/World.h"

#include <array>
#include <cstring>

#ifdef __x86_64__
#define FOR_NEWER_PROCESSORS_TOO __attribute__((target_clones("avx2", "default")))
#else
#define FOR_NEWER_PROCESSORS_TOO
#endif

namespace headless::render {
namespace {

constexpr std::size_t gapPixels = 5;
constexpr std::uint32_t gapPixel = 0xFF'AB'CD'EF;

// value * 32768 / 255, rounded, in numbers of 16 bits.
std::uint16_t toWord(std::uint32_t value) {
    const auto scaled = static_cast<std::uint16_t>(value * 128);
    return static_cast<std::uint16_t>(scaled + static_cast<std::uint16_t>(scaled + 127) / 255);
}

float toFloat(std::uint32_t value) {
    return static_cast<float>(value) / 255.0f;
}

// Loops that the compiler can turn into vector instructions. The first would be slower than a copy with those
// that every processor has.
FOR_NEWER_PROCESSORS_TOO void convertPixels(const std::uint32_t* source, std::size_t count, std::uint8_t* to) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = __builtin_bswap32(source[i]);
        std::memcpy(to + 4 * i, &pixel, 4);
    }
}

template <typename Channel, typename Convert>
void convertPixels(const std::uint32_t* source, std::size_t count, Channel* to, Convert convert) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = source[i];
        to[4 * i] = convert(pixel >> 24);
        to[4 * i + 1] = convert(pixel >> 16 & 0xFF);
        to[4 * i + 2] = convert(pixel >> 8 & 0xFF);
        to[4 * i + 3] = convert(pixel & 0xFF);
    }
}

void convertPixels(const std::uint32_t* source, std::size_t count, std::uint16_t* to) {
    convertPixels(source, count, to, toWord);
}

void convertPixels(const std::uint32_t* source, std::size_t count, float* to) {
    convertPixels(source, count, to, toFloat);
}

template <typename Channel>
void fill(World& world, const PictureView& picture) {
    constexpr std::size_t pixelBytes = 4 * sizeof(Channel);
    const auto width = static_cast<std::size_t>(picture.width);
    const auto rows = static_cast<std::size_t>(picture.height);
    world.rowBytes = static_cast<std::uint32_t>((width + gapPixels) * pixelBytes);
    const std::size_t blocks = (world.rowBytes * rows + sizeof(World::Block) - 1) / sizeof(World::Block);
    world.blocks = std::make_unique_for_overwrite<World::Block[]>(blocks);
    std::array<std::uint32_t, gapPixels> gap;
    gap.fill(gapPixel);
    for (std::size_t row = 0; row < rows; ++row) {
        auto* to = reinterpret_cast<Channel*>(world.data() + row * world.rowBytes);
        convertPixels(picture.pixels.data() + row * width, width, to);
        convertPixels(gap.data(), gap.size(), to + 4 * width);
    }
}

}  // namespace

World makeWorld(const PictureView& picture, Depth depth) {
    World world{depth, picture.width, picture.height, 0, {}};
    switch (depth) {
        case Depth::Bits8:
            fill<std::uint8_t>(world, picture);
            break;
        case Depth::Bits16:
            fill<std::uint16_t>(world, picture);
            break;
        case Depth::Bits32:
            fill<float>(world, picture);
            break;
    }
    return world;
}

}  // namespace headless::render
