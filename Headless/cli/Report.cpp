#include "cli/Report.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <map>
#include <set>

#include "cli/Find.h"

namespace headless::cli {

using model::Json;

namespace {

// The larger side of a picture that a page holds, and how many frames of the whole animation it holds.
constexpr int largestSide = 960;
constexpr int largestAnimationSide = 600;
constexpr int heldFrames = 60;

int factorFor(const model::Size& size, int side) {
    return std::max(1, (std::max(size.width, size.height) + side - 1) / side);
}

// ---- Frames -------------------------------------------------------------------------------------------

std::set<int> evenly(int frames, int most) {
    std::set<int> chosen;
    for (int i = 0; i < std::min(frames, most); ++i) {
        chosen.insert(frames <= most ? i : static_cast<int>(std::lround(i * (frames - 1.0) / (most - 1.0))));
    }
    return chosen;
}

// The frame at which a composition is shown: where it differs most if it does, else where most of it is
// visible among a few.
int frameToShow(CompPictures& pictures, const model::Comp& comp, const Comparison& comparison) {
    for (const ComparedComp& compared : comparison.compared) {
        if (compared.assetId == comp.assetId && compared.verdict != Verdict::Equal) {
            return compared.worst.frame;
        }
    }
    constexpr int tried = 12;
    const int factor = factorFor(comp.item->size, 320);
    int best = 0;
    int largest = 0;
    for (const int frame : evenly(frameCount(comp), tried)) {
        if (const auto box = render::visibleBounds(pictures.picture(comp, frame, factor, factor))) {
            const int area = (box->right - box->left) * (box->bottom - box->top);
            if (area > largest) {
                largest = area;
                best = frame;
            }
        }
    }
    return best;
}

// ---- Where the second version lies in the first --------------------------------------------------------

struct Corner {
    double left = 0, top = 0;
    auto operator<=>(const Corner&) const = default;
};

// Seen from the layers that show the composition in both: what the anchors of most of them moved by.
std::optional<Corner> cornerByUse(const model::Project& before, const model::Project& after,
                                  const std::string& id) {
    std::map<Corner, int> seen;
    const auto shows = [&](const model::Layer& layer) {
        return layer.source != nullptr && layer.source->comp && layer.source->comp->assetId == id;
    };
    for (const model::ItemPtr& item : before.items) {
        const model::Comp* other = item->comp ? compById(after, item->comp->assetId) : nullptr;
        if (other == nullptr) {
            continue;
        }
        const std::size_t layers = std::min(item->comp->layers.size(), other->layers.size());
        for (std::size_t i = 0; i < layers; ++i) {
            const model::Layer& first = *item->comp->layers[i];
            const model::Layer& second = *other->layers[i];
            if (shows(first) && shows(second)) {
                const model::Vec3 moved = first.anchor.at(first.inFrame) - second.anchor.at(first.inFrame);
                ++seen[{moved.x, moved.y}];
            }
        }
    }
    const auto most = std::max_element(seen.begin(), seen.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == seen.end() ? std::nullopt : std::optional(most->first);
}

Corner cornerOf(ReportedProject& before, ReportedProject& after, const std::string& id, int frame,
                const Comparison& comparison) {
    for (const ComparedComp& compared : comparison.compared) {
        if (compared.assetId == id && compared.offset) {
            return {static_cast<double>(compared.offset->x), static_cast<double>(compared.offset->y)};
        }
    }
    if (const auto corner = cornerByUse(before.project, after.project, id)) {
        return *corner;
    }
    const auto first = render::visibleBounds(before.pictures.picture(*compById(before.project, id), frame));
    const auto second = render::visibleBounds(after.pictures.picture(*compById(after.project, id), frame));
    if (!first || !second) {
        return {};
    }
    return {static_cast<double>(first->left - second->left), static_cast<double>(first->top - second->top)};
}

// ---- The document -------------------------------------------------------------------------------------

std::int64_t areaOf(const model::Size& size) {
    return static_cast<std::int64_t>(size.width) * size.height;
}

Json areaJson(std::int64_t before, std::int64_t after) {
    const double kept = before == 0 ? 1 : static_cast<double>(after) / static_cast<double>(before);
    return {{"before", before}, {"after", after}, {"savedPercent", 100 * (1 - kept)}};
}

Json resizedJson(ReportedProject& before, ReportedProject& after, const ChangedComp& comp,
                 const Comparison& comparison) {
    const int frame = frameToShow(before.pictures, *compById(before.project, comp.assetId), comparison);
    const Corner corner = cornerOf(before, after, comp.assetId, frame, comparison);
    return {{"id", comp.assetId},
            {"name", comp.name},
            {"before", sizeJson(comp.before)},
            {"after", sizeJson(comp.after)},
            {"area", areaJson(areaOf(*comp.before), areaOf(*comp.after))},
            {"crop",
             {{"left", corner.left},
              {"top", corner.top},
              {"width", comp.after->width},
              {"height", comp.after->height}}},
            {"frame", frame},
            {"factor", factorFor(*comp.before, largestSide)}};
}

Json animationJson(ReportedProject& before, ReportedProject& after, const Comparison& comparison) {
    const model::Comp& root = before.project.root();
    const model::Size newSize = after.project.root().item->size;
    const int frames = frameCount(root);
    const int shown = frameToShow(before.pictures, root, comparison);
    std::set<int> held = evenly(frames, heldFrames);
    held.insert(shown);
    return {{"name", root.item->name},
            {"before", sizeJson(root.item->size)},
            {"after", sizeJson(newSize)},
            {"frames", frames},
            {"frameRate", before.project.frameRate()},
            {"shown", shown},
            {"held", held},
            {"factor", std::max(factorFor(root.item->size, largestAnimationSide),
                                factorFor(newSize, largestAnimationSide))}};
}

}  // namespace

const model::Comp* compById(const model::Project& project, const std::string& assetId) {
    for (const model::ItemPtr& item : project.items) {
        if (item->comp && item->comp->assetId == assetId) {
            return item->comp.get();
        }
    }
    return nullptr;
}

Json reportOf(ReportedProject& before, ReportedProject& after) {
    const Comparison comparison = compare(before.project, after.project);
    std::int64_t areaBefore = 0;
    std::int64_t areaAfter = 0;
    Json resized = Json::array();
    for (const ChangedComp& comp : comparison.changed) {
        if (comp.before && comp.after && comp.before != comp.after) {
            areaBefore += areaOf(*comp.before);
            areaAfter += areaOf(*comp.after);
            resized.push_back(resizedJson(before, after, comp, comparison));
        }
    }
    Json document = documentJson("report", before.file, after.file);
    document.update(comparisonJson(comparison));
    document["compositions"] = std::count_if(before.project.items.begin(), before.project.items.end(),
                                             [](const model::ItemPtr& item) { return item->comp != nullptr; });
    document["area"] = areaJson(areaBefore, areaAfter);
    document["resized"] = std::move(resized);
    document["animation"] = animationJson(before, after, comparison);
    return document;
}

}  // namespace headless::cli
