// Reads a Lottie document into a project, and refuses whatever the host or the renderer could not bear:
// missing references, cycles, and sizes, counts and depths beyond the limits below.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "model/DocumentParser.h"
#include "model/LayerJson.h"

namespace headless::model {

namespace {

constexpr std::uintmax_t largestFile = 512 << 20;
constexpr int largestSize = 30'000;         // the host's own limit for a composition
constexpr double largestFrame = 2'000'000;  // keeps every time inside the host's 32-bit values
constexpr double largestFrameRate = 1'000;
constexpr int deepestNesting = 20;                    // beyond it the renderer draws nothing
constexpr double mostExpandedLayers = 2'000'000;      // with each use of a composition counted anew
constexpr std::size_t mostLayers = 500'000;           // in the file, and as many assets
constexpr std::uint64_t largestPictures = 128 << 20;  // of those beside the file or with it, in bytes

[[noreturn]] void fail(const std::string& path, const std::string& what) {
    throw ProjectError(path + ": " + what);
}

int wholeSize(const Json& json, const char* key, const std::string& path) {
    const double value = requiredNumber(json, key, path);
    if (!(value >= 1 && value <= largestSize)) {
        fail(path.empty() ? key : path + "." + key, "sizes go from 1 to " + std::to_string(largestSize));
    }
    return static_cast<int>(std::lround(value));
}

int wholeSizeOr0(const Json& json, const char* key, const std::string& path) {
    return numberAt(json, key, 0, path) == 0 ? 0 : wholeSize(json, key, path);
}

// As a layer states it; 0 where it states none.
void checkSize(const Size& size, const std::string& path) {
    if (size.width < 0 || size.width > largestSize || size.height < 0 || size.height > largestSize) {
        fail(path, "sizes go from 1 to " + std::to_string(largestSize));
    }
}

double frameRateAt(const Json& json, const char* key, const std::string& path) {
    const double rate = requiredNumber(json, key, path);
    if (!(rate > 0.01 && rate <= largestFrameRate)) {
        fail(path.empty() ? key : path + "." + key, "frame rates go from above 0.01 to 1000");
    }
    return rate;
}

struct Range {
    double first = 0, end = 0;
    bool empty() const { return !(first < end); }
    void merge(const Range& other) {
        if (other.empty()) {
            return;
        }
        *this = empty() ? other : Range{std::min(first, other.first), std::max(end, other.end)};
    }
};

// The frames of its source that a use shows while its composition shows `shown`.
Range shownThrough(const Layer& use, const Range& shown, double frameRate) {
    const Range visible{std::max(use.inFrame, shown.first), std::min(use.outFrame, shown.end)};
    if (visible.empty()) {
        return {};
    }
    if (use.timeRemap) {
        double low = use.timeRemap->value;
        double high = low;
        if (!use.timeRemap->keys.empty()) {
            low = high = use.timeRemap->keys.front().value;
            for (const ScalarKey& key : use.timeRemap->keys) {
                const double end = key.end.value_or(key.value);
                low = std::min({low, key.value, end});
                high = std::max({high, key.value, end});
            }
        }
        return {std::floor(low * frameRate), std::floor(high * frameRate) + 1};
    }
    const double a = (visible.first - use.startFrame) / use.stretch;
    const double b = (visible.end - use.startFrame) / use.stretch;
    return {std::floor(std::min(a, b)), std::ceil(std::max(a, b))};
}

}  // namespace

class Reader {
 public:
    Reader(Project& project, const ReadOptions& options) : project_(project), options_(options) {}

    void read() {
        parse();
        readSlottedLayers();
        readRoot();
        readAssets();
        linkLayers();
        nameComps();
        findSizes();
        const std::vector<Comp*> order = usersFirst();
        checkExpansion(order);
        findRanges(order);
    }

