#include "render/World.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>

#include "render/Png.h"

namespace headless::render {
namespace {

// As a worker makes one.
World worldOf(const Picture& picture, Depth depth) {
    World world = transparentWorld({depth, picture.width, picture.height});
    const Canvas canvas = canvasOf(world, world.memory.get());
    const std::size_t rowBytes = static_cast<std::size_t>(picture.width) * 4;
    for (std::size_t y = 0; y < static_cast<std::size_t>(picture.height); ++y) {
        std::memcpy(reinterpret_cast<std::byte*>(canvas.pixels) + y * canvas.rowBytes,
                    picture.pixels.data() + y * rowBytes / 4, rowBytes);
    }
    layOut(world, world.memory.get());
    return world;
}

template <typename Channel>
std::vector<Channel> pixelAt(const World& world, int x, int y) {
    std::vector<Channel> channels(4);
    const std::size_t pixelBytes = 4 * sizeof(Channel);
    std::memcpy(channels.data(),
                world.memory.get() + static_cast<std::size_t>(y) * world.rowBytes() +
                    static_cast<std::size_t>(x) * pixelBytes,
                pixelBytes);
    return channels;
}

// Every value in every channel, in rows of a length that no vector fits.
template <typename Channel, typename Convert>
void expectConverted(Depth depth, Convert convert) {
    Picture picture{19, 27, {}};
    for (std::uint32_t i = 0; i < 19 * 27; ++i) {
        picture.pixels.push_back(i % 256 << 24 | (i + 1) % 256 << 16 | (i + 2) % 256 << 8 | (i + 3) % 256);
    }
    const World world = worldOf(picture, depth);
    for (int i = 0; i < 19 * 27; ++i) {
        std::vector<Channel> expected;
        for (int channel = 0; channel < 4; ++channel) expected.push_back(convert((i + channel) % 256));
        ASSERT_EQ(pixelAt<Channel>(world, i % 19, i / 19), expected) << i;
    }
}

TEST(World, LaysChannelsOutAtEachDepth) {
    expectConverted<std::uint8_t>(Depth::Bits8, [](int value) { return static_cast<std::uint8_t>(value); });
    expectConverted<std::uint16_t>(Depth::Bits16, [](int value) {
        return static_cast<std::uint16_t>(std::lround(value * 32'768 / 255.0));
    });
    expectConverted<float>(Depth::Bits32, [](int value) { return static_cast<float>(value) / 255.0f; });
}

TEST(World, FillsTheGapsWithOpaquePixels) {
    for (const Depth depth : {Depth::Bits8, Depth::Bits16}) {
        const World world = transparentWorld({depth, 2, 2});
        const int inRow = static_cast<int>(world.rowBytes()) / (depth == Depth::Bits8 ? 4 : 8);
        ASSERT_GT(inRow, 2);
        for (int i = 0; i < 2 * inRow; ++i) {
            const int alpha = depth == Depth::Bits8 ? pixelAt<std::uint8_t>(world, i % inRow, i / inRow)[0]
                                                    : pixelAt<std::uint16_t>(world, i % inRow, i / inRow)[0];
            EXPECT_EQ(alpha, i % inRow < 2 ? 0 : depth == Depth::Bits8 ? 255 : 32'768) << i;
        }
    }
}

TEST(Png, GivesEveryPremultipliedColourBack) {
    Picture picture{256, 256, {}};
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        for (std::uint32_t colour = 0; colour < 256; ++colour) {
            const std::uint32_t red = std::min(colour, alpha);
            picture.pixels.push_back(alpha << 24 | red << 16 | (alpha - red) << 8 | alpha / 2);
        }
    }
    const auto file = std::filesystem::path(testing::TempDir()) / "colours.png";
    writePng(file, picture);
    EXPECT_EQ(readPng(file), picture);
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace headless::render
