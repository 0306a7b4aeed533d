// The scripts that make up the engine's library, embedded by the build in the order in which they run.

#pragma once

#include <span>
#include <string_view>

namespace headless::script {

// Each is a function expression that takes the program's functions and the global object.
struct LibraryScript {
    const char* name;
    std::string_view text;
};

std::span<const LibraryScript> library();

}  // namespace headless::script
