#include "cli/Obstacles.h"

#include <set>

#include "cli/Comps.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

std::string slotReason(const model::Project& project, const model::Layer& layer, const std::string& what) {
    return inQuotes(project.nameOf(layer)) + " in " + inQuotes(layer.comp->item->name) + " takes " + what;
}

// Whatever the composition shows, at any depth, may look different with other values in the slots.
std::string whyNotByContent(const model::Project& project, const model::Comp& comp,
                            std::set<const model::Comp*>& seen) {
    if (!seen.insert(&comp).second) {
        return "";
    }
    for (const model::LayerPtr& layer : comp.layers) {
        if (layer->slotted.geometry || (layer->source != nullptr && layer->source->isSlotted)) {
            return slotReason(project, *layer,
                              "more than its colours from slots: other values may show it elsewhere");
        }
        if (const model::Comp* shown = compShownBy(*layer)) {
            if (std::string reason = whyNotByContent(project, *shown, seen); !reason.empty()) {
                return reason;
            }
        }
    }
    return "";
}

// A crop corrects the uses' anchor points and masks, and carries their children along.
std::string whyNotByUse(const model::Project& project, const model::Layer& use) {
    const std::string wouldChange = " from a slot, and a crop would have to change that";
    if (use.slotted.anchor) {
        return slotReason(project, use, "its anchor point" + wouldChange);
    }
    if (use.slotted.masks) {
        return slotReason(project, use, "its mask" + wouldChange);
    }
    if (use.slotted.timeRemap) {
        return slotReason(project, use, "its time from a slot: other values may show other frames");
    }
    for (const model::Layer* child : use.children) {
        if (child->slotted.position) {
            return slotReason(project, *child, "its position" + wouldChange);
        }
    }
    return "";
}

}  // namespace

std::string whyNotToCrop(const model::Project& project, const model::Item& item) {
    std::set<const model::Comp*> seen;
    std::string reason = whyNotByContent(project, *item.comp, seen);
    forEachUse(project, [&](const model::Layer& use) {
        if (reason.empty() && use.source == &item) {
            reason = whyNotByUse(project, use);
        }
    });
    return reason;
}

}  // namespace headless::cli
