#include "cli/CropAll.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "cli/Cropping.h"
#include "cli/Find.h"
#include "cli/Progress.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

std::int64_t pixels(model::Size size) {
    return std::int64_t{size.width} * size.height;
}

double savedPercent(std::int64_t before, std::int64_t after) {
    return before == 0 ? 0 : 100.0 * static_cast<double>(before - after) / static_cast<double>(before);
}

using Users = std::map<const model::Item*, std::vector<const model::Layer*>>;

Users usersIn(const model::Project& project) {
    Users users;
    for (const model::ItemPtr& item : project.items) {
        if (item->comp) {
            for (const model::LayerPtr& layer : item->comp->layers) {
                if (layer->source != nullptr && layer->source->comp) {
                    users[layer->source].push_back(layer.get());
                }
            }
        }
    }
    return users;
}

// Everything that the composition shows, the innermost first, then the composition itself.
void addInnermostFirst(model::Comp& comp, std::set<const model::Comp*>& seen,
                       std::vector<model::Comp*>& order) {
    if (!seen.insert(&comp).second) {
        return;
    }
    for (const model::LayerPtr& layer : comp.layers) {
        if (layer->source != nullptr && layer->source->comp) {
            addInnermostFirst(*layer->source->comp, seen, order);
        }
    }
    order.push_back(&comp);
}

