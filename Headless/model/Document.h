// A document that shows one composition, as the renderer takes it: layer by layer, since as values a whole one
// would stand in memory many times as large as its text.

#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace headless::model {

using Json = nlohmann::ordered_json;

enum class Matte : std::uint8_t { Alpha = 1, InvertedAlpha = 2, Luma = 3, InvertedLuma = 4 };

// How a layer stands to the others of its composition. Numbers are those that layers have as their index.
struct LayerRole {
    std::optional<int> index, parent;
    std::optional<int> matteSource;  // where there is none, the layer above
    std::optional<Matte> matte;      // the layer is seen through its source
    bool isMatteSource = false;      // and not drawn for itself
    bool hidden = false;
};

// The layers of a composition, topmost first.
struct LayerList {
    std::size_t count = 0;
    std::function<LayerRole(std::size_t index)> role;
    std::function<Json(std::size_t index)> json;  // the layer's object, made at each call
};

struct Document {
    struct Composition {
        std::string id;
        LayerList layers;
    };
    struct Image {
        std::string id;
        Json asset;  // with its picture inside
    };

    double frameRate = 30;
    LayerList layers;                       // of the composition that is shown
    std::vector<Composition> compositions;  // those that it reaches
    std::vector<Image> images;
};

// Whatever stands there as something else counts as absent.
LayerRole readRole(const Json& layer);

// Of a document that is small enough to be there as a whole.
Document asDocument(Json document);

}  // namespace headless::model
