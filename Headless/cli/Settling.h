// What the plug-in leaves as it is, and what still has to move with a cropped composition.
//
// The plug-in corrects each layer that shows the composition, and nothing that hangs on such a layer: its
// children live in its space, whose origin has moved. And of an odd size it loses half a pixel. Both are put
// right here, inside the command's own undo step.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/Project.h"

namespace headless::cli {

// How often a command crops.
enum class Runs {
    Once,
    Twice,     // to the content both times
    Expanded,  // to an enlarged frame, then to the content
};

class Settling {
 public:
    // Remembers where everything is before the crop.
    explicit Settling(const model::Project& project);

    // After it. Returns a line for each thing done.
    std::vector<std::string> settle(model::Project& project, Runs runs) const;
    // The composition's top left corner as it is now, in its pixels of before, seen from those who show it.
    // Nothing where no layer did then and does now.
    std::optional<model::Vec3> cornerOf(const model::Project& project, const model::Item& item) const;

 private:
    struct Use {
        model::Size sourceSize;
        model::Vec3 anchor;
    };
    std::map<model::LayerId, Use> uses_;
};

}  // namespace headless::cli