 private:
    // A layers array: of the root, or of the asset with this place in the file.
    struct LayerList {
        int asset = -1;
        std::vector<LayerPtr> layers;
        std::vector<std::optional<int>> parents;
    };
    // Of `lists_`: what it says is known only where the slots are, at any place of the document.
    struct SlottedLayer {
        std::size_t list = 0, place = 0;
    };

    void parse() {
        shell_ = parseDocument(project_.text_, [this](int asset, const Json& layer, std::string_view text) {
            takeLayer(asset, layer, text);
        });
        if (!shell_.is_object() || !shell_.contains("layers") || !shell_["layers"].is_array()) {
            throw ProjectError("this is JSON, but not a Lottie animation: it has no list of layers");
        }
    }

    void takeLayer(int asset, const Json& json, std::string_view text) {
        if (lists_.empty() || lists_.back().asset != asset) {
            lists_.push_back({asset, {}, {}});
        }
        LayerList& list = lists_.back();
        if (++layerCount_ > mostLayers) {
            fail(pathOf(list, list.layers.size()),
                 "the file has more than " + std::to_string(mostLayers) + " layers");
        }
        auto layer = std::make_shared<Layer>();
        layer->text = text;
        layer->slotted = slottedParts(json);
        list.layers.push_back(layer);
        list.parents.emplace_back();
        if (layer->slotted.any) {
            slotted_.push_back({lists_.size() - 1, list.layers.size() - 1});
        } else {
            readFields(json, list, list.layers.size() - 1);
        }
    }

    void readSlottedLayers() {
        if (slotted_.empty()) {
            return;
        }
        if (const auto found = shell_.find("slots"); found != shell_.end()) {
            project_.slots_ = Slots(*found);
        }
        std::uint64_t added = 0;
        for (const auto& [list, place] : slotted_) {
            Json json = parseValue(lists_[list].layers[place]->text);
            project_.slots_.putInto(json, added);
            readFields(json, lists_[list], place);
        }
    }

    static void readFields(const Json& json, LayerList& list, std::size_t place) {
        Layer& layer = *list.layers[place];
        const std::string path = pathOf(list, place);
        readLayer(json, path, layer, list.parents[place]);
        layer.masks = readMasks(json, path);
    }

    static std::string pathOf(const LayerList& list, std::size_t index) {
        const std::string layer = "layers[" + std::to_string(index) + "]";
        return list.asset < 0 ? layer : "assets[" + std::to_string(list.asset) + "]." + layer;
    }

    Comp& addComp(const Json& shell, const std::string& assetId) {
        auto item = std::make_shared<Item>();
        item->id = project_.newItemId();
        item->kind = Item::Kind::Comp;
        item->comp = std::make_unique<Comp>();
        Comp& comp = *item->comp;
        comp.item = item.get();
        comp.assetId = assetId;
        comp.shell = shell.dump();
        comp.shell.shrink_to_fit();
        item->name = textAt(shell, "nm");
        project_.items.push_back(std::move(item));
        return comp;
    }

    void readRoot() {
        if (const auto found = shell_.find("assets"); found != shell_.end()) {
            assets_ = std::exchange(*found, Json::array());
        }
        if (!assets_.is_null() && !assets_.is_array()) {
            fail("assets", "a list is needed here");
        }
        if (assets_.size() > mostLayers) {
            fail("assets", "the file has more than " + std::to_string(mostLayers) + " assets");
        }
        if (!shell_["layers"].empty()) {
            fail("layers[" + std::to_string(shell_["layers"].size() - 1) + "]", "a layer must be an object");
        }
        Comp& root = addComp(shell_, "");
        project_.sizeInText_ = root.item->size = {wholeSize(shell_, "w", ""), wholeSize(shell_, "h", "")};
        root.frameRate = frameRateAt(shell_, "fr", "");
        root.firstFrame = requiredNumber(shell_, "ip", "");
        root.endFrame = requiredNumber(shell_, "op", "");
        shell_ = nullptr;
        if (!(std::abs(root.firstFrame) <= largestFrame && std::abs(root.endFrame) <= largestFrame)) {
            fail("op", "times go up to frame " + std::to_string(static_cast<int>(largestFrame)));
        }
        if (!(root.firstFrame < root.endFrame)) {
            fail("op", "the animation ends before it begins");
        }
    }

