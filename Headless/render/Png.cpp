#include "render/Png.h"

#include <png.h>

#include <algorithm>
#include <memory>
#include <string>

#include "files/WholeFile.h"

namespace headless::render {
namespace {

// The format of the words in a Picture, but for the multiplication.
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr png_uint_32 wordFormat = PNG_FORMAT_BGRA;
#else
constexpr png_uint_32 wordFormat = PNG_FORMAT_ARGB;
#endif

template <typename Convert>
std::uint32_t withColours(std::uint32_t pixel, Convert convert) {
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8) result |= convert(pixel >> shift & 0xFF, alpha) << shift;
    return result;
}

std::uint32_t divided(std::uint32_t pixel) {
    return withColours(pixel, [](std::uint32_t colour, std::uint32_t alpha) {
        return alpha == 0 ? 0 : std::min(255u, (colour * 255 + alpha / 2) / alpha);
    });
}

std::uint32_t multiplied(std::uint32_t pixel) {
    return withColours(pixel,
                       [](std::uint32_t colour, std::uint32_t alpha) { return (colour * alpha + 127) / 255; });
}

[[noreturn]] void fail(const char* what, const std::filesystem::path& file, const std::string& why) {
    throw std::runtime_error(std::string("cannot ") + what + " " + file.string() + ": " + why);
}

}  // namespace

std::string encodePng(const Picture& picture) {
    std::vector<std::uint32_t> words(picture.pixels.size());
    std::transform(picture.pixels.begin(), picture.pixels.end(), words.begin(), divided);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = wordFormat;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    const std::unique_ptr<char[]> bytes(new char[size]);  // not touched beyond what is needed
    if (png_image_write_to_memory(&image, bytes.get(), &size, 0, words.data(), 0, nullptr) == 0) {
        throw std::runtime_error(std::string("cannot encode a picture: ") + image.message);
    }
    return {bytes.get(), size};
}

void writePng(const std::filesystem::path& file, const Picture& picture) {
    writeWhole(file, encodePng(picture));
}

Picture readPng(const std::filesystem::path& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) fail("read", file, image.message);
    image.format = wordFormat;
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) {
        fail("read", file, image.message);
    }
    std::transform(picture.pixels.begin(), picture.pixels.end(), picture.pixels.begin(), multiplied);
    return picture;
}

}  // namespace headless::render
