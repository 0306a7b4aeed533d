#include "cli/Comps.h"

#include <algorithm>
#include <limits>

namespace headless::cli {

Uses usesIn(const model::Project& project) {
    Uses uses;
    forEachUse(project, [&](const model::Layer& use) { uses[use.source].push_back(&use); });
    return uses;
}

int compCount(const model::Project& project) {
    int count = 0;
    forEachComp(project, [&](const model::Comp&) { ++count; });
    return count;
}

const model::Comp* compById(const model::Project& project, const std::string& assetId) {
    const model::Comp* found = nullptr;
    forEachComp(project, [&](const model::Comp& comp) {
        if (comp.assetId == assetId) {
            found = &comp;
        }
    });
    return found;
}

model::Vec3 anchorOf(const model::Layer& use) {
    return use.anchor.at(-std::numeric_limits<double>::infinity());
}

void CornerByUses::add(const model::Vec3& anchorBefore, const model::Vec3& anchorAfter) {
    const model::Vec3 moved = anchorBefore - anchorAfter;
    ++told_[{moved.x, moved.y}];
}

std::optional<model::Vec3> CornerByUses::corner() const {
    const auto most = std::max_element(told_.begin(), told_.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == told_.end() ? std::nullopt
                               : std::optional(model::Vec3{most->first.first, most->first.second, 0});
}

std::optional<model::Vec3> cornerByUses(const model::Project& before, const model::Project& after,
                                        const std::string& assetId) {
    CornerByUses told;
    const auto shows = [&](const model::Layer& layer) {
        const model::Comp* shown = compShownBy(layer);
        return shown != nullptr && shown->assetId == assetId;
    };
    forEachComp(before, [&](const model::Comp& comp) {
        const model::Comp* other = compById(after, comp.assetId);
        const std::size_t layers = other == nullptr ? 0 : std::min(comp.layers.size(), other->layers.size());
        for (std::size_t i = 0; i < layers; ++i) {
            if (shows(*comp.layers[i]) && shows(*other->layers[i])) {
                told.add(anchorOf(*comp.layers[i]), anchorOf(*other->layers[i]));
            }
        }
    });
    return told.corner();
}

}  // namespace headless::cli
