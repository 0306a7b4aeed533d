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
        // A number where the asset has one for its id.
        const Comp* shown = layer.source != nullptr ? layer.source->comp.get() : nullptr;
        json["refId"] = shown != nullptr ? parseValue(shown->shell)["id"] : Json(layer.reference);
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

// A layer's object as the file has it, and as players see it: with the slots' values in their places.
class Shown {
 public:
    Shown(const Layer& layer, const Json& json, const Slots& slots) : json_(json) {
        if (layer.slotted.any) {
            withSlots_ = json;
            std::uint64_t added = 0;
            slots.putInto(withSlots_, added);
        }
    }
    const Json& operator*() const { return withSlots_.is_null() ? json_ : withSlots_; }

 private:
    const Json& json_;
    Json withSlots_;  // null where there are none
};

[[noreturn]] void failAt(const Layer& layer, const ProjectError& problem) {
    throw ProjectError("composition \"" + layer.comp->item->name + "\", layer \"" + layer.name +
                       "\": " + problem.what());
}

}  // namespace

bool Project::isAsText(const Layer& layer) const {
    if (!layer.touched || layer.text.empty()) {
        return !layer.touched;
    }
    const Json json = parseValue(layer.text);
    const Shown shown(layer, json, slots_);
    return isSame(layer, *shown, readBack(*shown));
}

// As the file has it where nothing differs. A large layer takes many times its text as an object, which is made
// once and gone before the text is copied.
std::string Project::textOf(const Layer& layer) const {
    Json json = objectOf(layer);
    {
        const Shown shown(layer, json, slots_);
        const LayerAsRead before = readBack(*shown);
        if (!layer.text.empty() && isSame(layer, *shown, before)) {
            return std::string(layer.text);
        }
        try {
            patchLayer(json, *shown, layer, before.data, before.parent);
        } catch (const ProjectError& problem) {
            failAt(layer, problem);
        }
    }
    return json.dump();
}

Json Project::layerJson(const Layer& layer) const {
    Json json = objectOf(layer);
    if (layer.touched) {
        const Shown shown(layer, json, slots_);
        const LayerAsRead before = readBack(*shown);
        patchLayer(json, *shown, layer, before.data, before.parent);
    }
    if (layer.slotted.any) {
        std::uint64_t added = 0;
        slots_.putInto(json, added);
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
    if (!isRoot && assetIdOf(shell) != comp.assetId) {
        shell["id"] = comp.assetId;
    } else if (isRoot && !shell.contains("assets")) {
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

bool Project::samePictures(const Project& other) const {
    const auto inside = [](const Project& project) {
        std::vector<const Json*> list;
        for (const Asset& asset : project.assets_) {
            if (asset.comp == 0) {
                list.push_back(&asset.json);
            }
        }
        return list;
    };
    const std::vector<const Json*> mine = inside(*this);
    const std::vector<const Json*> theirs = inside(other);
    const auto outer = outerPictures();
    return std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end(),
                      [](const Json* a, const Json* b) { return *a == *b; }) &&
           std::all_of(outer.begin(), outer.end(), [&](const std::string& picture) {
               return pictureContent(picture) == other.pictureContent(picture);
           });
}

Json Project::withPicture(const Json& asset) const {
    Json embedded = asset;
    if (const std::string picture = outerPictureOf(asset); !picture.empty()) {
        const std::string bytes = pictureContent(picture);
        const std::string type(pictureType(bytes));
        embedded["p"] = "data:image/" + (type.empty() ? "png" : type) + ";base64," + base64(bytes);
        embedded["u"] = "";
    }
    embedded["e"] = 1;  // also where the file leaves it out beside a picture that is inside
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

// Ranges of text that are animated in random order, another in each player: the renderer ends in a fault where
// one of them is empty.
static void setInOrder(Json& text) {
    if (const auto ranges = text.find("a"); text.is_object() && ranges != text.end() && ranges->is_array()) {
        for (Json& range : *ranges) {
            if (range.is_object() && range.contains("s") && range["s"].is_object()) {
                range["s"]["rn"] = 0;
            }
        }
    }
}

void Project::writeSeenLayers(const Comp& comp, std::string& out) const {
    out += '[';
    const char* separator = "";
    for (const LayerPtr& layer : comp.layers) {
        out += separator;
        separator = ",";
        if (layer->type == LayerType::Text) {
            Json json = layerJson(*layer);
            setInOrder(json["t"]);
            out += json.dump();
        } else if (layer->slotted.any) {
            out += layerJson(*layer).dump();
        } else if (layer->touched) {
            out += textOf(*layer);
        } else {
            out += layer->text;
        }
    }
    out += ']';
}

std::string Project::documentOf(const Comp& comp, Size canvas) const {
    std::vector<const Comp*> shown;
    std::unordered_set<std::string> images;
    std::unordered_set<const Item*> reached;
    std::vector<const Comp*> waiting{&comp};
    while (!waiting.empty()) {
        const Comp& next = *waiting.back();
        waiting.pop_back();
        for (const LayerPtr& layer : next.layers) {
            if (layer->source != nullptr && layer->source->comp && reached.insert(layer->source).second) {
                waiting.push_back(layer->source->comp.get());
                shown.push_back(waiting.back());
            } else if (layer->type == LayerType::Image) {
                images.insert(layer->reference);
            }
        }
    }
    // A larger canvas would show what lies beyond the frame: there it is clipped, as a use is.
    const bool asUse = canvas != comp.item->size;
    if (asUse) {
        shown.push_back(&comp);
    }

    Json shell = parseValue(root().shell);
    shell["ip"] = comp.firstFrame;
    shell["op"] = comp.endFrame;
    shell["w"] = canvas.width;
    shell["h"] = canvas.height;
    shell.erase("layers");
    shell.erase("assets");
    shell.erase("slots");  // their values are in their places
    std::string out = shell.dump();
    out.back() = ',';
    out += R"("layers":)";
    const std::string sceneId = asUse ? newAssetId("scene") : "";
    if (asUse) {
        const Json use{{"ty", 0},
                       {"refId", sceneId},
                       {"w", comp.item->size.width},
                       {"h", comp.item->size.height},
                       {"ks", Json::object()},
                       {"ip", comp.firstFrame},
                       {"op", comp.endFrame},
                       {"st", 0}};
        out += "[" + use.dump() + "]";
    } else {
        writeSeenLayers(comp, out);
    }
    out += R"(,"assets":[)";
    const char* separator = "";
    for (const Comp* each : shown) {
        out += separator;
        separator = ",";
        Json asset = each->assetId.empty() ? Json::object() : parseValue(each->shell);
        asset["id"] = each == &comp ? sceneId : each->assetId;
        asset.erase("layers");
        out += asset.dump();
        out.back() = ',';
        out += R"("layers":)";
        writeSeenLayers(*each, out);
        out += '}';
    }
    for (const Asset& asset : assets_) {
        if (asset.comp == 0 && images.contains(assetIdOf(asset.json))) {
            out += separator;
            separator = ",";
            out += withPicture(asset.json).dump();
        }
    }
    return out + "]}";
}

}  // namespace headless::model
