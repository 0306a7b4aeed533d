// Pictures that lie beside an animation.

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace headless {

constexpr std::uintmax_t largestPicture = 64 << 20;  // bytes

// "png", "jpeg", "webp", "gif" or "svg+xml", by what the content begins with; empty for anything else.
std::string_view pictureType(std::string_view content);

// The content of a file inside the folder, with all links followed, if it is a picture: the name comes from
// other people's animations, and nothing else is theirs to ask for. Nothing but a regular file is opened.
// Throws std::runtime_error naming the file.
std::string readPicture(const std::filesystem::path& folder, const std::string& name);

}  // namespace headless