std::vector<model::Comp*> innermostFirst(const model::Project& project) {
    std::set<const model::Comp*> seen;
    std::vector<model::Comp*> order;
    addInnermostFirst(project.root(), seen, order);
    order.pop_back();  // the root
    for (const model::ItemPtr& item : project.items) {
        if (item->comp) {
            addInnermostFirst(*item->comp, seen, order);
        }
    }
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
          users_(usersIn(project_)) {}

    CropAllResult run(const std::function<void(const std::vector<Warning>&)>& onWarnings) {
        const std::vector<model::Comp*> comps = innermostFirst(project_);
        std::vector<const model::Item*> items;
        int frames = frameCount(project_.root());
        for (const model::Comp* comp : comps) {
            items.push_back(comp->item);
            frames += framesFor(*comp);
        }
        result_.warnings = warningsFor(project_, items);
        onWarnings(result_.warnings);
        Progress progress(workplace_.session(), static_cast<int>(comps.size()), frames);
        progress_ = &progress;
        for (model::Comp* comp : comps) {
            stepsBefore_.push_back(project_.history.done().size());
            result_.comps.push_back(tried(*comp));
            progress.compDone(framesFor(*comp));
        }
        checkWhole();
        return std::move(result_);
    }

 private:
    // To crop it, and to look at those that show it.
    int framesFor(const model::Comp& comp) const {
        int frames = 0;
        if (const auto found = users_.find(comp.item); found != users_.end()) {
            std::set<const model::Comp*> showing;
            for (const model::Layer* use : found->second) {
                showing.insert(use->comp);
            }
            frames = frameCount(comp);
            for (const model::Comp* each : showing) {
                frames += frameCount(*each);
            }
        }
        return frames;
    }

    void requireGoingOn() const {
        if (progress_->interrupted()) {
            throw Stop(ExitCode::Cancelled, "cancelled; nothing was written");
        }
    }

    TriedComp tried(model::Comp& comp) {
        requireGoingOn();
        TriedComp entry;
        entry.assetId = comp.assetId;
        entry.name = comp.item->name;
        entry.before = entry.after = comp.item->size;
        const auto users = users_.find(comp.item);
        if (users == users_.end()) {
            entry.reason = "nothing shows it";
            return entry;
        }
        entry.uses = static_cast<int>(users->second.size());
        if (request_.leaveWarned && !warningsFor(project_, {comp.item}).empty()) {
            entry.reason = "there are warnings about it";
            return entry;
        }
        const bool reachedOut = attempt(comp, request_.padding, entry);
        // What lies beyond the frame is cut off there; padding brings it to light.
        if (entry.outcome == Outcome::PutBack && reachedOut && request_.padding > 0) {
            TriedComp tighter = entry;
            attempt(comp, 0, tighter);
            if (tighter.outcome == Outcome::Cropped) {
                tighter.paddingGivenUp = true;
                return tighter;
            }
        }
        return entry;
    }

    // Whether the new frame reached over the old one.
    bool attempt(model::Comp& comp, int padding, TriedComp& entry) {
        const std::size_t stepsBefore = project_.history.done().size();
        const auto before = project_.copy();
        const auto giveUp = [&](Outcome outcome, std::string reason) {
            project_.history.rollBackTo(stepsBefore);
            entry.outcome = outcome;
            entry.reason = std::move(reason);
        };
        CropRequest crop;
        crop.command = Command::Duration;
        crop.padding = padding;
        crop.plugInOnly = request_.plugInOnly;
        bool reachesOut = false;
        try {
            workplace_.session().openComp(comp);
            workplace_.session().select(comp, {});
            const CropResult cropped = cli::crop(workplace_, comp, crop, *progress_);
            const auto self = std::find_if(cropped.resized.begin(), cropped.resized.end(),
                                           [&](const CroppedComp& each) { return each.name == entry.name; });
            const std::int64_t saved = pixels(entry.before) - pixels(comp.item->size);
            if (self == cropped.resized.end() || saved <= 0) {
                giveUp(Outcome::Left, "already as small as its content");
                return false;
            }
            const double percent = savedPercent(pixels(entry.before), pixels(comp.item->size));
            if (percent < request_.leastSaving) {
                giveUp(Outcome::Left, "would save only " + shortNumber(std::floor(percent * 10) / 10) + " %");
                return false;
            }
            reachesOut = self->reachesOut();
            ComparisonRequest looking;
            looking.onFrame = [this] {
                progress_->frameDone();
                requireGoingOn();
            };
            const Comparison comparison = compare(*before, project_, looking);
            if (const ComparedComp* worst = worstOf(comparison)) {
                entry.worst = *worst;
            }
            if (comparison.verdict() == Verdict::Shifted) {
                giveUp(Outcome::PutBack, describe(*entry.worst));
                return reachesOut;
            }
            entry.outcome = Outcome::Cropped;
            entry.reason.clear();
            entry.after = comp.item->size;
            entry.corner = self->corner.value_or(model::Vec3{});
            entry.padding = padding;
            entry.settled = cropped.settled;
        } catch (const NothingCropped& nothing) {
            giveUp(Outcome::Left, nothing.why);
        } catch (const Stop& stop) {
            if (stop.code == ExitCode::Cancelled) {
                throw;
            }
            giveUp(Outcome::PutBack, stop.what());
        } catch (const render::RenderError& error) {
            giveUp(Outcome::PutBack, printable(error.what()));
        }
        return reachesOut;
    }

    // Crops that look right one by one may not do so together: then the last ones go.
    void checkWhole() {
        const auto lookAt = [this] {
            requireGoingOn();
            ComparisonRequest looking;
            looking.onFrame = [this] { progress_->frameDone(); };
            result_.comparison = compare(*original_, project_, looking);
        };
        lookAt();
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
            lookAt();
        }
    }

    Workplace& workplace_;
    model::Project& project_;
    const CropAllRequest& request_;
    std::unique_ptr<model::Project> original_;
    Users users_;
    Progress* progress_ = nullptr;
    std::vector<std::size_t> stepsBefore_;  // in the history, for each composition that was tried
    CropAllResult result_;
};

}  // namespace

int CropAllResult::count(Outcome outcome) const {
    return static_cast<int>(std::count_if(comps.begin(), comps.end(),
                                          [&](const TriedComp& comp) { return comp.outcome == outcome; }));
}

double Area::savedPercent() const {
    return cli::savedPercent(before, after);
}

Area areaOf(const std::vector<TriedComp>& comps) {
    Area area;
    for (const TriedComp& comp : comps) {
        if (comp.uses > 0) {
            area.before += pixels(comp.before);
            area.after += pixels(comp.after);
        }
    }
    return area;
}

CropAllResult cropAll(Workplace& workplace, const CropAllRequest& request,
                      const std::function<void(const std::vector<Warning>&)>& onWarnings) {
    return WholeCrop(workplace, request).run(onWarnings);
}

}  // namespace headless::cli
