// A layer seen through its masks, as layers to draw.
//
// The renderer combines masks wrongly: it ignores opacity and inversion, takes an empty intermediate result
// for a full one, and loses rows wider than 1024 pixels. Mattes it gets right, but for a level or two of
// brightness each; so masks are drawn and used as mattes.

#pragma once

#include <functional>
#include <vector>

#include "model/Document.h"
#include "render/Property.h"

namespace headless::render {

using Layers = std::vector<Json>;  // topmost first

using model::Matte;

struct MaskTools {
    // The mask's path as a layer, where the masked layer stands. A null opacity is full.
    std::function<Json(const Json& mask, const Json& opacity)> draw;
    // `target` seen through `source`, in layers of their own.
    std::function<Layers(Layers target, Layers source, Matte matte)> matted;
    std::function<Layers(Layers layers, const Json& opacity)> faded;
};

// The masks that count: those of mode none are left out.
std::vector<const Json*> masksOf(const Json& layer);
// Whether the renderer gets them right as they stand: one that leaves what it covers.
bool isPlain(const std::vector<const Json*>& masks);

Layers throughMasks(Layers layers, const std::vector<const Json*>& masks, const MaskTools& tools);

}  // namespace headless::render
