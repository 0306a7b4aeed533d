#include "cli/Concerns.h"

#include <algorithm>

#include "cli/Print.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

using model::Json;
using Weight = Concern::Weight;

constexpr std::size_t mostPrinted = 20;

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

// All expressions of a layer, one after the other.
std::string expressionsIn(const Json& json) {
    std::string text;
    if (member(json, "x").is_string()) {
        text = member(json, "x").get<std::string>() + "\n";
    }
    if (json.is_structured()) {
        for (const Json& each : json) {
            text += expressionsIn(each);
        }
    }
    return text;
}

bool names(const std::string& expression, const std::string& name) {
    for (const char quote : {'"', '\'', '`'}) {
        if (expression.find(quote + name + quote) != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

// About one crop.
class Concerns::Collector {
 public:
    Collector(Concerns& all, const model::Item& target) : all_(all), project_(all.project_), target_(target) {}

    // Whatever the composition shows, at any depth.
    void aboutContent(const model::Comp& comp) {
        if (!reached_.insert(&comp).second) {
            return;
        }
        for (const sight::Unseen& unseen : all_.unseen_.in(comp)) {
            add(comp, unseen);
        }
        for (const model::LayerPtr& layer : comp.layers) {
            if (layer->slotted.geometry || (layer->source != nullptr && layer->source->isSlotted)) {
                add(Weight::Forbids, *layer, "slots", "slot-geometry",
                    "takes more than its colours from slots: other values may show it elsewhere");
            }
            if (const model::Comp* shown = compShownBy(*layer)) {
                aboutContent(*shown);
            }
        }
    }

    // The target's own layers, which move.
    void aboutMoved(const model::Layer& layer) {
        if (layer.parent == nullptr) {
            aboutExpression(layer, member(transformOf(layer), "p"), "expression-position", "its position");
        }
    }

    // A layer that shows the target. A crop corrects its anchor point and masks, and carries its children
    // along.
    void aboutUse(const model::Layer& use) {
        aboutSlots(use);
        aboutLayer(use);
        for (const model::Layer* partner : all_.unseen_.drawnWith(use)) {
            aboutWhole(*partner);
        }
        aboutExpression(use, member(transformOf(use), "a"), "expression-anchor", "its anchor point");
        const Json json = project_.layerJson(use);
        for (const Json& mask : member(json, "masksProperties")) {
            aboutExpression(use, member(mask, "pt"), "expression-mask", "a mask");
        }
        for (const model::Layer* child : use.children) {
            aboutWhole(*child);
            aboutExpression(*child, member(transformOf(*child), "p"), "expression-position", "its position");
        }
        if (use.useSize != target_.size && !seen_.contains({use.id, "use-without-size"})) {
            add(Weight::Stays, use, "sizes", "use-size",
                "shows " + inQuotes(target_.name) + " at " + sizeText(use.useSize) + ", which is taken as " +
                    sizeText(target_.size) + ": after the crop all uses show the same");
        }
    }

    // Expressions anywhere that reach for the target, or the layers that show it, by name.
    void aboutReaching(const std::vector<const model::Layer*>& uses) {
        std::set<std::string> known{target_.name};
        for (const model::Layer* use : uses) {
            known.insert(project_.nameOf(*use));
        }
        for (const Expressions& each : all_.expressions()) {
            if (std::any_of(known.begin(), known.end(),
                            [&](const std::string& name) { return names(each.text, name); })) {
                add(*each.comp, each.unseen);
            }
        }
    }

    std::vector<Concern> take() {
        std::stable_sort(concerns_.begin(), concerns_.end(),
                         [](const Concern& a, const Concern& b) { return a.weight < b.weight; });
        return std::move(concerns_);
    }

 private:
    void aboutSlots(const model::Layer& use) {
        const std::string wouldChange = " from a slot, and a crop would have to change that";
        const auto forbids = [&](const model::Layer& layer, const char* code, const std::string& what) {
            add(Weight::Forbids, layer, "slots", code, "takes " + what);
        };
        if (use.slotted.anchor) {
            forbids(use, "slot-anchor", "its anchor point" + wouldChange);
        }
        if (use.slotted.masks) {
            forbids(use, "slot-mask", "its mask" + wouldChange);
        }
        if (use.slotted.timeRemap) {
            forbids(use, "slot-time", "its time from a slot: other values may show other frames");
        }
        for (const model::Layer* child : use.children) {
            if (child->slotted.position) {
                forbids(*child, "slot-position", "its position" + wouldChange);
            }
        }
    }

    void aboutLayer(const model::Layer& layer) {
        for (const sight::Unseen& unseen : all_.unseen_.in(*layer.comp)) {
            if (unseen.layer == layer.id) {
                add(*layer.comp, unseen);
            }
        }
    }

    void aboutWhole(const model::Layer& layer) {
        aboutLayer(layer);
        if (const model::Comp* shown = compShownBy(layer)) {
            aboutContent(*shown);
        }
    }

    // One that is not drawn has been named already.
    void aboutExpression(const model::Layer& layer, const Json& property, const char* code,
                         const std::string& of) {
        if (hasExpression(property) && !notRun_.contains(layer.id)) {
            add(Weight::Stays, layer, "expressions", code,
                "has an expression on " + of + ", which overrides the crop's correction");
        }
    }

    Json transformOf(const model::Layer& layer) const { return member(project_.layerJson(layer), "ks"); }

    void add(const model::Comp& comp, const sight::Unseen& unseen) {
        const Named named = all_.unseen_.named(comp, unseen);
        if (seen_.emplace(unseen.layer, unseen.code).second) {
            if (unseen.kind == sight::Kind::Expressions) {
                notRun_.insert(unseen.layer);
            }
            concerns_.push_back({named, Weight::Unseen});
        }
    }

    void add(Weight weight, const model::Layer& layer, const char* kind, const char* code,
             const std::string& what) {
        if (seen_.emplace(layer.id, code).second) {
            concerns_.push_back({{kind, code, layer.comp->item->name, project_.nameOf(layer), what}, weight});
        }
    }

    Concerns& all_;
    const model::Project& project_;
    const model::Item& target_;
    std::set<const model::Comp*> reached_;
    std::set<std::pair<model::LayerId, std::string>> seen_;  // with their codes
    std::set<model::LayerId> notRun_;                        // with expressions that are not drawn
    std::vector<Concern> concerns_;
};

std::vector<Concern> Concerns::about(const model::Item& target) {
    Collector collector(*this, target);
    collector.aboutContent(*target.comp);
    for (const model::LayerPtr& layer : target.comp->layers) {
        collector.aboutMoved(*layer);
    }
    const std::vector<const model::Layer*>& uses = uses_[&target];
    for (const model::Layer* use : uses) {
        collector.aboutUse(*use);
    }
    collector.aboutReaching(uses);
    return collector.take();
}

const std::vector<Concerns::Expressions>& Concerns::expressions() {
    if (!std::exchange(expressionsKnown_, true)) {
        forEachComp(project_, [&](const model::Comp& comp) {
            for (const sight::Unseen& unseen : unseen_.in(comp)) {
                const model::Layer* layer = project_.layer(unseen.layer);
                if (unseen.kind == sight::Kind::Expressions && layer != nullptr) {
                    expressions_.push_back({&comp, unseen, expressionsIn(project_.layerJson(*layer))});
                }
            }
        });
    }
    return expressions_;
}

std::string sentence(const Concern& concern) {
    return placeOf(concern) + (concern.weight == Weight::Unseen ? " has " : " ") + concern.what;
}

void printWarnings(const std::vector<Concern>& concerns) {
    for (std::size_t i = 0; i < std::min(concerns.size(), mostPrinted); ++i) {
        say("warning: " + sentence(concerns[i]) +
            (concerns[i].weight == Weight::Unseen
                 ? ", not drawn here: the crop may cut or move it; look at the result in a player"
                 : ""));
    }
    if (concerns.size() > mostPrinted) {
        say("warning: and " + std::to_string(concerns.size() - mostPrinted) + " more like these");
    }
}

}  // namespace headless::cli
