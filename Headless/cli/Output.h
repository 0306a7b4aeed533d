// Where results may go, found out before the work begins.

#pragma once

#include <filesystem>

namespace headless::cli {

// Where the result goes. Checked before the work begins: throws Stop when nothing can be written there, or when
// it is the input and that was not asked for.
std::filesystem::path outputFile(const std::filesystem::path& output, const std::filesystem::path& input,
                                 bool inPlace);
// Throws Stop when no file can be written there.
void requireWritable(const std::filesystem::path& file);

}  // namespace headless::cli
