#include "model/Slots.h"

#include <algorithm>

#include "model/LayerJson.h"

namespace headless::model {

namespace {

constexpr std::uint64_t largestAdded = 16 << 20;

const Json& member(const Json& json, const char* key) {
    static const Json nothing;
    const auto found = json.is_object() ? json.find(key) : json.end();
    return json.is_object() && found != json.end() ? *found : nothing;
}

bool hasSlot(const Json& json) {
    return json.is_object() && !idAt(json, "sid").empty();
}

// The member that says a shape's colour, which does not change where the shape is.
const char* colourOf(const Json& shape) {
    const std::string type = textAt(shape, "ty");
    return type == "fl" || type == "st" ? "c" : type == "gf" || type == "gs" ? "g" : "";
}

// Looks through a value for properties that have slots.
void collect(const Json& json, bool isColour, SlottedParts& parts) {
    if (hasSlot(json)) {
        parts.any = true;
        parts.geometry |= !isColour;
    }
    if (json.is_object()) {
        const std::string colour = colourOf(json);
        for (const auto& [key, value] : json.items()) {
            collect(value, isColour || (!colour.empty() && key == colour), parts);
        }
    } else if (json.is_array()) {
        for (const Json& value : json) {
            collect(value, isColour, parts);
        }
    }
}

}  // namespace

bool isSlotted(const Json& property) {
    return hasSlot(property) || hasSlot(member(property, "x")) || hasSlot(member(property, "y")) ||
           hasSlot(member(property, "z"));
}

SlottedParts slottedParts(const Json& layer) {
    SlottedParts parts;
    collect(layer, false, parts);
    if (!parts.any) {
        return parts;
    }
    const Json& transform = member(layer, "ks");
    parts.anchor = isSlotted(member(transform, "a"));
    parts.position = isSlotted(member(transform, "p"));
    parts.timeRemap = isSlotted(member(layer, "tm"));
    const Json& masks = member(layer, "masksProperties");
    parts.masks = masks.is_array() && std::any_of(masks.begin(), masks.end(), [](const Json& mask) {
                      return isSlotted(member(mask, "pt"));
                  });
    return parts;
}

Slots::Slots(const Json& slots) {
    if (!slots.is_object()) {
        return;
    }
    for (const auto& [name, slot] : slots.items()) {
        if (const Json& property = member(slot, "p"); property.is_object()) {
            slots_[name] = {property, property.dump().size()};
        }
    }
}

void Slots::putInto(Json& layer, std::uint64_t& added) const {
    if (slots_.empty() || !layer.is_structured()) {
        return;
    }
    for (Json& value : layer) {
        const auto found = hasSlot(value) ? slots_.find(idAt(value, "sid")) : slots_.end();
        if (found == slots_.end()) {
            putInto(value, added);
            continue;
        }
        added += found->second.length;
        if (added > largestAdded) {
            throw ProjectError("slots: put in all their places, they come to more than " +
                               std::to_string(largestAdded >> 20) + " MiB");
        }
        value = found->second.property;
    }
}

}  // namespace headless::model
