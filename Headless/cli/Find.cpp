#include "cli/Find.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

constexpr std::size_t mostListed = 20;

[[noreturn]] void refuse(const std::string& what, const std::vector<std::string>& candidates) {
    std::string message = what + "; there ";
    message += candidates.empty() ? "are none" : candidates.size() == 1 ? "is" : "are";
    for (std::size_t i = 0; i < candidates.size() && i < mostListed; ++i) {
        message += (i == 0 ? " " : ", ") + candidates[i];
    }
    if (candidates.size() > mostListed) {
        message += " and " + std::to_string(candidates.size() - mostListed) + " more";
    }
    throw Stop(ExitCode::BadInput, message);
}

std::string described(const model::Project& project, const model::Layer& layer) {
    return "#" + std::to_string(project.indexOf(layer) + 1) + " " + inQuotes(project.nameOf(layer));
}

std::optional<std::size_t> numberAfterHash(const std::string& text) {
    std::size_t number = 0;
    const char* end = text.data() + text.size();
    if (text.size() < 2 || text[0] != '#' || std::from_chars(text.data() + 1, end, number).ptr != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

model::Comp& findComp(const model::Project& project, const std::string& name) {
    if (name.empty()) {
        return project.root();
    }
    model::Comp* byId = nullptr;
    std::vector<std::string> candidates;
    for (const model::ItemPtr& item : project.items) {
        if (!item->comp) {
            continue;
        }
        if (item->name == name) {  // names are unique
            return *item->comp;
        }
        const std::string& id = item->comp->assetId;
        if (id == name) {
            byId = item->comp.get();
        }
        candidates.push_back(inQuotes(item->name) + (id.empty() || id == item->name ? "" : " (" + id + ")"));
    }
    if (byId == nullptr) {
        refuse("no composition is named " + inQuotes(name), candidates);
    }
    return *byId;
}

model::Layer& findLayer(const model::Project& project, const model::Comp& comp, const std::string& name) {
    std::vector<model::Layer*> found;
    std::vector<std::string> candidates;
    for (const model::LayerPtr& layer : comp.layers) {
        candidates.push_back(described(project, *layer));
        if (project.nameOf(*layer) == name) {
            found.push_back(layer.get());
        }
    }
    const std::string where = " in the composition " + inQuotes(comp.item->name);
    if (found.size() > 1) {
        std::vector<std::string> same;
        for (const model::Layer* layer : found) {
            same.push_back(described(project, *layer));
        }
        refuse("more than one layer is named " + inQuotes(name) + where + ", say which by its number", same);
    }
    if (found.size() == 1) {
        return *found.front();
    }
    const auto number = numberAfterHash(name);
    if (!number || *number < 1 || *number > comp.layers.size()) {
        refuse("no layer is named " + inQuotes(name) + where, candidates);
    }
    return *comp.layers[*number - 1];
}

int frameCount(const model::Comp& comp) {
    return static_cast<int>(std::ceil(comp.frameCount()));
}

int findFrame(const model::Comp& comp, int frame) {
    if (frame < 0 || frame >= frameCount(comp)) {
        throw Stop(ExitCode::BadInput, "there is no frame " + std::to_string(frame) + " in the composition " +
                                           inQuotes(comp.item->name) + "; its frames are 0 to " +
                                           std::to_string(frameCount(comp) - 1));
    }
    return frame;
}

int frameAt(const model::Project& project, const model::Comp& comp, double seconds) {
    constexpr double roundedAway = 0.002;  // frames; decimal seconds may lie this much short of theirs
    const double frame = std::floor(seconds * project.frameRate() + roundedAway);
    if (!(frame >= 0 && frame < frameCount(comp))) {
        throw Stop(ExitCode::BadInput, "the time " + shortNumber(seconds) + " s is outside the composition " +
                                           inQuotes(comp.item->name) + ", which lasts " +
                                           shortNumber(comp.frameCount() / project.frameRate()) + " s");
    }
    return static_cast<int>(frame);
}

int resolutionFactor(const std::string& word) {
    return word == "half" ? 2 : word == "third" ? 3 : word == "quarter" ? 4 : 1;
}

}  // namespace headless::cli
