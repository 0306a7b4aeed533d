#include "model/Edit.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "model/DocumentParser.h"
#include "model/Transform.h"

namespace headless::model {

namespace {

constexpr int largestSize = 30'000;

// ---- Links and lists, as they change in both directions --------------------------------------------

void link(Layer& child, Layer* parent) {
    if (child.parent != nullptr) {
        auto& siblings = child.parent->children;
        siblings.erase(std::next(std::find(siblings.rbegin(), siblings.rend(), &child)).base());
    }
    child.parent = parent;
    child.touched = true;
    if (parent != nullptr) {
        parent->children.push_back(&child);
    }
}

void setLink(Project& project, Layer& child, Layer* parent) {
    auto exchange = [&child, other = parent]() mutable { link(child, std::exchange(other, child.parent)); };
    exchange();
    project.history.record(std::move(exchange));
}

void insert(Project& project, Comp& comp, std::size_t index, const LayerPtr& layer) {
    comp.layers.insert(comp.layers.begin() + static_cast<std::ptrdiff_t>(index), layer);
    layer->comp = &comp;
    project.setAlive(layer->id, layer.get());
}

void remove(Project& project, Comp& comp, std::size_t index) {
    const LayerPtr layer = comp.layers[index];
    project.setAlive(layer->id, nullptr);
    std::erase_if(comp.selection, [&](const SelectedThing& thing) { return thing.layer == layer->id; });
    comp.layers.erase(comp.layers.begin() + static_cast<std::ptrdiff_t>(index));
}

void insertRecorded(Project& project, Comp& comp, std::size_t index, const LayerPtr& layer) {
    project.history.record([&project, &comp, index] { remove(project, comp, index); },
                           [&project, &comp, index, layer] { insert(project, comp, index, layer); });
    insert(project, comp, index, layer);
}

void removeRecorded(Project& project, Comp& comp, std::size_t index) {
    project.history.record(
        [&project, &comp, index, layer = comp.layers[index]] { insert(project, comp, index, layer); },
        [&project, &comp, index] { remove(project, comp, index); });
    remove(project, comp, index);
}

// Handles to the layers of a composition live and die with it.
void setLayersAlive(Project& project, const Item& item, bool alive) {
    if (item.comp) {
        for (const LayerPtr& layer : item.comp->layers) {
            project.setAlive(layer->id, alive ? layer.get() : nullptr);
        }
    }
}

void putItem(Project& project, const ItemPtr& item) {
    setLayersAlive(project, *item, true);
    project.items.insert(project.items.begin() + static_cast<std::ptrdiff_t>(project.indexOf(*item)), item);
}

void takeItem(Project& project, const Item& item) {
    setLayersAlive(project, item, false);
    project.items.erase(project.items.begin() + static_cast<std::ptrdiff_t>(project.indexOf(item)));
}

Item& addItem(Project& project, Item::Kind kind, const std::string& name, Size size) {
    auto item = std::make_shared<Item>();
    item->id = project.newItemId();
    item->kind = kind;
    item->name = name;
    item->size = size;
    project.history.record([&project, item] { takeItem(project, *item); },
                           [&project, item] { putItem(project, item); });
    putItem(project, item);
    return *item;
}

int freeIndex(const Comp& comp) {
    constexpr int largestIndex = 1'000'000'000;  // that can be read again
    int largest = 0;
    for (const LayerPtr& layer : comp.layers) {
        largest = std::max(largest, layer->index.value_or(0));
    }
    if (largest < largestIndex) {
        return largest + 1;
    }
    std::unordered_set<int> taken;
    for (const LayerPtr& layer : comp.layers) {
        taken.insert(layer->index.value_or(0));
    }
    int free = 1;
    while (taken.contains(free)) {
        ++free;
    }
    return free;
}

Layer& addNewLayer(Project& project, Comp& comp, LayerType type, const std::string& name, Item& source) {
    auto layer = std::make_shared<Layer>();
    layer->id = project.newLayerId(layer.get());
    layer->type = type;
    layer->name = name;
    layer->index = freeIndex(comp);
    layer->source = &source;
    layer->touched = true;
    layer->inFrame = comp.firstFrame;
    layer->outFrame = comp.endFrame;
    layer->startFrame = comp.firstFrame;
    layer->position.dimensions = layer->anchor.dimensions = 3;
    layer->position.value = {comp.item->size.width / 2.0, comp.item->size.height / 2.0, 0};
    insertRecorded(project, comp, 0, layer);
    return *layer;
}

bool isAbove(const Layer* ancestor, const Layer* layer) {
    while (layer != nullptr && layer != ancestor) {
        layer = layer->parent;
    }
    return layer != nullptr;
}

void requireParent(const Layer& layer, const Layer* parent) {
    if (parent != nullptr && parent->comp != layer.comp) {
        throw EditError("a parent must be a layer of the same composition");
    }
    if (parent != nullptr && isAbove(&layer, parent)) {
        throw EditError("a layer cannot be its own parent, directly or through others");
    }
}

double currentFrame(const Comp& comp) {
    return comp.firstFrame + comp.currentFrame;
}

// Sends everything that says where the layer lies through `transform`.
void transformRecorded(Project& project, Layer& layer, const Transform& transform) {
    LayerData moved = layer;
    applyTransform(moved, transform);
    setLayerField(
        project, layer, [](Layer& l) -> PointStream& { return l.position; }, moved.position);
    if (!(moved.anchor == layer.anchor)) {
        setLayerField(
            project, layer, [](Layer& l) -> PointStream& { return l.anchor; }, moved.anchor);
    }
    if (!(moved.scale == layer.scale)) {
        setLayerField(
            project, layer, [](Layer& l) -> PointStream& { return l.scale; }, moved.scale);
    }
    if (!(moved.rotation == layer.rotation)) {
        setLayerField(
            project, layer, [](Layer& l) -> ScalarStream& { return l.rotation; }, moved.rotation);
    }
}

// The first of several layers with one index is meant by it. Null where no other has the layer's.
const Layer* firstOfSeveral(const Layer& layer) {
    const Layer* first = nullptr;
    int count = 0;
    for (const LayerPtr& other : layer.comp->layers) {
        if (other->index && other->index == layer.index) {
            first = first != nullptr ? first : other.get();
            ++count;
        }
    }
    return count > 1 ? first : nullptr;
}

void giveIndex(Project& project, Layer& layer) {
    if (!layer.children.empty()) {
        return;  // they name it by its index already
    }
    const Layer* meant = firstOfSeveral(layer);
    if (!layer.index || (meant != nullptr && meant != &layer)) {
        setLayerField(
            project, layer, [](Layer& l) -> std::optional<int>& { return l.index; },
            std::optional<int>(freeIndex(*layer.comp)));
    }
}

bool reaches(const Comp& from, const Comp& wanted, std::unordered_set<const Comp*>& seen) {
    if (&from == &wanted) {
        return true;
    }
    if (!seen.insert(&from).second) {
        return false;
    }
    return std::any_of(from.layers.begin(), from.layers.end(), [&](const LayerPtr& layer) {
        return layer->source != nullptr && layer->source->comp && reaches(*layer->source->comp, wanted, seen);
    });
}

}  // namespace

void setCompSize(Project& project, Comp& comp, Size size) {
    if (size.width < 1 || size.height < 1 || size.width > largestSize || size.height > largestSize) {
        throw EditError("a composition cannot be " + std::to_string(size.width) + " x " +
                        std::to_string(size.height) + " pixels");
    }
    const Size before = comp.item->size;
    if (size == before) {
        return;
    }
    Item& item = *comp.item;
    setRecorded(
        project.history, [&item]() -> Size& { return item.size; }, size);
    const double factorY = static_cast<double>(size.height) / before.height;
    const Vec3 factor{static_cast<double>(size.width) / before.width, factorY, factorY};
    for (const ItemPtr& user : project.items) {
        if (!user->comp) {
            continue;
        }
        for (const LayerPtr& layer : user->comp->layers) {
            if (layer->source != comp.item) {
                continue;
            }
            PointStream anchor = layer->anchor;
            anchor.scale(factor);
            layer->touched = true;
            auto exchange = [&use = *layer, otherSize = size, otherAnchor = std::move(anchor)]() mutable {
                std::swap(use.useSize, otherSize);
                std::swap(use.anchor, otherAnchor);
            };
            exchange();
            project.history.record(std::move(exchange));
            for (const std::shared_ptr<Mask>& mask : layer->masks) {
                PathStream path = mask->path;
                path.scale(factor);
                setRecorded(
                    project.history, [mask]() -> PathStream& { return mask->path; }, std::move(path));
            }
        }
    }
}

void setPixelAspect(Project& project, Comp& comp, PixelAspect aspect) {
    if (aspect.numerator <= 0 || aspect.denominator == 0) {
        throw EditError("a pixel aspect ratio needs two positive numbers");
    }
    setRecorded(
        project.history, [&comp]() -> PixelAspect& { return comp.pixelAspect; }, aspect);
}

void setItemName(Project& project, Item& item, const std::string& name) {
    setRecorded(
        project.history, [&item]() -> std::string& { return item.name; }, name);
    if (item.comp) {
        setRecorded(
            project.history, [&item]() -> bool& { return item.comp->nameGiven; }, true);
    }
}

Layer& addNull(Project& project, Comp& comp, const std::string& name, std::optional<double> frameCount) {
    Item& source = addItem(project, Item::Kind::Null, name, {100, 100});
    Layer& layer = addNewLayer(project, comp, LayerType::Null, name, source);
    if (frameCount && *frameCount > 0) {
        layer.outFrame = comp.firstFrame + *frameCount;
    }
    return layer;
}

Layer& addLayer(Project& project, Comp& comp, Item& source) {
    LayerType type = LayerType::Image;
    std::string reference;
    if (source.comp) {
        std::unordered_set<const Comp*> seen;
        if (source.comp->assetId.empty() || reaches(*source.comp, comp, seen)) {
            throw EditError("\"" + comp.item->name + "\" would contain itself");
        }
        type = LayerType::Precomp;
        reference = source.comp->assetId;
    } else {
        throw EditError("only compositions can be added as layers here, and \"" + source.name + "\" is none");
    }
    Layer& layer = addNewLayer(project, comp, type, "", source);
    layer.reference = reference;
    layer.useSize = source.size;
    layer.anchor.value = {source.size.width / 2.0, source.size.height / 2.0, 0};
    layer.startFrame = comp.firstFrame - source.comp->firstFrame;
    return layer;
}

void moveLayer(Project& project, Layer& layer, std::size_t newIndex) {
    if (firstOfSeveral(layer) != nullptr) {
        throw EditError("several layers have the index " + std::to_string(*layer.index) +
                        ", and another one could become the first");
    }
    Comp& comp = *layer.comp;
    const std::size_t oldIndex = project.indexOf(layer);
    const LayerPtr held = comp.layers[oldIndex];
    const auto move = [&project, &comp, held](std::size_t to) {
        comp.layers.erase(comp.layers.begin() + static_cast<std::ptrdiff_t>(project.indexOf(*held)));
        comp.layers.insert(comp.layers.begin() + static_cast<std::ptrdiff_t>(to), held);
    };
    project.history.record([move, oldIndex] { move(oldIndex); }, [move, newIndex] { move(newIndex); });
    move(newIndex);
}

void deleteLayer(Project& project, Layer& layer) {
    Comp& comp = *layer.comp;
    RareList<Layer*> children = layer.children;
    if (!children.empty()) {
        const Transform transform = localTransform(layer, currentFrame(comp));
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            transformRecorded(project, **child, transform);
            setLink(project, **child, layer.parent);
        }
    }
    if (layer.parent != nullptr) {
        setLink(project, layer, nullptr);
    }
    removeRecorded(project, comp, project.indexOf(layer));
}

