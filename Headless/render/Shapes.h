// The drawn contents of a shape layer, and transforms, as the renderer reads them.

#pragma once

#include "render/Property.h"

namespace headless::render {

// Items that it cannot draw, and hidden ones, are left out.
Json rewrittenShapes(const Json& items, const Clock& clock);

// Of a layer: in three dimensions the renderer looks for other rotations.
enum class Space { Flat, Deep };
Json rewrittenTransform(const Json& transform, Space space, const Clock& clock);

}  // namespace headless::render
