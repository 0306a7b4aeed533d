#include "cli/Warnings.h"

#include <algorithm>
#include <map>
#include <set>

#include "cli/Comps.h"
#include "cli/Print.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

using model::Json;

constexpr std::size_t mostPrinted = 20;

// ---- What a layer's object says ------------------------------------------------------------------------

const Json& member(const Json& json, const char* name) {
    static const Json nothing;
    const auto found = json.is_object() ? json.find(name) : json.end();
    return json.is_object() && found != json.end() ? *found : nothing;
}

// An expression is a text in the property's member `x`; separated axes are objects there.
bool hasExpression(const Json& property) {
    return member(property, "x").is_string() || member(member(property, "x"), "x").is_string() ||
           member(member(property, "y"), "x").is_string();
}

bool hasExpressionAnywhere(const Json& json) {
    if (json.is_object() && json.contains("k") && hasExpression(json)) {
        return true;
    }
    return json.is_structured() && std::any_of(json.begin(), json.end(), hasExpressionAnywhere);
}

bool isZero(const Json& property) {
    const Json& value = member(property, "k");
    return value.is_null() || (value.is_number() && value.get<double>() == 0);
}

bool isEffect(const Json& effect, std::initializer_list<int> types) {
    const Json& type = member(effect, "ty");
    return type.is_number() && std::find(types.begin(), types.end(), type.get<int>()) != types.end();
}

// Custom effects are mostly controls for expressions; tint, fill, tritone and levels change colours alone.
constexpr auto drawsOutside = {22, 25, 27, 29, 30, 31, 32, 33, 34};  // stroke, shadow, blur, distortions
constexpr auto changesColours = {20, 21, 23, 24};
constexpr int customEffect = 5;
constexpr int pointControl = 3;

bool hasPoint(const Json& effect) {
    const Json& controls = member(effect, "ef");
    return std::any_of(controls.begin(), controls.end(), [](const Json& control) {
        return isEffect(control, {pointControl}) || hasPoint(control);
    });
}

bool isOn(const Json& effect) {
    return member(effect, "en") != Json(0) && member(effect, "en") != Json(false);
}

template <class Test>
bool anyEffect(const Json& layer, Test&& test) {
    const Json& effects = member(layer, "ef");
    return std::any_of(effects.begin(), effects.end(),
                       [&](const Json& effect) { return isOn(effect) && test(effect); });
}

bool hasStyles(const Json& layer) {
    return member(layer, "sy").is_array() && !member(layer, "sy").empty();
}

bool expandsMasks(const Json& layer) {
    const Json& masks = member(layer, "masksProperties");
    return std::any_of(masks.begin(), masks.end(), [](const Json& mask) { return !isZero(member(mask, "x")); });
}

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
    }
    return text;
}

// ---- Layers, seen from the crop ------------------------------------------------------------------------

class Collector {
 public:
    explicit Collector(const model::Project& project) : project_(project) {}

    void aboutContent(const model::Layer& layer) {
        const Json json = project_.layerJson(layer);
        std::vector<std::string> missed;
        if (layer.type == model::LayerType::Text) {
            missed.emplace_back("text");
        }
        if (anyEffect(json, [](const Json& effect) { return isEffect(effect, drawsOutside); })) {
            missed.emplace_back("effects");
        }
        if (hasStyles(json)) {
            missed.emplace_back("layer styles");
        }
        if (hasExpressionAnywhere(json)) {
            missed.emplace_back("expressions");
        }
        if (!isZero(member(member(json, "ks"), "sk"))) {
            missed.emplace_back("skew");
        }
        if (expandsMasks(json)) {
            missed.emplace_back("mask expansion");
        }
        if (!missed.empty()) {
            add(Warning::Kind::NotDrawn, layer,
                "has " + listed(missed) +
                    ", not drawn here: the bounds may miss some of it; look at "
                    "the result in a player, or leave more padding");
        }
    }

    // A layer of a composition that is cropped.
    void aboutMoved(const model::Layer& layer) {
        const Json transform = member(project_.layerJson(layer), "ks");
        if (layer.type == model::LayerType::Camera) {
            add(Warning::Kind::ThreeD, layer,
                "is a camera: what it shows may move when its composition is cropped");
        } else if (layer.threeD) {
            add(Warning::Kind::ThreeD, layer,
                "is a 3D layer: seen through a camera it may move when its composition is cropped");
        }
        if (layer.parent == nullptr && hasExpression(member(transform, "p"))) {
            add(Warning::Kind::Expression, layer,
                "has an expression on its position, which overrides the crop's correction");
        }
    }

