#include "cli/ComparisonJson.h"

#include <algorithm>

#include "cli/Text.h"

namespace headless::cli {

using model::Json;

namespace {

Json changedJson(const ChangedComp& comp) {
    const bool inBoth = comp.before && comp.after;
    return {{"id", comp.assetId},
            {"name", comp.name},
            {"change", !inBoth                     ? (comp.before ? "only before" : "only after")
                       : comp.before != comp.after ? "resized"
                                                   : "layers"},
            {"before", sizeJson(comp.before)},
            {"after", sizeJson(comp.after)}};
}

Json worstJson(const FrameDifference& worst) {
    if (worst.largest == 0) {
        return nullptr;
    }
    return {{"frame", worst.frame},
            {"largest", worst.largest},
            {"pixels", worst.pixels},
            {"x", worst.at.x},
            {"y", worst.at.y}};
}

}  // namespace

const char* word(Verdict verdict) {
    switch (verdict) {
        case Verdict::Equal:
            return "equal";
        case Verdict::EdgeNoise:
            return "edge noise";
        case Verdict::Shifted:
            break;
    }
    return "shifted";
}

std::string conclusion(const Comparison& comparison) {
    const std::vector<Named>& notDrawn = comparison.notDrawn;
    const std::string verdict = comparison.verdict() == Verdict::Shifted ? "the pictures differ"
                                : comparison.compared.empty()            ? "nothing that is shown has changed"
                                : notDrawn.empty()                       ? "nothing on screen has shifted"
                                                   : "nothing that can be drawn has shifted";
    constexpr std::size_t mostNamed = 3;
    std::string list;
    for (std::size_t i = 0; i < std::min(notDrawn.size(), mostNamed); ++i) {
        list += (i == 0 ? "" : ", ") + notDrawn[i].what + " of " + placeOf(notDrawn[i]);
    }
    if (notDrawn.size() > mostNamed) {
        list += " and " + grouped(static_cast<std::int64_t>(notDrawn.size() - mostNamed)) + " more";
    }
    return verdict + (list.empty() ? "" : "; not drawn: " + list);
}

Json sizeJson(const std::optional<model::Size>& size) {
    return size ? Json{{"width", size->width}, {"height", size->height}} : Json();
}

Json comparedJson(const ComparedComp& comp) {
    return {{"id", comp.assetId},
            {"name", comp.name},
            {"verdict", word(comp.verdict)},
            {"otherTimes", comp.otherTimes},
            {"frames", comp.frames},
            {"worst", worstJson(comp.worst)},
            {"offset", comp.offset ? Json{{"x", comp.offset->x}, {"y", comp.offset->y}} : Json()}};
}

Json comparisonJson(const Comparison& comparison) {
    Json changed = Json::array();
    for (const ChangedComp& comp : comparison.changed) {
        changed.push_back(changedJson(comp));
    }
    Json compared = Json::array();
    for (const ComparedComp& comp : comparison.compared) {
        compared.push_back(comparedJson(comp));
    }
    Json notDrawn = Json::array();
    for (const Named& named : comparison.notDrawn) {
        notDrawn.push_back(namedJson(named));
    }
    return {{"verdict", word(comparison.verdict())},
            {"conclusion", conclusion(comparison)},
            {"changed", std::move(changed)},
            {"compared", std::move(compared)},
            {"notDrawn", std::move(notDrawn)}};
}

Json documentJson(const char* kind, const std::string& before, const std::string& after) {
    return {{"kestrin", kind}, {"version", 1}, {"before", {{"file", before}}}, {"after", {{"file", after}}}};
}

std::string jsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace headless::cli
