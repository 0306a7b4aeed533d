// Parses the text of a Lottie document, layer by layer: a layer is handed over as soon as it is complete and
// does not stay in memory, and its list stays behind empty.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/Project.h"

namespace headless::model {

// `asset`: the place in the list of assets of the composition that has the layer, -1 for the root.
using TakeLayer = std::function<void(int asset, const Json& layer, std::string_view text)>;

// Throws ProjectError on what is no JSON, too deep, or holds numbers that no animation has.
Json parseDocument(const std::string& text, const TakeLayer& takeLayer);

// A part of a document that has been parsed before.
Json parseValue(std::string_view text);

}  // namespace headless::model
