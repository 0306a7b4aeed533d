// One crop, done with the hands of an artist: open, select, move the time slider, open the menu, choose.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "session/Session.h"

namespace headless::cli {

struct CropRequest {
    std::string comp;                 // empty: the root
    std::vector<std::string> layers;  // none: the composition as a whole
    std::optional<int> frame;         // from the composition's first; neither: its first
    std::optional<double> seconds;
    int resolution = 1;
    // Preferences; what is not said stays as the store has it.
    std::optional<int> padding, expand;
    bool includeMasks = false;
};

struct CroppedComp {
    std::string name;
    model::Size before, after;
    int uses = 0;  // layers that show it, all of them corrected
};

struct CropResult {
    std::vector<CroppedComp> resized;
    std::vector<CroppedComp> unchanged;  // of those that were to be cropped
    std::vector<CroppedComp> added;      // pre-composed on the way
};

// Runs the plug-in's command on the session's project. `answerer` is the session's. Throws Stop, and the
// project is then not to be written: when there is nothing to crop, when a dialog got no answer, or when the
// plug-in failed.
CropResult crop(Session& session, const ui::Answerer& answerer, const CropRequest& request);

}  // namespace headless::cli
