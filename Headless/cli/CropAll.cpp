#include "cli/CropAll.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "cli/Comps.h"
#include "cli/Cropping.h"
#include "cli/Find.h"
#include "cli/Progress.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

// Everything that the composition shows, the innermost first, then the composition itself.
void addInnermostFirst(model::Comp& comp, std::set<const model::Comp*>& seen,
                       std::vector<model::Comp*>& order) {
    if (!seen.insert(&comp).second) {
        return;
    }
    for (const model::LayerPtr& layer : comp.layers) {
        if (model::Comp* shown = compShownBy(*layer)) {
            addInnermostFirst(*shown, seen, order);
        }
    }
    order.push_back(&comp);
}

std::vector<model::Comp*> innermostFirst(const model::Project& project) {
    std::set<const model::Comp*> seen;
    std::vector<model::Comp*> order;
    addInnermostFirst(project.root(), seen, order);
    order.pop_back();  // the root
    forEachComp(project, [&](model::Comp& comp) { addInnermostFirst(comp, seen, order); });
    return order;
}

std::string describe(const ComparedComp& compared) {
    const FrameDifference& worst = compared.worst;
    return counted(static_cast<std::int64_t>(worst.pixels), "pixel") + " of " + inQuotes(compared.name) +
           " would differ at frame " + std::to_string(worst.frame) + ", by up to " +
           std::to_string(worst.largest) + " of 255 at " + std::to_string(worst.at.x) + "," +
           std::to_string(worst.at.y);
}

const ComparedComp* worstOf(const Comparison& comparison) {
    const auto found = std::max_element(comparison.compared.begin(), comparison.compared.end(),
                                        [](const ComparedComp& a, const ComparedComp& b) {
                                            return std::pair(a.verdict, a.worst.largest) <
                                                   std::pair(b.verdict, b.worst.largest);
                                        });
    return found == comparison.compared.end() ? nullptr : &*found;
}

class WholeCrop {
 public:
    WholeCrop(Workplace& workplace, const CropAllRequest& request)
        : workplace_(workplace),
          project_(workplace.session().project()),
          request_(request),
          original_(project_.copy()),
          uses_(usesIn(project_)),
          concerns_(*original_) {}

    CropAllResult run() {
        const model::Item& root = *project_.root().item;  // which is looked at in the end
        if (const std::string reason = CompPictures::whyTooLarge(root.size); !reason.empty()) {
            throw Stop(ExitCode::BadInput, inQuotes(root.name) + ": " + reason);
        }
        const std::vector<model::Comp*> comps = innermostFirst(project_);
        std::int64_t frames = frameCount(project_.root());
        for (const model::Comp* comp : comps) {
            frames += framesFor(*comp);
        }
        requireFrames(frames, request_.mostFrames);
        Progress progress(workplace_.session(), static_cast<int>(comps.size()), static_cast<int>(frames));
        progress_ = &progress;
        for (model::Comp* comp : comps) {
            stepsBefore_.push_back(project_.history.done().size());
            result_.comps.push_back(tried(*comp));
            progress.compDone(static_cast<int>(framesFor(*comp)));
        }
        checkWhole();
        return std::move(result_);
    }

 private:
    // To crop it, and to look at those that show it.
    std::int64_t framesFor(const model::Comp& comp) const {
        const auto uses = uses_.find(comp.item);
        if (uses == uses_.end()) {
            return 0;
        }
        std::set<const model::Comp*> showing;
        for (const model::Layer* use : uses->second) {
            showing.insert(use->comp);
        }
        std::int64_t frames = frameCount(comp);
        for (const model::Comp* each : showing) {
            frames += frameCount(*each);
        }
        return frames;
    }

    TriedComp tried(model::Comp& comp) {
        workplace_.requireGoingOn();
        TriedComp entry;
        entry.assetId = comp.assetId;
        entry.name = comp.item->name;
        entry.before = entry.after = comp.item->size;
        const auto uses = uses_.find(comp.item);
        if (uses == uses_.end()) {
            entry.reason = "nothing shows it";
            return entry;
        }
        entry.uses = static_cast<int>(uses->second.size());
        entry.reason = CompPictures::whyTooLarge(comp.item->size);
        if (!entry.reason.empty()) {
            return entry;
        }
        const std::vector<Concern> concerns = concerns_.about(*compById(*original_, comp.assetId)->item);
        entry.reason = whyNotToTry(concerns, entry);
        if (!entry.reason.empty()) {
            return entry;
        }
        tryCrop(comp, entry);
        if (entry.outcome == Outcome::Cropped) {
            warn(concerns);
        }
        return entry;
    }

    // Empty where it can be cropped and looked at. What does not follow a crop is seen then.
    std::string whyNotToTry(const std::vector<Concern>& concerns, TriedComp& entry) const {
        std::string reason;
        std::set<std::string> codes;
        int others = 0;
        for (const Concern& concern : concerns) {
            const bool isUnseen = concern.weight == Concern::Weight::Unseen;
            if (isUnseen && codes.insert(concern.code).second) {
                entry.notDrawn.push_back(concern);
            }
            if (concern.weight == Concern::Weight::Forbids) {
                return sentence(concern);
            }
            if (isUnseen && !request_.unseen.contains(concern.kind)) {
                if (reason.empty()) {
                    reason = sentence(concern) + ", not drawn here";
                } else {
                    ++others;
                }
            }
        }
        return reason + (others > 0 ? ", and " + std::to_string(others) + " more such" : "");
    }

    void warn(const std::vector<Concern>& concerns) {
        for (const Concern& concern : concerns) {
            if (concern.weight == Concern::Weight::Unseen &&
                warned_.emplace(concern.comp, concern.layer, concern.code).second) {
                result_.warnings.push_back(concern);
            }
        }
    }

