// The compositions of a project and their uses, the layers that show them.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/Project.h"

namespace headless::cli {

// `action(model::Comp&)`, in project order, the root first.
template <class Action>
void forEachComp(const model::Project& project, Action&& action) {
    for (const model::ItemPtr& item : project.items) {
        if (item->comp) {
            action(*item->comp);
        }
    }
}

// Null where the layer shows none.
inline model::Comp* compShownBy(const model::Layer& layer) {
    return layer.source != nullptr ? layer.source->comp.get() : nullptr;
}

// `action(model::Layer&)`, composition by composition, the topmost layer first.
template <class Action>
void forEachUse(const model::Project& project, Action&& action) {
    forEachComp(project, [&](const model::Comp& comp) {
        for (const model::LayerPtr& layer : comp.layers) {
            if (compShownBy(*layer) != nullptr) {
                action(*layer);
            }
        }
    });
}

using Uses = std::map<const model::Item*, std::vector<const model::Layer*>>;
Uses usesIn(const model::Project& project);

int compCount(const model::Project& project);
// Null where there is none.
const model::Comp* compById(const model::Project& project, const std::string& assetId);

// ---- Where the new frame of a cropped composition lies in the old one -------------------------------------

// A use's anchor point, where it moves the one at its first keyframe.
model::Vec3 anchorOf(const model::Layer& use);

// Told by the uses: a crop moves their anchor points by as much as the top left corner.
class CornerByUses {
 public:
    void add(const model::Vec3& anchorBefore, const model::Vec3& anchorAfter);
    // As most uses tell, in pixels of the composition before the crop; nothing where there is no use.
    std::optional<model::Vec3> corner() const;

 private:
    std::map<std::pair<double, double>, int> told_;
};

// Of the composition with this asset id, told by the layers that show it in both versions, at the same place.
std::optional<model::Vec3> cornerByUses(const model::Project& before, const model::Project& after,
                                        const std::string& assetId);

}  // namespace headless::cli
