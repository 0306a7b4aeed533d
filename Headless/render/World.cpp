#include "render/World.h"

#include <array>
#include <cstring>

namespace headless::render {
namespace {

constexpr std::size_t gapPixels = 5;
constexpr std::uint32_t gapPixel = 0xFF'AB'CD'EF;

template <typename Channel, typename Convert>
void fill(World& world, const Picture& picture, Convert convert) {
    using Pixel = std::array<Channel, 4>;
    const auto converted = [&](std::uint32_t pixel) {
        return Pixel{convert(pixel >> 24), convert(pixel >> 16 & 0xFF), convert(pixel >> 8 & 0xFF),
                     convert(pixel & 0xFF)};
    };
    const std::size_t rowPixels = static_cast<std::size_t>(picture.width) + gapPixels;
    const std::size_t rows = static_cast<std::size_t>(picture.height);
    const std::size_t bytes = rowPixels * sizeof(Pixel) * rows;
    world.rowBytes = static_cast<std::uint32_t>(rowPixels * sizeof(Pixel));
    world.blocks.resize((bytes + sizeof(World::Block) - 1) / sizeof(World::Block));

    std::vector<Pixel> row(rowPixels, converted(gapPixel));
    const std::uint32_t* source = picture.pixels.data();
    for (std::size_t index = 0; index < rows; ++index) {
        for (int column = 0; column < picture.width; ++column) {
            row[static_cast<std::size_t>(column)] = converted(*source++);
        }
        std::memcpy(world.data() + index * world.rowBytes, row.data(), world.rowBytes);
    }
}

}  // namespace

World makeWorld(const Picture& picture, Depth depth) {
    World world{depth, picture.width, picture.height, 0, {}};
    switch (depth) {
        case Depth::Bits8:
            fill<std::uint8_t>(world, picture,
                               [](std::uint32_t value) { return static_cast<std::uint8_t>(value); });
            break;
        case Depth::Bits16:
            fill<std::uint16_t>(world, picture, [](std::uint32_t value) {
                return static_cast<std::uint16_t>((value * 32'768 + 127) / 255);
            });
            break;
        case Depth::Bits32:
            fill<float>(world, picture, [](std::uint32_t value) { return static_cast<float>(value) / 255.0f; });
            break;
    }
    return world;
}

}  // namespace headless::render
