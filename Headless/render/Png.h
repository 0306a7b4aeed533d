// Pictures as PNG files: eight bits a channel, colours not premultiplied.

#pragma once

#include <filesystem>
#include <string>

#include "render/Picture.h"

namespace headless::render {

// Writes the whole file or leaves the old one as it was. Throws std::runtime_error naming the file.
void writePng(const std::filesystem::path& file, const Picture& picture);
// The same bytes. Throws std::runtime_error.
std::string encodePng(const Picture& picture);
// Any PNG; a picture that writePng() wrote comes back equal. Throws std::runtime_error naming the file.
Picture readPng(const std::filesystem::path& file);

}  // namespace headless::render