    void readAssets() {
        project_.assets_.resize(assets_.size());
        compOfPlace_.resize(assets_.size());
        for (std::size_t i = 0; i < assets_.size(); ++i) {
            Json asset = std::exchange(assets_[i], nullptr);
            const std::string path = "assets[" + std::to_string(i) + "]";
            if (!asset.is_object()) {
                fail(path, "an asset must be an object");
            }
            const std::string id = assetIdOf(asset);
            if (id.empty() && asset.contains("layers")) {
                fail(path, "the composition has no id, so that nothing can show it; give it one or remove it");
            }
            if (id.empty()) {  // fonts and the like may stand here without an id; nothing can refer to them
                project_.assets_[i].json = std::move(asset);
                continue;
            }
            Item* item = nullptr;
            if (asset.contains("layers")) {
                if (!asset["layers"].is_array() || !asset["layers"].empty()) {
                    fail(path + ".layers", "a list of objects is needed here");
                }
                Comp& comp = addComp(asset, id);
                comp.frameRate =
                    asset.contains("fr") ? frameRateAt(asset, "fr", path) : project_.root().frameRate;
                item = comp.item;
                compOfPlace_[i] = &comp;
                project_.assets_[i].comp = item->id;
            } else {
                auto image = std::make_shared<Item>();
                image->id = project_.newItemId();
                image->kind = asset.contains("w") ? Item::Kind::Image : Item::Kind::Audio;
                image->name = textAt(asset, "nm").empty() ? id : textAt(asset, "nm");
                image->size = {wholeSizeOr0(asset, "w", path), wholeSizeOr0(asset, "h", path)};
                image->isSlotted = asset.contains("sid");
                checkImage(asset, path);
                item = image.get();
                project_.items.push_back(std::move(image));
                project_.assets_[i].json = std::move(asset);
            }
            if (!assetItems_.emplace(id, item).second) {
                fail(path + ".id", "a second asset with the id \"" + id + "\"");
            }
        }
    }

    // A picture is inside the file, comes with it, or lies under the folder that the person allowed.
    void checkImage(const Json& asset, const std::string& path) {
        const std::string file = outerPictureOf(asset);
        if (file.empty()) {
            return;
        }
        if (const auto size = options_.pictures ? options_.pictures->sizeOf(file) : std::nullopt) {
            countPicture(*size, path);
            return;
        }
        if (!options_.imageFolder) {
            fail(path, "the picture \"" + file +
                           "\" lies outside the file; name the folder it may be read from (--images)");
        }
        const auto inside = (*options_.imageFolder / file)
                                .lexically_normal()
                                .lexically_relative(options_.imageFolder->lexically_normal());
        if (std::filesystem::path(file).is_absolute() || inside.empty() || *inside.begin() == "..") {
            fail(path, "the picture \"" + file + "\" lies outside the folder that pictures may be read from");
        }
        std::error_code missing;  // is said when it is to be shown
        const std::uintmax_t size = std::filesystem::file_size(*options_.imageFolder / file, missing);
        countPicture(missing ? 0 : size, path);
    }

    void countPicture(std::uint64_t size, const std::string& path) {
        picturesSize_ += size;
        if (picturesSize_ > largestPictures) {
            fail(path,
                 "up to here the pictures come to more than " + std::to_string(largestPictures >> 20) + " MiB");
        }
    }

    Item& addSource(Item::Kind kind, const Layer& layer, Size size, const char* name) {
        auto item = std::make_shared<Item>();
        item->id = project_.newItemId();
        item->kind = kind;
        item->name = layer.name.empty() ? name : layer.name;
        item->size = size;
        project_.items.push_back(std::move(item));
        return *project_.items.back();
    }

