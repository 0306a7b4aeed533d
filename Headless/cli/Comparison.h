// Whether two versions of a project look the same: what changed, and what that did to the pictures.
//
// Compositions are matched by asset id, the root with the root. What is compared is what shows a changed
// composition without having changed its own size. A composition that was resized and that only resized ones
// show is laid over its old picture: where the layers that show it say, else by the visible box at the first
// frame that has one. The root is what is on screen: resized, it is shifted whatever its content does.

#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "cli/NotDrawn.h"
#include "model/Project.h"
#include "render/Difference.h"

namespace headless::cli {

enum class Verdict {
    Equal,      // no pixel differs by more than 2 of 255
    EdgeNoise,  // what an edge drawn at another fraction of a pixel leaves; see render::NoiseLimits
    Shifted,
};

struct ChangedComp {
    std::string assetId;  // empty: the root
    std::string name;
    std::optional<model::Size> before, after;  // nothing where it does not exist
};

struct FrameDifference {
    int frame = 0;  // from the composition's first
    int largest = 0;
    std::size_t pixels = 0;  // that differ by more than 2
    render::PixelPoint at;   // a pixel that differs most, in the first project's composition
};

struct ComparedComp {
    std::string assetId;
    std::string name;  // in the first project
    Verdict verdict = Verdict::Equal;
    int frames = 0;                            // that were compared
    FrameDifference worst;                     // of the frames that decided the verdict
    std::optional<render::PixelPoint> offset;  // resized: what was added to lay the second over the first
    bool otherTimes = false;  // its frames or their rate are not the same in both, so none was compared
};

struct Comparison {
    std::vector<ChangedComp> changed;
    std::vector<ComparedComp> compared;
    std::vector<Named> notDrawn;  // of what differs: nobody has seen whether it has shifted

    Verdict verdict() const;  // the worst, of what is drawn
};

struct ComparisonRequest {
    std::optional<int> frame;  // of each composition that has it; else all frames
    std::string comp;          // only this one, changed or not, by name or asset id in the first project
    std::function<void()> onFrame = {};  // called after each frame
    int mostFrames = std::numeric_limits<int>::max();
    bool onlyPictures = false;  // leave `notDrawn` empty
};

// Throws Stop where no composition has the frame asked for or there are too many, and render::RenderError.
Comparison compare(const model::Project& before, const model::Project& after,
                   const ComparisonRequest& request = {});

}  // namespace headless::cli