    // A layer that shows a composition that is cropped.
    void aboutUse(const model::Layer& use) {
        const Json json = project_.layerJson(use);
        if (hasExpression(member(member(json, "ks"), "a"))) {
            add(Warning::Kind::Expression, use,
                "has an expression on its anchor point, which overrides the crop's correction");
        }
        const Json& masks = member(json, "masksProperties");
        if (std::any_of(masks.begin(), masks.end(),
                        [](const Json& mask) { return hasExpression(member(mask, "pt")); })) {
            add(Warning::Kind::Expression, use,
                "has an expression on a mask, which overrides the crop's correction");
        }
        const bool dependent = anyEffect(json, [](const Json& effect) {
            return isEffect(effect, {customEffect}) ? hasPoint(effect) : !isEffect(effect, changesColours);
        });
        if (dependent || hasStyles(json)) {
            add(Warning::Kind::Effect, use,
                "has effects or styles that depend on its bounds or on points in it: they may look different");
        }
        for (const model::Layer* child : use.children) {
            if (hasExpression(member(member(project_.layerJson(*child), "ks"), "p"))) {
                add(Warning::Kind::Expression, *child,
                    "has an expression on its position, so that it cannot be carried along with its parent");
            }
        }
        const model::Size largest = use.source->size;
        if (use.useSize != largest) {
            add(Warning::Kind::UseSizes, use,
                (use.useSize == model::Size{}
                     ? "states no size for " + inQuotes(use.source->name)
                     : "shows " + inQuotes(use.source->name) + " at " + sizeText(use.useSize)) +
                    ", which is taken as " + sizeText(largest) + ": after the crop all uses show the same");
        }
    }

    std::vector<Warning> take() { return std::move(warnings_); }

 private:
    void add(Warning::Kind kind, const model::Layer& layer, std::string text) {
        if (seen_.emplace(layer.id, kind).second) {
            warnings_.push_back({kind, layer.comp->item->name, project_.nameOf(layer), std::move(text)});
        }
    }

    const model::Project& project_;
    std::set<std::pair<model::LayerId, Warning::Kind>> seen_;
    std::vector<Warning> warnings_;
};

}  // namespace

std::vector<Warning> warningsFor(const model::Project& project,
                                 const std::vector<const model::Item*>& targets) {
    Collector collector(project);
    std::set<const model::Item*> reached(targets.begin(), targets.end());
    std::vector<const model::Item*> open(reached.begin(), reached.end());
    while (!open.empty()) {
        const model::Item* item = open.back();
        open.pop_back();
        for (const model::LayerPtr& layer : item->comp->layers) {
            if (compShownBy(*layer) != nullptr && reached.insert(layer->source).second) {
                open.push_back(layer->source);
            }
        }
    }
    const std::set<const model::Item*> wanted(targets.begin(), targets.end());
    forEachComp(project, [&](const model::Comp& comp) {
        for (const model::LayerPtr& layer : comp.layers) {
            if (reached.contains(comp.item)) {
                collector.aboutContent(*layer);
            }
            if (wanted.contains(comp.item)) {
                collector.aboutMoved(*layer);
            }
            if (wanted.contains(layer->source)) {
                collector.aboutUse(*layer);
            }
        }
    });
    return collector.take();
}

const char* word(Warning::Kind kind) {
    switch (kind) {
        case Warning::Kind::NotDrawn:
            return "not drawn";
        case Warning::Kind::Expression:
            return "expression";
        case Warning::Kind::ThreeD:
            return "3D";
        case Warning::Kind::Effect:
            return "effect";
        case Warning::Kind::UseSizes:
            break;
    }
    return "use sizes";
}

void print(const std::vector<Warning>& warnings) {
    for (std::size_t i = 0; i < std::min(warnings.size(), mostPrinted); ++i) {
        const Warning& warning = warnings[i];
        say("warning: " + inQuotes(warning.layer) + " in " + inQuotes(warning.comp) + " " + warning.text);
    }
    if (warnings.size() > mostPrinted) {
        say("warning: and " + std::to_string(warnings.size() - mostPrinted) +
            " more of this kind; --json lists them all");
    }
}

}  // namespace headless::cli
