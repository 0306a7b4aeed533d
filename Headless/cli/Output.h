// Files that are written: whole or not at all.

#pragma once

#include <filesystem>
#include <string_view>

namespace headless::cli {

// Where the result goes. Checked before the work begins: throws Stop when nothing can be written there, or when
// it is the input and that was not asked for.
std::filesystem::path outputFile(const std::filesystem::path& output, const std::filesystem::path& input,
                                 bool inPlace);
// Throws Stop when no file can be written there.
void requireWritable(const std::filesystem::path& file);

// Throws Stop; the old file is then as it was.
void writeWhole(const std::filesystem::path& file, std::string_view content);

}  // namespace headless::cli
