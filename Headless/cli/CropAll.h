// The crop of a whole animation: every precomp that is larger than what it ever shows, innermost first, each by
// the plug-in's duration crop, each looked at afterwards and put back where it does not look the same.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/Area.h"
#include "cli/Comparison.h"
#include "cli/Warnings.h"
#include "cli/Workplace.h"

namespace headless::cli {

struct CropAllRequest {
    int padding = 2;           // pixels around the content: what is too faint to be found lies there
    double leastSaving = 5;    // percent of a composition's area below which it is left
    bool leaveWarned = false;  // leave compositions that there is a warning about
    bool plugInOnly = false;   // nothing but what the plug-in does
    int mostFrames = usualFrames;
};

enum class Outcome {
    Cropped,
    Left,     // not worth it, or nothing to crop
    PutBack,  // it would have looked different, or the crop failed
};

struct TriedComp {
    std::string assetId;
    std::string name;
    Outcome outcome = Outcome::Left;
    std::string reason;                 // why not; empty where it was cropped
    model::Size before, after;          // the same unless it was cropped
    model::Vec3 corner;                 // cropped: top left of the new frame in the old one's pixels
    int uses = 0;                       // layers that show it
    int padding = 0;                    // cropped: that was left
    bool paddingGivenUp = false;        // cropped: less than asked for, as it showed what the frame cuts off
    std::optional<ComparedComp> worst;  // of those that show it, compared before and after this crop
    std::vector<std::string> settled;   // cropped: what was put right besides, a line each
};

struct CropAllResult {
    std::vector<Warning> warnings;  // before anything was cropped
    std::vector<TriedComp> comps;   // innermost first
    Comparison comparison;          // of the whole result with the project as it was opened

    int count(Outcome outcome) const;
};

// Of the precomps that something shows.
Area areaOf(const std::vector<TriedComp>& comps);

// Crops what is open. `onWarnings` is called before the first crop. Throws Stop when the person cancelled;
// the project is then not to be written.
CropAllResult cropAll(Workplace& workplace, const CropAllRequest& request,
                      const std::function<void(const std::vector<Warning>&)>& onWarnings);

}  // namespace headless::cli