void setParent(Project& project, Layer& layer, Layer* parent) {
    requireParent(layer, parent);
    if (parent != nullptr) {
        giveIndex(project, *parent);
    }
    setLink(project, layer, parent);
}

void setParentInPlace(Project& project, Layer& layer, Layer* parent) {
    requireParent(layer, parent);
    const double frame = currentFrame(*layer.comp);
    transformRecorded(project, layer,
                      worldTransform(parent, frame).inverse() * worldTransform(layer.parent, frame));
    setParent(project, layer, parent);
}

void deleteItem(Project& project, Item& item) {
    if (item.comp && item.comp->assetId.empty()) {
        throw EditError("the animation's own composition cannot be deleted");
    }
    for (const ItemPtr& user : project.items) {
        if (!user->comp) {
            continue;
        }
        for (std::size_t i = user->comp->layers.size(); i-- > 0;) {
            if (user->comp->layers[i]->source == &item) {
                deleteLayer(project, *user->comp->layers[i]);
            }
        }
    }
    const ItemPtr held = project.items[project.indexOf(item)];
    project.history.record([&project, held] { putItem(project, held); },
                           [&project, held] { takeItem(project, *held); });
    takeItem(project, item);
}

Comp& duplicateComp(Project& project, Comp& comp) {
    std::unordered_set<std::string> names;
    for (const ItemPtr& item : project.items) {
        names.insert(item->name);
    }
    int number = 2;
    while (names.contains(comp.item->name + " " + std::to_string(number))) {
        ++number;
    }
    Item& item =
        addItem(project, Item::Kind::Comp, comp.item->name + " " + std::to_string(number), comp.item->size);
    item.comp = std::make_unique<Comp>();
    Comp& copy = *item.comp;
    copy.item = &item;
    copy.assetId = project.newAssetId(comp.assetId.empty() ? "main" : comp.assetId);
    Json shell =
        comp.assetId.empty() ? Json{{"id", ""}, {"nm", ""}, {"layers", Json::array()}} : parseValue(comp.shell);
    shell["id"] = copy.assetId;
    shell["nm"] = item.name;
    copy.shell = shell.dump();
    copy.nameGiven = true;
    copy.frameRate = comp.frameRate;
    copy.firstFrame = comp.firstFrame;
    copy.endFrame = comp.endFrame;
    copy.pixelAspect = comp.pixelAspect;
    copy.currentFrame = comp.currentFrame;
    copy.downsampleX = comp.downsampleX;
    copy.downsampleY = comp.downsampleY;

    std::unordered_map<const Layer*, Layer*> copies;
    for (const LayerPtr& layer : comp.layers) {
        auto twin = std::make_shared<Layer>(*layer);
        twin->id = project.newLayerId(twin.get());
        twin->comp = &copy;
        twin->children.clear();
        for (std::shared_ptr<Mask>& mask : twin->masks) {
            mask = std::make_shared<Mask>(*mask);
        }
        copies.emplace(layer.get(), twin.get());
        copy.layers.push_back(std::move(twin));
    }
    for (const LayerPtr& twin : copy.layers) {
        if (twin->parent != nullptr) {
            twin->parent = copies.at(twin->parent);
            twin->parent->children.push_back(twin.get());
        }
    }
    return copy;
}

void deleteMask(Project& project, Layer& layer, std::size_t index) {
    auto masks = layer.masks;
    masks.erase(masks.begin() + index);
    setLayerField(
        project, layer, [](Layer& l) -> MaskList& { return l.masks; }, masks);
}

}  // namespace headless::model