    void tryCrop(model::Comp& comp, TriedComp& entry) {
        const bool reachedOut = attempt(comp, request_.padding, entry);
        // What lies beyond the frame is cut off there; padding brings it to light.
        if (entry.outcome == Outcome::PutBack && reachedOut && request_.padding > 0) {
            TriedComp tighter = entry;
            attempt(comp, 0, tighter);
            if (tighter.outcome == Outcome::Cropped) {
                tighter.paddingGivenUp = true;
                entry = tighter;
            }
        }
    }

    // Whether the new frame reached over the old one.
    bool attempt(model::Comp& comp, int padding, TriedComp& entry) {
        const std::size_t stepsBefore = project_.history.done().size();
        const auto before = project_.copy();
        bool reachesOut = false;
        try {
            const CropResult cropped = crop(comp, padding);
            const auto self = std::find_if(cropped.resized.begin(), cropped.resized.end(),
                                           [&](const CroppedComp& each) { return each.item == comp.item->id; });
            entry.outcome = Outcome::Left;
            entry.reason = whyNotWorth(entry.before, comp.item->size, cropped.added);
            if (entry.reason.empty()) {  // so it is smaller, and among the resized
                reachesOut = self->reachesOut();
                entry.outcome = Outcome::PutBack;
                entry.reason = whyDifferent(*before, entry);
            }
            if (entry.reason.empty()) {
                entry.outcome = Outcome::Cropped;
                entry.after = comp.item->size;
                entry.corner = self->corner.value_or(model::Vec3{});
                entry.padding = padding;
                entry.settled = cropped.settled;
            }
        } catch (const NothingCropped& nothing) {
            entry.outcome = Outcome::Left;
            entry.reason = nothing.why;
        } catch (const Stop& stop) {
            if (stop.code == ExitCode::Cancelled) {
                throw;
            }
            entry.outcome = Outcome::PutBack;
            entry.reason = stop.what();
        } catch (const render::RenderError& error) {
            entry.outcome = Outcome::PutBack;
            entry.reason = error.what();
        }
        if (entry.outcome != Outcome::Cropped) {
            project_.history.rollBackTo(stepsBefore);
        }
        return reachesOut;
    }

    CropResult crop(model::Comp& comp, int padding) {
        CropRequest request;
        request.command = Command::Duration;
        request.padding = padding;
        request.plugInOnly = request_.plugInOnly;
        request.neverPrecompose = !workplace_.hasAnswer("3D Layers");  // it never pays
        workplace_.session().openComp(comp);
        workplace_.session().select(comp, {});
        return cli::crop(workplace_, comp, request);
    }

    // Empty where the crop pays.
    std::string whyNotWorth(model::Size before, model::Size after,
                            const std::vector<CroppedComp>& added) const {
        Area area;
        area.add(before, after);
        if (area.saved() <= 0) {
            return "already as small as its content";
        }
        for (const CroppedComp& each : added) {
            area.add({}, each.after);
        }
        if (area.saved() <= 0) {
            return "pre-composed it would take " + grouped(-area.saved()) + " pixels more";
        }
        return area.savedPercent() < request_.leastSaving
                   ? "would save only " + shortNumber(std::floor(area.savedPercent() * 10) / 10) + " %"
                   : "";
    }

    // Empty where those that show it look the same.
    std::string whyDifferent(const model::Project& before, TriedComp& entry) {
        const Comparison comparison = compared(before, true);
        if (const ComparedComp* worst = worstOf(comparison)) {
            entry.worst = *worst;
        }
        return comparison.verdict() == Verdict::Shifted ? describe(*entry.worst) : "";
    }

    Comparison compared(const model::Project& before, bool onlyPictures = false) {
        ComparisonRequest request;
        request.onlyPictures = onlyPictures;
        request.onFrame = [this] {
            progress_->frameDone();
            workplace_.requireGoingOn();
        };
        return compare(before, project_, request);
    }

    // Crops that look right one by one may not do so together: then the last ones go.
    void checkWhole() {
        workplace_.requireGoingOn();
        result_.comparison = compared(*original_);
        for (std::size_t i = result_.comps.size();
             i-- > 0 && result_.comparison.verdict() == Verdict::Shifted;) {
            TriedComp& comp = result_.comps[i];
            if (comp.outcome != Outcome::Cropped) {
                continue;
            }
            project_.history.rollBackTo(stepsBefore_[i]);
            comp.outcome = Outcome::PutBack;
            comp.reason = "together with the others, " + describe(*worstOf(result_.comparison));
            comp.after = comp.before;
            comp.settled.clear();
            result_.comparison = compared(*original_);
        }
    }

    Workplace& workplace_;
    model::Project& project_;
    const CropAllRequest& request_;
    std::unique_ptr<model::Project> original_;
    Uses uses_;
    Concerns concerns_;  // with the crop of a composition as the file has it
    std::set<std::tuple<std::string, std::string, std::string>> warned_;  // composition, layer, code
    Progress* progress_ = nullptr;
    std::vector<std::size_t> stepsBefore_;  // in the history, for each composition that was tried
    CropAllResult result_;
};

}  // namespace

int CropAllResult::count(Outcome outcome) const {
    return static_cast<int>(std::count_if(comps.begin(), comps.end(),
                                          [&](const TriedComp& comp) { return comp.outcome == outcome; }));
}

Area areaOf(const std::vector<TriedComp>& comps) {
    Area area;
    for (const TriedComp& comp : comps) {
        if (comp.uses > 0) {
            area.add(comp.before, comp.after);
        }
    }
    return area;
}

CropAllResult cropAll(Workplace& workplace, const CropAllRequest& request) {
    return WholeCrop(workplace, request).run();
}

}  // namespace headless::cli
