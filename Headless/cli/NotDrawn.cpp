#include "cli/NotDrawn.h"

#include <algorithm>
#include <tuple>

#include "cli/Comps.h"

namespace headless::cli {

namespace {

// One of the two versions, seen from the other.
class Version {
 public:
    Version(const model::Project& project, const model::Project& other)
        : project_(project),
          other_(other),
          unseen_(project),
          sameAround_(project.root().shell == other.root().shell),
          samePictures_(project.samePictures(other)) {
        forEachComp(other, [&](const model::Comp& comp) { others_[comp.assetId] = &comp; });
    }

    // `whole`: it has moved, with all that is in it.
    void lookAt(const model::Comp& comp, bool whole = false) {
        const auto [known, isNew] = seen_.try_emplace(&comp, whole);
        if (!isNew && (known->second || !whole)) {
            return;
        }
        known->second = whole;
        whole = whole || isOther(comp);
        std::set<const model::Layer*> counting;
        for (const model::LayerPtr& layer : comp.layers) {
            if (whole || hasMoved(*layer) || showsChanged(*layer)) {
                counting.insert(layer.get());
            }
        }
        const std::set<const model::Layer*> changed = counting;
        for (const auto& [cut, matte] : unseen_.mattesIn(comp)) {
            if (changed.contains(cut) || changed.contains(matte)) {
                counting.insert({cut, matte});
            }
        }
        for (const sight::Unseen& unseen : unseen_.in(comp)) {
            const model::Layer* layer = project_.layer(unseen.layer);
            // An expression may read whatever has changed here.
            const bool reaches =
                (layer == nullptr || unseen.kind == sight::Kind::Expressions) && !counting.empty();
            const bool isOtherPicture = unseen.kind == sight::Kind::Images && !samePictures_;
            if (counting.contains(layer) || reaches || isOtherPicture) {
                add(comp, unseen);
            }
        }
        for (const model::LayerPtr& layer : comp.layers) {
            if (const model::Comp* shown = compShownBy(*layer)) {
                const bool onlyShows = !whole && !hasMoved(*layer) && showsChanged(*layer);
                lookAt(*shown, counting.contains(layer.get()) && !onlyShows);
            }
        }
    }

    std::map<std::tuple<std::string, std::size_t, std::string>, Named> take() { return std::move(found_); }

 private:
    const model::Comp* otherOf(const model::Comp& comp) const {
        const auto found = others_.find(comp.assetId);
        return found == others_.end() ? nullptr : found->second;
    }

    // Its frame, or what it says besides its layers.
    bool isOther(const model::Comp& comp) const {
        const model::Comp* other = otherOf(comp);
        return !sameAround_ || other == nullptr || other->item->size != comp.item->size ||
               other->shell != comp.shell;
    }

    bool differs(const model::Layer& layer) const {
        const model::Comp* other = otherOf(*layer.comp);
        const std::size_t place = project_.indexOf(layer);
        return other == nullptr || place >= other->layers.size() ||
               !sameLayer(project_, layer, other_, *other->layers[place]);
    }

    // It differs, or a parent does.
    bool hasMoved(const model::Layer& layer) {
        std::vector<const model::Layer*> chain;
        const model::Layer* next = &layer;
        while (next != nullptr && !moved_.contains(next)) {
            chain.push_back(next);
            next = next->parent;
        }
        bool moved = next != nullptr && moved_[next];
        for (; !chain.empty(); chain.pop_back()) {
            moved = moved || differs(*chain.back());
            moved_[chain.back()] = moved;
        }
        return moved;
    }

    bool showsChanged(const model::Layer& layer) {
        const model::Comp* shown = compShownBy(layer);
        return shown != nullptr && hasChanged(*shown);
    }

    bool hasChanged(const model::Comp& comp) {
        const auto [known, isNew] = changed_.try_emplace(&comp, false);
        if (isNew) {
            const bool changed =
                isOther(comp) || otherOf(comp)->layers.size() != comp.layers.size() ||
                std::any_of(comp.layers.begin(), comp.layers.end(), [&](const model::LayerPtr& layer) {
                    return hasMoved(*layer) || showsChanged(*layer);
                });
            changed_[&comp] = changed;
            return changed;
        }
        return known->second;
    }

    void add(const model::Comp& comp, const sight::Unseen& unseen) {
        const model::Layer* layer = project_.layer(unseen.layer);
        const std::size_t place = layer == nullptr ? comp.layers.size() : project_.indexOf(*layer);
        found_.try_emplace({comp.assetId, place, unseen.code}, unseen_.named(comp, unseen));
    }

    const model::Project& project_;
    const model::Project& other_;
    Unseen unseen_;
    std::map<std::string, const model::Comp*> others_;
    bool sameAround_, samePictures_;
    std::map<const model::Comp*, bool> seen_;  // whether as a whole
    std::map<const model::Comp*, bool> changed_;
    std::map<const model::Layer*, bool> moved_;
    std::map<std::tuple<std::string, std::size_t, std::string>, Named>
        found_;  // by composition, place and code
};

}  // namespace

std::vector<Named> notDrawnBetween(const model::Project& before, const model::Project& after,
                                   const std::vector<std::string>& compared) {
    Version first(before, after);
    Version second(after, before);
    for (const std::string& id : compared) {
        first.lookAt(*compById(before, id));
        second.lookAt(*compById(after, id));
    }
    auto found = first.take();
    found.merge(second.take());
    std::vector<Named> list;
    for (auto& [place, named] : found) {
        list.push_back(std::move(named));
    }
    return list;
}

bool sameLayer(const model::Project& before, const model::Layer& a, const model::Project& after,
               const model::Layer& b) {
    return (!a.touched && !b.touched && !a.slotted.any && a.text == b.text) ||
           before.layerJson(a) == after.layerJson(b);
}

}  // namespace headless::cli
