#include "cli/Comparison.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "cli/Comps.h"
#include "cli/ExitCode.h"
#include "cli/Find.h"
#include "cli/Verbs.h"
#include "session/CompPictures.h"

namespace headless::cli {

namespace {

constexpr int invisibleLevels = render::NoiseLimits{}.invisible;

// ---- What changed ------------------------------------------------------------------------------------

struct Pair {
    const model::Comp* before = nullptr;
    const model::Comp* after = nullptr;

    bool inBoth() const { return before != nullptr && after != nullptr; }
    bool sameSize() const { return before->item->size == after->item->size; }
    bool sameFrames() const {
        return before->firstFrame == after->firstFrame && before->endFrame == after->endFrame;
    }
    bool isRoot() const { return before->assetId.empty(); }
};
using Pairs = std::map<std::string, Pair>;  // by asset id

Pairs pairsOf(const model::Project& before, const model::Project& after) {
    Pairs pairs;
    forEachComp(before, [&](const model::Comp& comp) { pairs[comp.assetId].before = &comp; });
    forEachComp(after, [&](const model::Comp& comp) { pairs[comp.assetId].after = &comp; });
    return pairs;
}

bool sameLayers(const model::Project& before, const model::Project& after, const Pair& pair) {
    return std::equal(pair.before->layers.begin(), pair.before->layers.end(), pair.after->layers.begin(),
                      pair.after->layers.end(), [&](const model::LayerPtr& a, const model::LayerPtr& b) {
                          return sameLayer(before, *a, after, *b);
                      });
}

// Asset ids of the compositions that a composition shows directly.
void addShown(const model::Comp* comp, std::set<std::string>& ids) {
    if (comp == nullptr) {
        return;
    }
    for (const model::LayerPtr& layer : comp->layers) {
        if (const model::Comp* shown = compShownBy(*layer)) {
            ids.insert(shown->assetId);
        }
    }
}

std::set<std::string> shownBy(const Pair& pair) {
    std::set<std::string> ids;
    addShown(pair.before, ids);
    addShown(pair.after, ids);
    return ids;
}

void addReached(const Pairs& pairs, const std::string& id, std::set<std::string>& reached) {
    for (const std::string& shown : shownBy(pairs.at(id))) {
        if (reached.insert(shown).second) {
            addReached(pairs, shown, reached);
        }
    }
}

// Those whose pictures tell whether something has shifted.
std::vector<std::string> compsToCompare(const Pairs& pairs, const std::set<std::string>& changed,
                                        bool contentDiffers) {
    std::vector<std::string> chosen;
    std::set<std::string> covered;
    for (const auto& [id, pair] : pairs) {
        if (!pair.inBoth() || !pair.sameSize()) {
            continue;
        }
        const auto shown = shownBy(pair);
        const bool isRoot = id.empty();
        if (isRoot ? contentDiffers : std::any_of(shown.begin(), shown.end(), [&](const std::string& inner) {
                return changed.contains(inner);
            })) {
            chosen.push_back(id);
            addReached(pairs, id, covered);
        }
    }
    for (const auto& [id, pair] : pairs) {
        if (pair.inBoth() && !pair.sameSize() && !covered.contains(id)) {
            chosen.push_back(id);
        }
    }
    return chosen;
}

// ---- Pictures ----------------------------------------------------------------------------------------

Verdict verdictOf(const render::Difference& difference, const render::Picture& first,
                  const render::Picture& second) {
    if (difference.largest <= invisibleLevels) {
        return Verdict::Equal;
    }
    return render::isEdgeNoise(first, second) ? Verdict::EdgeNoise : Verdict::Shifted;
}

// Two pictures on one transparent canvas around both; `second` lies at `offset` in the pixels of `first`.
struct Overlay {
    render::PixelPoint corner;  // of the canvas, in the pixels of `first`
    render::Picture first, second;
};

render::Picture pasted(const render::Picture& picture, int left, int top, int width, int height) {
    render::Picture canvas{width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width) * height)};
    for (int y = 0; y < picture.height; ++y) {
        std::copy_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * picture.width, picture.width,
                    canvas.pixels.begin() + static_cast<std::ptrdiff_t>(y + top) * width + left);
    }
    return canvas;
}

Overlay overlay(const render::Picture& first, const render::Picture& second, render::PixelPoint offset) {
    const int left = std::min(0, offset.x);
    const int top = std::min(0, offset.y);
    const int width = std::max(first.width, offset.x + second.width) - left;
    const int height = std::max(first.height, offset.y + second.height) - top;
    return {{left, top},
            pasted(first, -left, -top, width, height),
            pasted(second, offset.x - left, offset.y - top, width, height)};
}

class Pictures {
 public:
    Pictures(const model::Project& before, const model::Project& after)
        : projectBefore_(before), projectAfter_(after), before_(before), after_(after) {}

