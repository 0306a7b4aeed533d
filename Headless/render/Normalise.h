// Turns a Lottie document into the one the renderer draws right.
//
// The project keeps a file as it is; the renderer has quirks. Each picture is made from a rewritten copy in
// which every construct that the renderer gets wrong is spelled in a way that it gets right.

#pragma once

#include <string>

#include "model/Document.h"

namespace headless::render {

// The part of the picture plane that is drawn, and when.
struct Scene {
    int width = 0;  // of the composition, its pixels
    int height = 0;
    int canvasWidth = 0;  // of the picture, at least the composition's: it lies in the top left corner
    int canvasHeight = 0;
    double firstFrame = 0;  // the shown range in the composition's frames, may begin below 0
    double endFrame = 0;    // one past the last
};

// Returns the text for Renderer::prepare(); its frame 0 is scene.firstFrame. The composition is clipped to its
// size. `document` has been checked.
std::string normalise(const model::Document& document, const Scene& scene);

}  // namespace headless::render
