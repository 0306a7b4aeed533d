#pragma once

#include <filesystem>

namespace headless::cli {

// The plug-in library: the one named, or else Kestrin.so beside this program or in the folder where an
// installation keeps it. Throws Stop.
std::filesystem::path pluginFile(const std::filesystem::path& named);

}  // namespace headless::cli