    void linkLayers() {
        for (LayerList& list : lists_) {
            Comp& comp = list.asset < 0 ? project_.root() : *compOfPlace_[static_cast<std::size_t>(list.asset)];
            if (comp.layersInText > 0) {
                fail(pathOf(list, 0), "a second list of layers");
            }
            std::unordered_map<int, Layer*> byIndex;
            for (std::size_t i = 0; i < list.layers.size(); ++i) {
                Layer& layer = *list.layers[i];
                layer.id = project_.newLayerId(&layer);
                layer.comp = &comp;
                layer.lastPlace = static_cast<std::uint32_t>(i);
                if (layer.index) {
                    byIndex.emplace(*layer.index, &layer);
                }
                findSource(layer, pathOf(list, i));
            }
            for (std::size_t i = 0; i < list.layers.size(); ++i) {
                if (!list.parents[i]) {
                    continue;
                }
                const auto parent = byIndex.find(*list.parents[i]);
                if (parent == byIndex.end()) {
                    fail(pathOf(list, i) + ".parent",
                         "there is no layer with the index " + std::to_string(*list.parents[i]));
                }
                list.layers[i]->parent = parent->second;
                parent->second->children.push_back(list.layers[i].get());
            }
            checkParents(list);
            comp.layersInText = list.layers.size();
            comp.layers = std::move(list.layers);
            comp.layers.shrink_to_fit();
        }
    }

    void findSource(Layer& layer, const std::string& path) {
        switch (layer.type) {
            case LayerType::Precomp:
            case LayerType::Image:
            case LayerType::Audio: {
                const auto found = assetItems_.find(layer.reference);
                if (found == assetItems_.end()) {
                    if (layer.type == LayerType::Audio) {
                        return;
                    }
                    fail(path + ".refId", "there is no asset \"" + layer.reference + "\"");
                }
                if ((layer.type == LayerType::Precomp) != (found->second->kind == Item::Kind::Comp)) {
                    fail(path + ".refId",
                         "the asset \"" + layer.reference + "\" is of another kind than the layer");
                }
                layer.source = found->second;
                if (layer.type == LayerType::Precomp) {
                    checkSize(layer.useSize, path + ".w");
                }
                break;
            }
            case LayerType::Solid:
                checkSize(layer.useSize, path + ".sw");
                layer.source = &addSource(Item::Kind::Solid, layer, layer.useSize, "Solid");
                break;
            case LayerType::Null:
                layer.source = &addSource(Item::Kind::Null, layer, {100, 100}, "Null");
                break;
            default:
                break;
        }
    }

    static void checkParents(const LayerList& list) {
        enum : unsigned char { unknown, walking, fine };
        std::unordered_map<const Layer*, unsigned char> state;
        for (std::size_t i = 0; i < list.layers.size(); ++i) {
            std::vector<const Layer*> chain;
            const Layer* layer = list.layers[i].get();
            for (; layer != nullptr && layer->parent != nullptr && state[layer] == unknown;
                 layer = layer->parent) {
                state[layer] = walking;
                chain.push_back(layer);
            }
            if (layer != nullptr && state[layer] == walking) {
                fail(pathOf(list, i) + ".parent", "the parents form a circle");
            }
            for (const Layer* seen : chain) {
                state[seen] = fine;
            }
        }
    }

    // Own name, else that of the first use, else the id; a name taken already gets a number.
    void nameComps() {
        std::unordered_map<const Item*, std::string> firstUse;
        for (const ItemPtr& item : project_.items) {
            if (item->comp) {
                for (const LayerPtr& layer : item->comp->layers) {
                    if (layer->source != nullptr && layer->source->comp && !layer->name.empty()) {
                        firstUse.emplace(layer->source, layer->name);
                    }
                }
            }
        }
        std::set<std::string> taken;
        std::unordered_map<std::string, int> lastNumber;  // that a name was given
        for (const ItemPtr& item : project_.items) {
            if (!item->comp) {
                continue;
            }
            Comp& comp = *item->comp;
            std::string name = item->name;
            if (name.empty()) {
                name = comp.assetId.empty() ? options_.name : firstUse[item.get()];
            }
            if (name.empty()) {
                name = comp.assetId.empty() ? "Main" : comp.assetId;
            }
            item->name = name;
            while (!taken.insert(item->name).second) {
                item->name = name + " " + std::to_string(++lastNumber.try_emplace(name, 1).first->second);
            }
        }
    }