    ComparedComp compare(const Pair& pair, const ComparisonRequest& request) {
        ComparedComp result;
        result.assetId = pair.before->assetId;
        result.name = pair.before->item->name;
        if (!pair.sameFrames() || projectBefore_.frameRate() != projectAfter_.frameRate()) {
            result.otherTimes = true;
            result.verdict = Verdict::Shifted;
            return result;
        }
        const int first = request.frame.value_or(0);
        const int end = request.frame ? first + 1 : frameCount(*pair.before);
        if (!pair.sameSize()) {
            result.offset = offsetBetween(pair);
        }
        for (int frame = first; frame < end; ++frame) {
            compareFrame(pair, frame, result);
            if (request.onFrame) {
                request.onFrame();
            }
        }
        if (pair.isRoot() && !pair.sameSize()) {
            result.verdict = Verdict::Shifted;
        }
        return result;
    }

 private:
    void compareFrame(const Pair& pair, int frame, ComparedComp& result) {
        Overlay pictures{{}, before_.picture(*pair.before, frame), after_.picture(*pair.after, frame)};
        if (result.offset) {
            pictures = overlay(pictures.first, pictures.second, *result.offset);
        }
        const render::Difference difference =
            render::difference(pictures.first, pictures.second, invisibleLevels);
        const Verdict verdict = verdictOf(difference, pictures.first, pictures.second);
        if (verdict > result.verdict ||
            (verdict == result.verdict && difference.largest > result.worst.largest)) {
            result.verdict = verdict;
            result.worst = {frame,
                            difference.largest,
                            difference.count,
                            {difference.worst.x + pictures.corner.x, difference.worst.y + pictures.corner.y}};
        }
        ++result.frames;
    }

    // The same for all frames, whichever are compared.
    render::PixelPoint offsetBetween(const Pair& pair) {
        const auto corner = cornerByUses(projectBefore_, projectAfter_, pair.before->assetId);
        if (corner && corner->x == std::round(corner->x) && corner->y == std::round(corner->y)) {
            // Farther apart than side by side is no more different.
            const model::Size old = pair.before->item->size;
            const model::Size now = pair.after->item->size;
            return {static_cast<int>(std::clamp<double>(corner->x, -now.width, old.width)),
                    static_cast<int>(std::clamp<double>(corner->y, -now.height, old.height))};
        }
        for (int frame = 0; frame < frameCount(*pair.before); ++frame) {
            const auto before = render::visibleBounds(before_.picture(*pair.before, frame));
            const auto after = render::visibleBounds(after_.picture(*pair.after, frame));
            if (before && after) {
                return {before->left - after->left, before->top - after->top};
            }
        }
        return {};
    }

    const model::Project& projectBefore_;
    const model::Project& projectAfter_;
    CompPictures before_, after_;
};

}  // namespace

Verdict Comparison::verdict() const {
    Verdict worst = Verdict::Equal;
    for (const ComparedComp& comp : compared) {
        worst = std::max(worst, comp.verdict);
    }
    return worst;
}

Comparison compare(const model::Project& before, const model::Project& after,
                   const ComparisonRequest& request) {
    const Pairs pairs = pairsOf(before, after);
    Comparison result;
    std::set<std::string> changed;
    for (const auto& [id, pair] : pairs) {
        if (pair.inBoth() && pair.sameSize() && sameLayers(before, after, pair)) {
            continue;
        }
        changed.insert(id);
        ChangedComp entry{id, (pair.before != nullptr ? pair.before : pair.after)->item->name, {}, {}};
        if (pair.before != nullptr) {
            entry.before = pair.before->item->size;
        }
        if (pair.after != nullptr) {
            entry.after = pair.after->item->size;
        }
        result.changed.push_back(std::move(entry));
    }

    std::vector<std::string> chosen;
    if (request.comp.empty()) {
        chosen = compsToCompare(pairs, changed, before.write() != after.write() || !before.samePictures(after));
    } else {
        const model::Comp& comp = findComp(before, request.comp);
        if (!pairs.at(comp.assetId).inBoth()) {
            findComp(after, comp.assetId);  // says what the second project has instead
        }
        if (request.frame) {
            findFrame(comp, *request.frame);
        }
        chosen.push_back(comp.assetId);
    }
    if (request.frame && std::none_of(chosen.begin(), chosen.end(), [&](const std::string& id) {
            return *request.frame >= 0 && *request.frame < frameCount(*pairs.at(id).before);
        })) {
        findFrame(before.root(), *request.frame);
    }
    std::int64_t frames = 0;
    for (const std::string& id : chosen) {
        frames += request.frame ? 1 : frameCount(*pairs.at(id).before);
    }
    requireFrames(frames, request.mostFrames);
    Pictures pictures(before, after);
    for (const std::string& id : chosen) {
        const Pair& pair = pairs.at(id);
        if (!request.frame || (*request.frame >= 0 && *request.frame < frameCount(*pair.before))) {
            result.compared.push_back(pictures.compare(pair, request));
        }
    }
    if (!request.onlyPictures) {
        std::vector<std::string> ids;
        for (const ComparedComp& comp : result.compared) {
            ids.push_back(comp.assetId);
        }
        result.notDrawn = notDrawnBetween(before, after, ids);
    }
    return result;
}

}  // namespace headless::cli
