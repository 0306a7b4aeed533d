// The changes that the host makes to a project, each recorded in its history.
//
// What a resize does to layers, where a new null stands, what becomes of the children of a deleted parent:
// the rules under which a crop leaves the picture where it was.

#pragma once

#include "model/Project.h"

namespace headless::model {

// What cannot be done, such as a parent circle or a size out of bounds. Nothing has changed.
struct EditError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The top left corner stays: nothing inside the composition moves. Every layer that uses it has its anchor
// point and its mask outlines scaled by new over old size, z with the height, and shows the new size.
void setCompSize(Project& project, Comp& comp, Size size);
void setPixelAspect(Project& project, Comp& comp, PixelAspect aspect);
void setItemName(Project& project, Item& item, const std::string& name);

// A null layer on top, source 100 by 100, anchor at its source's corner, placed at the composition's centre.
Layer& addNull(Project& project, Comp& comp, const std::string& name, std::optional<double> frameCount);
// An item as a new layer on top, its centre on the composition's, from the composition's first frame on.
// Throws EditError when the composition would contain itself.
Layer& addLayer(Project& project, Comp& comp, Item& source);
// Throws EditError where others share the layer's index.
void moveLayer(Project& project, Layer& layer, std::size_t newIndex);
// Children get the layer's own parent and keep their place at the composition's current time.
void deleteLayer(Project& project, Layer& layer);
// Only sets the link: the layer's numbers stay, so that it jumps. Throws EditError on a circle or on a layer
// of another composition.
void setParent(Project& project, Layer& layer, Layer* parent);
// Sets the link and changes the numbers, so that the layer keeps its place at the current time.
void setParentInPlace(Project& project, Layer& layer, Layer* parent);

// Removes every layer that uses the item, then the item.
void deleteItem(Project& project, Item& item);
// A copy with the same settings and layers, named with a number appended; sources are shared.
Comp& duplicateComp(Project& project, Comp& comp);

void deleteMask(Project& project, Layer& layer, std::size_t index);

// One recorded change of a layer's fields: `get(layer)` refers to the field.
template <class Get, class Value>
void setLayerField(Project& project, Layer& layer, Get get, Value value) {
    layer.touched = true;
    setRecorded(
        project.history, [&layer, get]() -> decltype(auto) { return get(layer); }, std::move(value));
}

// A new value for keyframe `index` of the stream that `get(layer)` refers to.
template <class Get, class Value>
void setLayerKey(Project& project, Layer& layer, Get get, std::size_t index, Value value) {
    layer.touched = true;
    auto& keys = get(layer).keys;
    auto old = keys[index].value;
    decltype(keys[index].end) oldEnd;
    if (index > 0) {
        oldEnd = keys[index - 1].end;
    }
    get(layer).setKey(index, value);
    project.history.record([&layer, get, index, old = std::move(old), oldEnd = std::move(oldEnd)]() mutable {
        auto& changed = get(layer).keys;
        std::swap(changed[index].value, old);
        if (index > 0) {
            std::swap(changed[index - 1].end, oldEnd);
        }
    });
}

}  // namespace headless::model
