// Frames of one document. Where they are asked for in sequence and there is a second processor, a second worker
// draws the next one meanwhile.

#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "render/Picture.h"
#include "render/Renderer.h"

namespace headless::render {

class Frames {
 public:
    // Makes the text for Renderer::prepare(); a large one is made for each worker anew.
    using MakeDocument = std::function<std::string()>;

    explicit Frames(Limits limits = usualLimits(), int workers = usualWorkers());

    // Forgets the document before, and whatever is being drawn of it. `document` must stay callable until the
    // next call; of its frames only the first `frameCount` are drawn ahead.
    void prepare(MakeDocument document, int frameCount);
    // As Renderer draws it. The pixels stay until the next call. Throws RenderError if this very frame cannot
    // be drawn, and whatever `document` throws.
    PictureView frame(double frame, int width, int height);
    // The same as the host hands it on.
    World world(double frame, const WorldShape& shape);

 private:
    struct Place {
        Place(Limits limits, Processors processors) : renderer(limits, processors) {}
        Renderer renderer;
        bool prepared = false;
        std::optional<FrameRequest> started;
    };

    static int usualWorkers();
    std::shared_ptr<std::byte> drawn(const FrameRequest& wanted);
    Place& placeFor(const FrameRequest& wanted);
    void start(Place& place, const FrameRequest& wanted);
    void drawAhead(Place& place, const FrameRequest& wanted);

    std::array<Place, 2> places_;
    int workers_;
    MakeDocument document_;
    std::string text_;  // the document, kept for the second worker unless it is large
    int frameCount_ = 0;
    std::optional<FrameRequest> last_;
};

}  // namespace headless::render
