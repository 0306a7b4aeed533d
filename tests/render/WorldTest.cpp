#include "render/World.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>

#include "render/Png.h"

namespace headless::render {
namespace {

const Picture fourPixels{2, 2, {0x80402010, 0x00000000, 0xFFFFFFFF, 0x01010000}};

template <typename Channel>
std::vector<Channel> pixelAt(const World& world, int x, int y) {
    std::vector<Channel> channels(4);
    const std::size_t pixelBytes = 4 * sizeof(Channel);
    std::memcpy(
        channels.data(),
        world.data() + static_cast<std::size_t>(y) * world.rowBytes + static_cast<std::size_t>(x) * pixelBytes,
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
    const World world = makeWorld(picture, depth);
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
    const World world = makeWorld(fourPixels, Depth::Bits16);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(world.data()) % 16, 0u);
    ASSERT_GT(world.rowBytes, 2u * 8);
    for (int x = 2; x < static_cast<int>(world.rowBytes / 8); ++x) {
        for (int y = 0; y < 2; ++y) EXPECT_EQ(pixelAt<std::uint16_t>(world, x, y)[0], 32'768);
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
