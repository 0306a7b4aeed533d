// The crop of a whole animation: every precomp that is larger than what it ever shows, innermost first, each by
// the plug-in's duration crop, each looked at afterwards and put back where it does not look the same.

#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/Area.h"
#include "cli/Comparison.h"
#include "cli/Concerns.h"
#include "cli/Workplace.h"

namespace headless::cli {

struct CropAllRequest {
    int padding = 2;               // pixels around the content: what is too faint to be found lies there
    double leastSaving = 5;        // percent of a composition's area below which it is left
    std::set<std::string> unseen;  // kinds of what is not drawn that are no reason to leave a composition
    bool plugInOnly = false;       // nothing but what the plug-in does
    int mostFrames = usualFrames;
};

enum class Outcome {
    Cropped,
    Left,     // not worth it, nothing to crop, or nobody could look whether it is right
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
    std::vector<Concern> notDrawn;      // that the crop touches, of each code the first
};

struct CropAllResult {
    std::vector<Concern> warnings;  // about what was cropped though it is not drawn
    std::vector<TriedComp> comps;   // innermost first
    Comparison comparison;          // of the whole result with the project as it was opened

    int count(Outcome outcome) const;
};

// Of the precomps that something shows.
Area areaOf(const std::vector<TriedComp>& comps);

// Crops what is open. Throws Stop when the person cancelled; the project is then not to be written.
CropAllResult cropAll(Workplace& workplace, const CropAllRequest& request);

}  // namespace headless::cli
