// Frames of one document. Where they are asked for in sequence and there is a second processor, a second worker
// draws the next one meanwhile.

#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "render/Renderer.h"

namespace headless::render {

class Frames {
 public:
    // Makes the text for Renderer::prepare(), once for each worker.
    using MakeDocument = std::function<std::string()>;

    explicit Frames(Limits limits = {}, int workers = usualWorkers());

    // Forgets the document before, and whatever is being drawn of it. `document` must stay callable until the
    // next call; of its frames only the first `frameCount` are drawn ahead.
    void prepare(MakeDocument document, int frameCount);
    // As Renderer draws it. The pixels stay until the next call. Throws RenderError if this very frame cannot
    // be drawn, and whatever `document` throws.
    PictureView frame(int frame, int width, int height);

 private:
    struct Wanted {
        int frame = 0, width = 0, height = 0;
        bool operator==(const Wanted&) const = default;
    };
    struct Place {
        explicit Place(Limits limits) : renderer(limits) {}
        Renderer renderer;
        bool prepared = false;
        std::optional<Wanted> started;
    };

    static int usualWorkers();
    Place& placeFor(const Wanted& wanted);
    void start(Place& place, const Wanted& wanted);
    void drawAhead(Place& place, const Wanted& wanted);

    std::array<Place, 2> places_;
    int workers_;
    MakeDocument document_;
    int frameCount_ = 0;
    std::optional<Wanted> last_;
};

}  // namespace headless::render
