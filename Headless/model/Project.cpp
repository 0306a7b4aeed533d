#include "model/Project.h"

#include <algorithm>
#include <set>

#include "model/LayerJson.h"

namespace headless::model {

Item* Project::item(ItemId id) const {
    // Ids are given in order; only items that came and went make gaps.
    const auto found = std::lower_bound(items.begin(), items.end(), id,
                                        [](const ItemPtr& item, ItemId wanted) { return item->id < wanted; });
    return found != items.end() && (*found)->id == id ? found->get() : nullptr;
}

Layer* Project::layer(LayerId id) const {
    return id < layers_.size() ? layers_[id] : nullptr;
}

std::size_t Project::indexOf(const Layer& layer) const {
    const auto& layers = layer.comp->layers;
    const auto isAt = [&](std::size_t place) { return place < layers.size() && layers[place].get() == &layer; };
    if (isAt(0)) {
        return 0;
    }
    // The end, or else from where it was last, outwards: edits at the ends of the stack move it little.
    const std::size_t end = layers.size() - 1;
    std::size_t above = isAt(end) ? end : std::min<std::size_t>(layer.lastPlace, end);
    std::size_t below = above;
    while (!isAt(above) && !isAt(below) && (above > 0 || below < end)) {
        above -= above > 0 ? 1 : 0;
        below += below < end ? 1 : 0;
    }
    const std::size_t place = isAt(above) ? above : below;
    layer.lastPlace = static_cast<std::uint32_t>(place);
    return place;
}

std::size_t Project::indexOf(const Item& item) const {
    const auto found = std::lower_bound(items.begin(), items.end(), item.id,
                                        [](const ItemPtr& other, ItemId wanted) { return other->id < wanted; });
    return static_cast<std::size_t>(found - items.begin());
}

Item* Project::itemAfter(const Item& item) const {
    const std::size_t next = indexOf(item) + 1;
    return next < items.size() ? items[next].get() : nullptr;
}

std::string Project::nameOf(const Layer& layer) const {
    if (!layer.name.empty()) {
        return layer.name;
    }
    return layer.source != nullptr ? layer.source->name : "Layer " + std::to_string(indexOf(layer) + 1);
}

LayerId Project::newLayerId(Layer* layer) {
    layers_.push_back(layer);
    return static_cast<LayerId>(layers_.size() - 1);
}

void Project::setAlive(LayerId id, Layer* layer) {
    layers_[id] = layer;
}

const Json* Project::pictureAsset(const std::string& id) const {
    const auto found = std::find_if(assets_.begin(), assets_.end(), [&](const Asset& asset) {
        return asset.comp == 0 && assetIdOf(asset.json) == id;
    });
    return found == assets_.end() ? nullptr : &found->json;
}

std::string Project::newAssetId(const std::string& wish) const {
    std::set<std::string> taken;
    for (const Asset& asset : assets_) {
        taken.insert(assetIdOf(asset.json));
    }
    for (const ItemPtr& item : items) {
        if (item->comp) {
            taken.insert(item->comp->assetId);
        }
    }
    std::string id = wish;
    for (int number = 2; taken.contains(id); ++number) {
        id = wish + "_" + std::to_string(number);
    }
    return id;
}

std::string assetIdOf(const Json& asset) {
    return idAt(asset, "id");
}

std::string outerPictureOf(const Json& asset) {
    const std::string name = textAt(asset, "p");
    const std::string picture = textAt(asset, "u") + name;
    const bool embedded = name.starts_with("data:") || picture.starts_with("data:");
    return asset.contains("w") && !embedded ? picture : "";
}

}  // namespace headless::model
