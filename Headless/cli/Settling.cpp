#include "cli/Settling.h"

#include <set>

#include "cli/Comps.h"
#include "cli/Text.h"
#include "model/Edit.h"

namespace headless::cli {

namespace {

void move(model::Project& project, model::Layer& layer, model::PointStream& (*get)(model::Layer&),
          const model::Vec3& offset) {
    model::PointStream moved = get(layer);
    moved.add(offset);
    model::setLayerField(project, layer, get, std::move(moved));
}

}  // namespace

Settling::Settling(const model::Project& project) {
    forEachUse(project, [&](const model::Layer& use) { uses_[use.id] = {use.source->size, anchorOf(use)}; });
}

std::vector<std::string> Settling::settle(model::Project& project, bool expanded) const {
    std::vector<std::string> lines;
    std::set<const model::Item*> halved;
    project.history.resume();
    forEachUse(project, [&](model::Layer& use) {
        const auto before = uses_.find(use.id);
        if (before == uses_.end() ||
            (before->second.sourceSize == use.source->size && before->second.anchor == anchorOf(use))) {
            return;
        }
        // Each run loses half a pixel when it starts from an odd size; of an expanding run and the one that
        // follows it exactly one does.
        const auto [width, height] = before->second.sourceSize;
        const model::Vec3 lost{expanded || width % 2 != 0 ? 0.5 : 0, expanded || height % 2 != 0 ? 0.5 : 0, 0};
        if (lost != model::Vec3{}) {
            move(
                project, use, [](model::Layer& layer) -> model::PointStream& { return layer.anchor; }, lost);
            if (halved.insert(use.source).second) {
                lines.push_back(inQuotes(use.source->name) + ": gave its uses back the half pixel that " +
                                (expanded ? "expanding" : "the odd size " + sizeText({width, height})) +
                                " costs");
            }
        }
        const model::Vec3 moved = before->second.anchor - anchorOf(use);
        if (moved == model::Vec3{}) {
            return;
        }
        for (model::Layer* child : use.children) {
            move(
                project, *child, [](model::Layer& layer) -> model::PointStream& { return layer.position; },
                model::Vec3{} - model::Vec3{moved.x, moved.y, 0});
            lines.push_back("carried " + inQuotes(project.nameOf(*child)) + " along, a child of " +
                            inQuotes(project.nameOf(use)));
        }
    });
    project.history.end();
    return lines;
}

std::optional<model::Vec3> Settling::cornerOf(const model::Project& project, const model::Item& item) const {
    CornerByUses told;
    forEachUse(project, [&](const model::Layer& use) {
        const auto before = uses_.find(use.id);
        if (use.source == &item && before != uses_.end()) {
            told.add(before->second.anchor, anchorOf(use));
        }
    });
    return told.corner();
}

}  // namespace headless::cli