    // A precomp is as large as its users state; where they disagree, as the largest.
    void findSizes() {
        for (const ItemPtr& item : project_.items) {
            if (!item->comp) {
                continue;
            }
            for (const LayerPtr& layer : item->comp->layers) {
                if (layer->source != nullptr && layer->source->comp) {
                    Size& size = layer->source->size;
                    size = {std::max(size.width, layer->useSize.width),
                            std::max(size.height, layer->useSize.height)};
                }
            }
        }
        for (const ItemPtr& item : project_.items) {
            if (item->comp && (item->size.width == 0 || item->size.height == 0)) {
                // Nothing uses it, or its users state no size.
                const Json shell = parseValue(item->comp->shell);
                item->size = shell.contains("w") && shell.contains("h")
                                 ? Size{wholeSize(shell, "w", item->name), wholeSize(shell, "h", item->name)}
                                 : project_.root().item->size;
            }
        }
    }

    // Compositions so that each comes behind all that use it. Refuses circles and too deep nesting.
    std::vector<Comp*> usersFirst() const {
        std::unordered_map<const Comp*, int> uses;
        std::unordered_map<const Comp*, int> depth;
        forEachUse([&](const Comp&, const Layer& use) { ++uses[use.source->comp.get()]; });
        std::vector<Comp*> order;
        std::size_t comps = 0;
        for (const ItemPtr& item : project_.items) {
            if (item->comp) {
                ++comps;
                if (uses[item->comp.get()] == 0) {
                    order.push_back(item->comp.get());
                }
            }
        }
        for (std::size_t i = 0; i < order.size(); ++i) {
            for (const LayerPtr& layer : order[i]->layers) {
                if (layer->source == nullptr || !layer->source->comp) {
                    continue;
                }
                Comp* used = layer->source->comp.get();
                depth[used] = std::max(depth[used], depth[order[i]] + 1);
                if (depth[used] > deepestNesting) {
                    fail(
                        "composition \"" + layer->source->name + "\"",
                        "compositions are nested more than " + std::to_string(deepestNesting) + " levels deep");
                }
                if (--uses[used] == 0) {
                    order.push_back(used);
                }
            }
        }
        if (order.size() != comps) {
            for (const ItemPtr& item : project_.items) {
                if (item->comp && uses[item->comp.get()] > 0) {
                    fail("composition \"" + item->name + "\"",
                         "it contains itself, directly or through others");
                }
            }
        }
        return order;
    }

    template <class Do>
    void forEachUse(Do&& action) const {
        for (const ItemPtr& item : project_.items) {
            if (item->comp) {
                for (const LayerPtr& layer : item->comp->layers) {
                    if (layer->source != nullptr && layer->source->comp) {
                        action(*item->comp, *layer);
                    }
                }
            }
        }
    }

    static void checkExpansion(const std::vector<Comp*>& usersFirstOrder) {
        std::unordered_map<const Comp*, double> expanded;
        for (auto comp = usersFirstOrder.rbegin(); comp != usersFirstOrder.rend(); ++comp) {
            double& count = expanded[*comp];
            count = static_cast<double>((*comp)->layers.size());
            for (const LayerPtr& layer : (*comp)->layers) {
                if (layer->source != nullptr && layer->source->comp) {
                    count += expanded[layer->source->comp.get()];
                }
            }
            if (count > mostExpandedLayers) {
                fail("composition \"" + (*comp)->item->name + "\"",
                     "with all that it nests it shows more than " +
                         std::to_string(static_cast<int>(mostExpandedLayers)) + " layers");
            }
        }
    }

