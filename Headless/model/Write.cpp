// Writes a project: the text of every layer that is as the file has it, and a patched copy of the others.

#include <algorithm>
#include <unordered_set>

#include "files/PictureFile.h"
#include "model/Base64.h"
#include "model/DocumentParser.h"
#include "model/LayerJson.h"

namespace headless::model {

namespace {

struct LayerAsRead {
    LayerData data;
    std::optional<int> parent;
};

LayerAsRead readBack(const Json& json) {
    LayerAsRead result;
    readLayer(json, "layer", result.data, result.parent);
    return result;
}

// The object of a layer that the file does not have.
Json newLayerJson(const Layer& layer) {
    Json json = {{"ddd", layer.threeD ? 1 : 0},
                 {"ty", static_cast<int>(layer.type)},
                 {"nm", layer.name},
                 {"sr", jsonNumber(layer.stretch)}};
    if (!layer.reference.empty()) {
        json["refId"] = layer.reference;
    }
    if (layer.type == LayerType::Precomp) {
        json["w"] = layer.useSize.width;
        json["h"] = layer.useSize.height;
    }
    json["ks"] = {{"o", {{"a", 0}, {"k", 100}}},
                  {"r", {{"a", 0}, {"k", 0}}},
                  {"p", {{"a", 0}, {"k", {0, 0, 0}}}},
                  {"a", {{"a", 0}, {"k", {0, 0, 0}}}},
                  {"s", {{"a", 0}, {"k", {100, 100, 100}}}}};
    json["ao"] = 0;
    json["ip"] = jsonNumber(layer.inFrame);
    json["op"] = jsonNumber(layer.outFrame);
    json["st"] = jsonNumber(layer.startFrame);
    json["bm"] = 0;
    return json;
}

Json objectOf(const Layer& layer) {
    return layer.text.empty() ? newLayerJson(layer) : parseValue(layer.text);
}

// Whether the layer still says what its object in the file says.
bool isSame(const Layer& layer, const Json& json, const LayerAsRead& before) {
    const bool sameParent = layer.parent != nullptr ? before.parent == layer.parent->index : !before.parent;
    return before.data == layer && sameParent && sameMasks(json, layer.masks);
}

bool isAsText(const Layer& layer) {
    if (!layer.touched || layer.text.empty()) {
        return !layer.touched;
    }
    const Json json = parseValue(layer.text);
    return isSame(layer, json, readBack(json));
}

// As the file has it where nothing differs. A large layer takes many times its text as an object, which is made
// once and gone before the text is copied.
std::string textOf(const Layer& layer) {
    Json json = objectOf(layer);
    {
        const LayerAsRead before = readBack(json);
        if (!layer.text.empty() && isSame(layer, json, before)) {
            return std::string(layer.text);
        }
        patchLayer(json, layer, before.data, before.parent);
    }
    return json.dump();
}

}  // namespace

Json Project::layerJson(const Layer& layer) const {
    Json json = objectOf(layer);
    if (layer.touched) {
        const LayerAsRead before = readBack(json);
        patchLayer(json, layer, before.data, before.parent);
    }
    return json;
}

bool Project::differsFromText() const {
    if (items.size() != itemsInText_) {
        return true;
    }
    const auto& root = this->root();
    if (root.item->size != sizeInText_) {
        return true;
    }
    for (const ItemPtr& item : items) {
        if (!item->comp) {
            continue;
        }
        const Comp& comp = *item->comp;
        if (comp.layers.size() != comp.layersInText ||
            (comp.nameGiven && item->name != textAt(parseValue(comp.shell), "nm"))) {
            return true;
        }
        const char* place = nullptr;
        for (const LayerPtr& layer : comp.layers) {
            // The texts of layers in their first order follow each other.
            if (layer->text.data() < place || !isAsText(*layer)) {
                return true;
            }
            place = layer->text.data();
        }
    }
    return false;
}

void Project::writeLayers(const Comp& comp, std::string& out) const {
    out += '[';
    const char* separator = "";
    for (const LayerPtr& layer : comp.layers) {
        out += separator;
        separator = ",";
        if (layer->touched) {
            out += textOf(*layer);
        } else {
            out += layer->text;
        }
    }
    out += ']';
}

void Project::writeComp(const Comp& comp, std::string& out) const {
    const bool isRoot = comp.assetId.empty();
    Json shell = parseValue(comp.shell);
    if (isRoot && comp.item->size != sizeInText_) {
        shell["w"] = comp.item->size.width;
        shell["h"] = comp.item->size.height;
    }
    if (comp.nameGiven) {
        shell["nm"] = comp.item->name;
    }
    if (!isRoot) {
        shell["id"] = comp.assetId;
    } else if (!shell.contains("assets")) {
        shell["assets"] = Json::array();
    }
    out += '{';
    const char* separator = "";
    for (const auto& [key, value] : shell.items()) {
        out += separator;
        separator = ",";
        out += Json(key).dump() + ":";
        if (key == "layers") {
            writeLayers(comp, out);
        } else if (isRoot && key == "assets") {
            writeAssets(out);
        } else {
            out += value.dump();
        }
    }
    out += '}';
}

void Project::writeAssets(std::string& out) const {
    out += '[';
    const char* separator = "";
    const auto writeNext = [&](auto&& write) {
        out += separator;
        separator = ",";
        write();
    };
    for (const Asset& asset : assets_) {
        if (asset.comp == 0) {
            writeNext([&] { out += asset.json.dump(); });
        } else if (const Item* comp = item(asset.comp)) {
            writeNext([&] { writeComp(*comp->comp, out); });
        }
    }
    for (const ItemPtr& added : items) {
        if (added->comp && added->id >= firstIdBeyondText_) {
            writeNext([&] { writeComp(*added->comp, out); });
        }
    }
    out += ']';
}

std::vector<std::string> Project::outerPictures() const {
    std::vector<std::string> pictures;
    for (const Asset& asset : assets_) {
        const std::string picture = outerPictureOf(asset.json);
        if (!picture.empty() && !assetIdOf(asset.json).empty()) {  // without an id nothing shows it
            pictures.push_back(picture);
        }
    }
    return pictures;
}

std::string Project::pictureContent(const std::string& picture) const {
    if (pictures_ && pictures_->sizeOf(picture)) {
        return pictures_->contentOf(picture);
    }
    try {
        return readPicture(imageFolder_.value(), picture);
    } catch (const std::runtime_error& problem) {
        throw ProjectError(problem.what());
    }
}

Json Project::withPicture(const Json& asset) const {
    const std::string picture = outerPictureOf(asset);
    if (picture.empty()) {
        return asset;
    }
    const std::string bytes = pictureContent(picture);
    const std::string type(pictureType(bytes));
    Json embedded = asset;
    embedded["u"] = "";
    embedded["p"] = "data:image/" + (type.empty() ? "png" : type) + ";base64," + base64(bytes);
    embedded["e"] = 1;
    return embedded;
}

std::string Project::write() const {
    if (!differsFromText()) {
        return text_;
    }
    std::string out;
    out.reserve(2 * text_.size());  // only what is written takes memory, and growing would take it twice
    writeComp(root(), out);
    return out;
}

LayerList Project::listOf(const Comp& comp) const {
    return {comp.layers.size(),
            [&comp](std::size_t index) {
                const Layer& layer = *comp.layers[index];
                return LayerRole{.index = layer.index,
                                 .parent = layer.parent != nullptr ? layer.parent->index : std::nullopt,
                                 .matteSource = layer.matteSource,
                                 .matte = layer.matte,
                                 .isMatteSource = layer.isMatteSource,
                                 .hidden = layer.hidden};
            },
            [this, &comp](std::size_t index) { return layerJson(*comp.layers[index]); }};
}

Document Project::documentOf(const Comp& comp) const {
    Document document{frameRate(), listOf(comp), {}, {}};
    std::unordered_set<const Item*> reached;
    std::vector<const Comp*> waiting{&comp};
    std::unordered_set<std::string> images;
    while (!waiting.empty()) {
        const Comp& next = *waiting.back();
        waiting.pop_back();
        if (&next != &comp) {
            document.compositions.push_back({next.assetId, listOf(next)});
        }
        for (const LayerPtr& layer : next.layers) {
            if (layer->source != nullptr && layer->source->comp && reached.insert(layer->source).second) {
                waiting.push_back(layer->source->comp.get());
            } else if (layer->type == LayerType::Image) {
                images.insert(layer->reference);
            }
        }
    }
    for (const Asset& asset : assets_) {
        const std::string id = assetIdOf(asset.json);
        if (images.contains(id)) {
            document.images.push_back({id, withPicture(asset.json)});
        }
    }
    return document;
}

}  // namespace headless::model
