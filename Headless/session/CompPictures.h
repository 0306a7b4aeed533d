// Pictures of a project's compositions, drawn by the renderer from the project as it is at that moment.

#pragma once

#include <string>

#include "model/Project.h"
#include "render/Frames.h"

namespace headless {

// A box in pixels; right and bottom are edges, not last indices.
struct Box {
    double left = 0, top = 0, right = 0, bottom = 0;
};

class CompPictures {
 public:
    explicit CompPictures(const model::Project& project) : project_(project) {}

    // Why no picture of this size is drawn; empty where one is. Several stand in memory at once.
    static std::string whyTooLarge(model::Size size);

    // `frame` counts from the composition's first. The picture is ceil(width / factorX) wide, and its first
    // pixel is the composition's top left corner. Outside the composition's time it is transparent. The pixels
    // stay until the next call. Throws render::RenderError, naming composition and frame.
    render::PictureView view(const model::Comp& comp, double frame, int factorX = 1, int factorY = 1);
    // The same as the host hands it to a plug-in.
    render::World world(const model::Comp& comp, double frame, int factorX, int factorY, render::Depth depth);
    // The picture, to keep.
    render::Picture picture(const model::Comp& comp, double frame, int factorX = 1, int factorY = 1) {
        return view(comp, frame, factorX, factorY).copy();
    }

    // What a layer's masks leave of its source, in source pixels, at a frame as the file counts them. Without
    // masks the whole source; feather is left out. Empty (all 0) when they leave nothing.
    Box maskedBounds(const model::Layer& layer, double fileFrame);

 private:
    // Frames and the key of the document they are of, so that it is prepared once for many frames.
    struct Prepared {
        render::Frames frames;
        std::string key;
    };

    // Calls `drawn(frames, frame, width, height)`, or `blank(width, height)` outside the composition's time.
    template <class Drawn, class Blank>
    auto at(const model::Comp& comp, double frame, int factorX, int factorY, Drawn&& drawn, Blank&& blank);

    const model::Project& project_;
    Prepared comps_, masks_;
    render::Picture nothing_;
};

}  // namespace headless
