#include "model/Document.h"

#include <memory>
#include <utility>

#include "model/LayerJson.h"

namespace headless::model {

namespace {

LayerList listOf(const std::shared_ptr<const Json>& document, const Json& object) {
    const auto layers = object.find("layers");
    if (layers == object.end() || !layers->is_array()) {
        return {};
    }
    return {layers->size(), [document, &list = *layers](std::size_t index) { return readRole(list[index]); },
            [document, &list = *layers](std::size_t index) { return list[index]; }};
}

}  // namespace

LayerRole readRole(const Json& layer) {
    const auto whole = [&](const char* key) -> std::optional<int> {
        const auto found = layer.find(key);
        if (found == layer.end() || !found->is_number()) {
            return std::nullopt;
        }
        return wholeIndex(found->get<double>());
    };
    LayerRole role{.index = whole("ind"),
                   .parent = whole("parent"),
                   .matteSource = whole("tp"),
                   .matte = std::nullopt,
                   .isMatteSource = truthAt(layer, "td"),
                   .hidden = truthAt(layer, "hd")};
    if (const auto type = whole("tt"); type && *type >= 1 && *type <= 4) {
        role.matte = static_cast<Matte>(*type);
    }
    return role;
}

Document asDocument(Json document) {
    const auto shared = std::make_shared<const Json>(std::move(document));
    Document result;
    if (const auto rate = shared->find("fr"); rate != shared->end() && rate->is_number()) {
        result.frameRate = rate->get<double>();
    }
    result.layers = listOf(shared, *shared);
    if (const auto assets = shared->find("assets"); assets != shared->end()) {
        for (const Json& asset : *assets) {
            if (asset.contains("layers")) {
                result.compositions.push_back({assetIdOf(asset), listOf(shared, asset)});
            } else {
                result.images.push_back({assetIdOf(asset), asset});
            }
        }
    }
    return result;
}

}  // namespace headless::model
