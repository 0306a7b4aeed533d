// Pictures, as far as their first bytes tell.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "model/Project.h"

namespace headless::sight {

// Of a PNG or JPEG that the renderer draws as browsers do; nothing for any other.
std::optional<model::Size> sizeOfDrawn(std::string_view content);

// What a data URI of base64 holds; nothing for any other.
std::optional<std::string> contentOf(std::string_view dataUri);

}  // namespace headless::sight
