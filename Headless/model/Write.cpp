// Writes a project: the text of every layer that is as the file has it, and a patched copy of the others.

#include <algorithm>
#include <fstream>
#include <iterator>
#include <unordered_set>

#include "model/Base64.h"
#include "model/LayerJson.h"

namespace headless::model {

namespace {

struct LayerAsRead {
    LayerData data;
    std::vector<std::shared_ptr<Mask>> masks;
    std::optional<int> parent;
};

LayerAsRead readBack(const Json& json) {
    LayerAsRead result;
    readLayer(json, "layer", result.data, result.masks, result.parent);
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

}  // namespace

Json Project::layerJson(const Layer& layer) const {
    Json json = layer.text.empty() ? newLayerJson(layer) : Json::parse(layer.text);
    if (layer.touched) {
        const LayerAsRead before = readBack(json);
        patchLayer(json, layer, before.data, before.masks, before.parent);
    }
    return json;
}

bool Project::isAsText(const Layer& layer) const {
    if (!layer.touched) {
        return true;
    }
    if (layer.text.empty()) {
        return false;
    }
    const LayerAsRead before = readBack(Json::parse(layer.text));
    const bool sameParent = layer.parent != nullptr ? before.parent == layer.parent->index : !before.parent;
    return before.data == layer && sameParent &&
           std::equal(before.masks.begin(), before.masks.end(), layer.masks.begin(), layer.masks.end(),
                      [](const auto& a, const auto& b) { return *a == *b; });
}

bool Project::differsFromText() const {
    if (items.size() != itemsInText_) {
        return true;
    }
    const auto& root = this->root();
    if (Size{static_cast<int>(root.shell["w"].get<double>() + 0.5),
             static_cast<int>(root.shell["h"].get<double>() + 0.5)} != root.item->size) {
        return true;
    }
    for (const ItemPtr& item : items) {
        if (!item->comp) {
            continue;
        }
        const Comp& comp = *item->comp;
        if (comp.layers.size() != comp.layersInText || (comp.nameGiven && item->name != comp.nameInText)) {
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
        if (isAsText(*layer)) {
            out += layer->text;
        } else {
            out += layerJson(*layer).dump();
        }
    }
    out += ']';
}

void Project::writeComp(const Comp& comp, std::string& out) const {
    const bool isRoot = comp.assetId.empty();
    Json shell = comp.shell;
    if (isRoot && comp.item->size != Size{static_cast<int>(shell["w"].get<double>() + 0.5),
                                          static_cast<int>(shell["h"].get<double>() + 0.5)}) {
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
    std::unordered_map<std::string, const Comp*> comps;
    for (const ItemPtr& item : items) {
        if (item->comp && !item->comp->assetId.empty()) {
            comps.emplace(item->comp->assetId, item->comp.get());
        }
    }
    out += '[';
    const char* separator = "";
    const auto writeNext = [&](auto&& write) {
        out += separator;
        separator = ",";
        write();
    };
    for (const Json& asset : assets_) {
        if (!asset.contains("layers")) {
            writeNext([&] { out += asset.dump(); });
            continue;
        }
        if (const auto comp = comps.find(assetIdOf(asset)); comp != comps.end()) {
            writeNext([&] { writeComp(*comp->second, out); });
            comps.erase(comp);
        }
    }
    for (const ItemPtr& item : items) {  // those that came later
        if (item->comp && comps.contains(item->comp->assetId)) {
            writeNext([&] { writeComp(*item->comp, out); });
        }
    }
    out += ']';
}

std::vector<std::string> Project::outerPictures() const {
    std::vector<std::string> pictures;
    for (const Json& asset : assets_) {
        const std::string picture = outerPictureOf(asset);
        if (!picture.empty() && !assetIdOf(asset).empty()) {  // without an id nothing shows it
            pictures.push_back(picture);
        }
    }
    return pictures;
}

std::string Project::pictureContent(const std::string& picture) const {
    if (pictures_ && pictures_->sizeOf(picture)) {
        return pictures_->contentOf(picture);
    }
    const std::filesystem::path file = imageFolder_.value() / picture;
    std::ifstream in(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (!in || bytes.empty()) {
        throw ProjectError(file.string() + ": the picture cannot be read");
    }
    return bytes;
}

Json Project::withPicture(const Json& asset) const {
    const std::string picture = outerPictureOf(asset);
    if (picture.empty()) {
        return asset;
    }
    const std::string bytes = pictureContent(picture);
    const bool jpeg = bytes.starts_with("\xFF\xD8");
    Json embedded = asset;
    embedded["u"] = "";
    embedded["p"] = std::string("data:image/") + (jpeg ? "jpeg" : "png") + ";base64," + base64(bytes);
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
    for (const Json& asset : assets_) {
        const std::string id = assetIdOf(asset);
        if (!asset.contains("layers") && images.contains(id)) {
            document.images.push_back({id, withPicture(asset)});
        }
    }
    return document;
}

}  // namespace headless::model
