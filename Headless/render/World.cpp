#include "render/World.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __x86_64__
#define FOR_NEWER_PROCESSORS_TOO __attribute__((target_clones("avx2", "default")))
#else
#define FOR_NEWER_PROCESSORS_TOO
#endif

namespace headless::render {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::size_t gapPixels = 5;
constexpr std::uint32_t gapPixel = 0xFF'AB'CD'EF;

std::size_t pixelBytes(Depth depth) {
    return depth == Depth::Bits8 ? 4 : depth == Depth::Bits16 ? 8 : 16;
}

// value * 32768 / 255, rounded, in numbers of 16 bits.
std::uint16_t toWord(std::uint8_t value) {
    const auto scaled = static_cast<std::uint16_t>(value * 128);
    return static_cast<std::uint16_t>(scaled + static_cast<std::uint16_t>(scaled + 127) / 255);
}

float toFloat(std::uint8_t value) {
    return static_cast<float>(value) / 255.0f;
}

// Loops that the compiler can turn into vector instructions; slower than a copy with those that every processor
// has.
FOR_NEWER_PROCESSORS_TOO void reverseBytes(std::uint32_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) pixels[i] = __builtin_bswap32(pixels[i]);
}

FOR_NEWER_PROCESSORS_TOO void convert(const std::uint8_t* from, std::size_t count, std::uint16_t* to) {
    for (std::size_t i = 0; i < count; ++i) to[i] = toWord(from[i]);
}

FOR_NEWER_PROCESSORS_TOO void convert(const std::uint8_t* from, std::size_t count, float* to) {
    for (std::size_t i = 0; i < count; ++i) to[i] = toFloat(from[i]);
}

// Asks for the bytes 4 KB further on, where the processor's own prefetching may have ended with the page.
// Where nothing lies there, no harm is done.
void prefetchAhead(const std::byte* bytes, std::size_t count) {
    constexpr std::uintptr_t distance = 4096, line = 64;
    const auto begin = reinterpret_cast<std::uintptr_t>(bytes) + distance;
    for (std::uintptr_t at = begin; at < begin + count; at += line) {
        __builtin_prefetch(reinterpret_cast<const void*>(at));
    }
}

// `to` may reach over what of `from` has been read.
template <typename Channel>
void widen(const std::byte* from, std::size_t count, std::byte* to) {
    constexpr std::size_t most = 128;
    std::uint32_t pixels[most];
    Channel channels[4 * most];
    for (std::size_t done = 0; done < count; done += most) {
        const std::size_t some = std::min(most, count - done);
        const std::byte* const source = from + done * sizeof *pixels;
        std::byte* const target = to + done * 4 * sizeof(Channel);
        prefetchAhead(source, some * sizeof *pixels);
        prefetchAhead(target, some * 4 * sizeof(Channel));
        std::memcpy(pixels, source, some * sizeof *pixels);
        reverseBytes(pixels, some);
        convert(reinterpret_cast<const std::uint8_t*>(pixels), 4 * some, channels);
        std::memcpy(target, channels, some * 4 * sizeof(Channel));
    }
}

}  // namespace

std::size_t WorldShape::rowBytes() const {
    return (static_cast<std::size_t>(width) + gapPixels) * pixelBytes(depth);
}

// Bytes keep their place. Wider channels take more of it than the picture does, which therefore lies at the
// end: what is written from the first pixel on never reaches what has not been read.
Canvas canvasOf(const WorldShape& shape, std::byte* memory) {
    const std::size_t pictureRow = static_cast<std::size_t>(shape.width) * sizeof(std::uint32_t);
    const bool inPlace = shape.depth == Depth::Bits8;
    if (!inPlace) memory += shape.bytes() - pictureRow * static_cast<std::size_t>(shape.height);
    return {reinterpret_cast<std::uint32_t*>(memory), inPlace ? shape.rowBytes() : pictureRow};
}

void layOut(const WorldShape& shape, std::byte* memory) {
    const auto width = static_cast<std::size_t>(shape.width);
    const Canvas canvas = canvasOf(shape, memory);
    std::uint32_t gapWords[gapPixels];
    std::fill_n(gapWords, gapPixels, gapPixel);
    const auto* gap = reinterpret_cast<const std::byte*>(gapWords);
    const auto* from = reinterpret_cast<const std::byte*>(canvas.pixels);
    for (std::byte* row = memory; row != memory + shape.bytes(); row += shape.rowBytes()) {
        std::byte* const behind = row + width * pixelBytes(shape.depth);
        switch (shape.depth) {
            case Depth::Bits8:
                std::memcpy(behind, gap, sizeof gapWords);
                reverseBytes(reinterpret_cast<std::uint32_t*>(row), width + gapPixels);
                break;
            case Depth::Bits16:
                widen<std::uint16_t>(from, width, row);
                widen<std::uint16_t>(gap, gapPixels, behind);
                break;
            case Depth::Bits32:
                widen<float>(from, width, row);
                widen<float>(gap, gapPixels, behind);
                break;
        }
        from += canvas.rowBytes;
    }
}

World transparentWorld(const WorldShape& shape) {
    World world{shape,
                std::shared_ptr<std::byte>(new std::byte[shape.bytes()](), std::default_delete<std::byte[]>())};
    layOut(world, world.memory.get());
    return world;
}

}  // namespace headless::render
