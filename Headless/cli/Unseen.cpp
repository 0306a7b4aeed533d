#include "cli/Unseen.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "cli/ExitCode.h"
#include "cli/Text.h"
#include "render/Renderer.h"

namespace headless::cli {

using model::Json;

namespace {

int numberAt(const Json& json, const char* name) {
    const auto found = json.find(name);
    return found != json.end() && found->is_number() ? static_cast<int>(found->get<double>()) : 0;
}

std::set<std::string> fontNames() {
    std::set<std::string> names;
    for (const auto& [name, file] : render::usualLimits().fonts) {
        names.insert(name);
    }
    return names;
}

std::vector<std::string> kindNames() {
    std::vector<std::string> names;
    for (int kind = 0; kind <= static_cast<int>(sight::Kind::Other); ++kind) {
        names.emplace_back(sight::nameOf(static_cast<sight::Kind>(kind)));
    }
    return names;
}

}  // namespace

std::string placeOf(const Named& named) {
    return (named.layer.empty() ? "" : inQuotes(named.layer) + " in ") + inQuotes(named.comp);
}

Json namedJson(const Named& named) {
    return {{"kind", named.kind},
            {"code", named.code},
            {"composition", named.comp},
            {"layer", named.layer},
            {"what", named.what}};
}

const std::vector<sight::Unseen>& Unseen::in(const model::Comp& comp) {
    const auto [known, isNew] = unseen_.try_emplace(&comp);
    if (isNew) {
        known->second = sight::unseenIn(project_, comp, fontNames());
    }
    return known->second;
}

Named Unseen::named(const model::Comp& comp, const sight::Unseen& unseen) const {
    const model::Layer* layer = project_.layer(unseen.layer);
    return {std::string(sight::nameOf(unseen.kind)), unseen.code, comp.item->name,
            layer == nullptr ? "" : project_.nameOf(*layer), unseen.what};
}

const Unseen::Mattes& Unseen::mattesIn(const model::Comp& comp) {
    const auto [known, isNew] = mattes_.try_emplace(&comp);
    if (!isNew) {
        return known->second;
    }
    for (std::size_t i = 0; i < comp.layers.size(); ++i) {
        const model::Layer& layer = *comp.layers[i];
        if (layer.text.find("\"tt\"") == std::string_view::npos) {
            continue;
        }
        const Json json = project_.layerJson(layer);
        if (numberAt(json, "tt") == 0) {
            continue;
        }
        const auto named = std::find_if(
            comp.layers.begin(), comp.layers.end(),
            [index = numberAt(json, "tp")](const model::LayerPtr& each) { return each->index == index; });
        if (json.contains("tp") && named != comp.layers.end()) {
            known->second.emplace_back(&layer, named->get());
        } else if (i > 0) {
            known->second.emplace_back(&layer, comp.layers[i - 1].get());
        }
    }
    return known->second;
}

std::set<const model::Layer*> Unseen::drawnWith(const model::Layer& layer) {
    std::set<const model::Layer*> partners;
    for (const auto& [cut, matte] : mattesIn(*layer.comp)) {
        if (cut == &layer) {
            partners.insert(matte);
        } else if (matte == &layer) {
            partners.insert(cut);
        }
    }
    return partners;
}

std::set<std::string> unseenKinds(const std::string& words) {
    const std::vector<std::string> known = kindNames();
    std::set<std::string> chosen;
    std::istringstream in(words);
    for (std::string word; std::getline(in, word, ',');) {
        if (word == "all") {
            chosen.insert(known.begin(), known.end());
        } else if (std::find(known.begin(), known.end(), word) != known.end()) {
            chosen.insert(word);
        } else {
            throw Stop(ExitCode::BadInput, "--crop-unseen: there is no kind " + inQuotes(word) + "; they are " +
                                               allUnseenKinds(", ") + ", and all");
        }
    }
    return chosen;
}

std::string allUnseenKinds(const std::string& separator) {
    std::string text;
    for (const std::string& name : kindNames()) {
        text += (text.empty() ? "" : separator) + name;
    }
    return text;
}

}  // namespace headless::cli
