#include "cli/CropReport.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "cli/Area.h"
#include "cli/Comps.h"
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

model::Vec3 cornerOf(ReportedProject& before, ReportedProject& after, const std::string& id, int frame,
                     const Comparison& comparison) {
    for (const ComparedComp& compared : comparison.compared) {
        if (compared.assetId == id && compared.offset) {
            return {static_cast<double>(compared.offset->x), static_cast<double>(compared.offset->y), 0};
        }
    }
    if (const auto corner = cornerByUses(before.project, after.project, id)) {
        return *corner;
    }
    const auto first = render::visibleBounds(before.pictures.picture(*compById(before.project, id), frame));
    const auto second = render::visibleBounds(after.pictures.picture(*compById(after.project, id), frame));
    if (!first || !second) {
        return {};
    }
    return {static_cast<double>(first->left - second->left), static_cast<double>(first->top - second->top), 0};
}

// ---- The document -------------------------------------------------------------------------------------

Json resizedJson(ReportedProject& before, ReportedProject& after, const ChangedComp& comp,
                 const Comparison& comparison) {
    const int frame = frameToShow(before.pictures, *compById(before.project, comp.assetId), comparison);
    const model::Vec3 corner = cornerOf(before, after, comp.assetId, frame, comparison);
    Area area;
    area.add(*comp.before, *comp.after);
    return {
        {"id", comp.assetId},
        {"name", comp.name},
        {"before", sizeJson(comp.before)},
        {"after", sizeJson(comp.after)},
        {"area", areaJson(area)},
        {"crop",
         {{"left", corner.x}, {"top", corner.y}, {"width", comp.after->width}, {"height", comp.after->height}}},
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

Json reportOf(ReportedProject& before, ReportedProject& after, int mostFrames) {
    ComparisonRequest request;
    request.mostFrames = mostFrames;
    const Comparison comparison = compare(before.project, after.project, request);
    Area area;
    Json resized = Json::array();
    for (const ChangedComp& comp : comparison.changed) {
        if (comp.before != comp.after) {
            area.add(comp.before, comp.after);
        }
        if (comp.before && comp.after && comp.before != comp.after) {
            resized.push_back(resizedJson(before, after, comp, comparison));
        }
    }
    Json document = documentJson("report", before.file, after.file);
    document.update(comparisonJson(comparison));
    document["compositions"] = compCount(before.project);
    document["area"] = areaJson(area);
    document["resized"] = std::move(resized);
    document["animation"] = animationJson(before, after, comparison);
    return document;
}

}  // namespace headless::cli