    // What the root shows, then what nothing shows: how far that reaches is cut off and not refused.
    void findRanges(const std::vector<Comp*>& usersFirstOrder) {
        const double rate = project_.root().frameRate;
        std::unordered_map<const Comp*, Range> ranges;
        std::unordered_set<const Comp*> found;
        for (const bool isShown : {true, false}) {
            for (Comp* comp : usersFirstOrder) {
                Range& range = ranges[comp];
                if (comp == &project_.root()) {
                    range = {comp->firstFrame, comp->endFrame};
                }
                if (found.contains(comp) || (isShown && range.empty())) {
                    continue;
                }
                if (!isShown) {
                    range = cut(range.empty() ? rangeOfLayers(*comp) : range);
                }
                if (!(std::abs(range.first) <= largestFrame && range.end - range.first <= largestFrame)) {
                    fail("composition \"" + comp->item->name + "\"", "its times are out of range");
                }
                found.insert(comp);
                comp->firstFrame = range.first;
                comp->endFrame = range.end;
                for (const LayerPtr& layer : comp->layers) {
                    if (layer->source != nullptr && layer->source->comp &&
                        !found.contains(layer->source->comp.get())) {
                        ranges[layer->source->comp.get()].merge(shownThrough(*layer, range, rate));
                    }
                }
            }
        }
    }

    static Range rangeOfLayers(const Comp& comp) {
        Range range;
        for (const LayerPtr& layer : comp.layers) {
            range.merge({std::floor(layer->inFrame), std::ceil(layer->outFrame)});
        }
        return range;
    }

    static Range cut(Range range) {
        range.first = std::max(range.first, -largestFrame);
        range.end = std::min({range.end, largestFrame, range.first + largestFrame});
        return range.empty() ? Range{0, 1} : range;
    }

    Project& project_;
    const ReadOptions& options_;
    Json shell_, assets_;
    std::uint64_t picturesSize_ = 0;
    std::vector<LayerList> lists_;
    std::vector<SlottedLayer> slotted_;
    std::size_t layerCount_ = 0;
    std::unordered_map<std::string, Item*> assetItems_;
    std::vector<Comp*> compOfPlace_;  // of those assets that are compositions
};

std::unique_ptr<Project> Project::read(std::string text, const ReadOptions& options) {
    auto project = std::make_unique<Project>();
    project->text_ = std::move(text);
    project->imageFolder_ = options.imageFolder;
    project->pictures_ = options.pictures;
    Reader(*project, options).read();
    project->itemsInText_ = project->items.size();
    project->firstIdBeyondText_ = project->nextItemId_;
    return project;
}

std::unique_ptr<Project> Project::copy() const {
    return read(write(), {root().item->name, imageFolder_, pictures_});
}

std::string bytesOf(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        throw ProjectError(file.string() + ": there is no such file");
    }
    if (!std::filesystem::is_regular_file(file, error)) {
        throw ProjectError(file.string() + ": this is not a file");
    }
    std::ifstream in(file, std::ios::binary);
    std::string text;
    if (in) {
        if (std::filesystem::file_size(file, error) > largestFile) {
            throw ProjectError(file.string() + ": the file is larger than " +
                               std::to_string(largestFile >> 20) + " MiB");
        }
        text.resize(std::filesystem::file_size(file, error));
        in.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(in.gcount()));
    }
    if (!in && !in.eof()) {
        throw ProjectError(file.string() + ": the file cannot be read");
    }
    return text;
}

std::unique_ptr<Project> Project::open(const std::filesystem::path& file, const ReadOptions& options) {
    std::string text = bytesOf(file);
    ReadOptions named = options;
    if (named.name.empty()) {
        named.name = file.stem().string();
    }
    try {
        return read(std::move(text), named);
    } catch (const ProjectError& problem) {
        throw ProjectError(file.string() + ": " + problem.what());
    }
}

}  // namespace headless::model
