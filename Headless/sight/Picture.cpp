#include "sight/Picture.h"

#include <array>

#include "files/PictureFile.h"

namespace headless::sight {

namespace {

int byteAt(std::string_view content, std::size_t at) {
    return static_cast<unsigned char>(content[at]);
}

int pairAt(std::string_view content, std::size_t at) {
    return byteAt(content, at) * 256 + byteAt(content, at + 1);
}

std::optional<model::Size> sizeOfPng(std::string_view content) {
    constexpr std::size_t widthAt = 16, heightAt = 20, end = 24;
    if (content.size() < end || pairAt(content, widthAt) != 0 || pairAt(content, heightAt) != 0) {
        return std::nullopt;
    }
    return model::Size{pairAt(content, widthAt + 2), pairAt(content, heightAt + 2)};
}

std::optional<model::Size> sizeOfJpeg(std::string_view content) {
    constexpr int exif = 0xE1, adobe = 0xEE;  // may turn the picture, or say that its colours are others
    std::size_t at = 2;
    while (at + 9 < content.size() && byteAt(content, at) == 0xFF) {
        const int marker = byteAt(content, at + 1);
        if (marker == 0xC0 || marker == 0xC2) {
            return model::Size{pairAt(content, at + 7), pairAt(content, at + 5)};
        }
        if (marker == exif || marker == adobe || marker == 0xDA) {
            break;
        }
        at += 2 + static_cast<std::size_t>(pairAt(content, at + 2));
    }
    return std::nullopt;
}

}  // namespace

std::optional<model::Size> sizeOfDrawn(std::string_view content) {
    const std::string_view type = pictureType(content);
    return type == "png" ? sizeOfPng(content) : type == "jpeg" ? sizeOfJpeg(content) : std::nullopt;
}

std::optional<std::string> contentOf(std::string_view dataUri) {
    constexpr std::string_view mark = ";base64,";
    const std::size_t found = dataUri.find(mark);
    if (!dataUri.starts_with("data:image/") || found == std::string_view::npos || found > 40) {
        return std::nullopt;
    }
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<int, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        values[static_cast<unsigned char>(letters[i])] = static_cast<int>(i);
    }
    std::string content;
    unsigned bits = 0;
    int count = 0;
    for (const char letter : dataUri.substr(found + mark.size())) {
        const int value = values[static_cast<unsigned char>(letter)];
        if (value < 0) {
            return letter == '=' ? std::optional(content) : std::nullopt;
        }
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            content += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return content;
}

}  // namespace headless::sight
