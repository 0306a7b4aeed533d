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

// Each run loses half a pixel when it starts from an odd size; of an expanding run and the one that follows it
// exactly one does.
double lostPixels(int before, int after, Runs runs) {
    const double ofFirst = before % 2 != 0 ? 0.5 : 0;
    return runs == Runs::Expanded ? 0.5 : runs == Runs::Twice && after % 2 != 0 ? ofFirst + 0.5 : ofFirst;
}

}  // namespace

Settling::Settling(const model::Project& project) {
    forEachUse(project, [&](const model::Layer& use) { uses_[use.id] = {use.source->size, anchorOf(use)}; });
}

std::vector<std::string> Settling::settle(model::Project& project, Runs runs) const {
    std::vector<std::string> lines;
    std::set<const model::Item*> halved;
    project.history.resume();
    forEachUse(project, [&](model::Layer& use) {
        const auto before = uses_.find(use.id);
        if (before == uses_.end() ||
            (before->second.sourceSize == use.source->size && before->second.anchor == anchorOf(use))) {
            return;
        }
        const model::Size old = before->second.sourceSize;
        const model::Vec3 lost{lostPixels(old.width, use.source->size.width, runs),
                               lostPixels(old.height, use.source->size.height, runs), 0};
        if (lost != model::Vec3{}) {
            move(
                project, use, [](model::Layer& layer) -> model::PointStream& { return layer.anchor; }, lost);
            if (halved.insert(use.source).second) {
                lines.push_back(inQuotes(use.source->name) + ": gave its uses back " +
                                (runs == Runs::Expanded ? "the half pixel that expanding costs"
                                 : runs == Runs::Twice
                                     ? "what odd sizes cost when it is cropped twice"
                                     : "the half pixel that the odd size " + sizeText(old) + " costs"));
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
