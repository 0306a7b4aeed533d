#include "render/Frames.h"

#include <exception>
#include <thread>
#include <utility>

namespace headless::render {

Frames::Frames(Limits limits, int workers) : places_{Place(limits), Place(limits)}, workers_(workers) {}

int Frames::usualWorkers() {
    return std::thread::hardware_concurrency() > 1 ? 2 : 1;
}

void Frames::prepare(MakeDocument document, int frameCount) {
    document_ = std::move(document);
    frameCount_ = frameCount;
    last_.reset();
    for (Place& place : places_) place.prepared = false;
}

PictureView Frames::frame(int frame, int width, int height) {
    const Wanted wanted{frame, width, height};
    Place& place = placeFor(wanted);
    if (place.started != wanted) start(place, wanted);
    const int step = last_ && last_->width == width && last_->height == height ? frame - last_->frame : 0;
    last_ = wanted;
    const Wanted next{frame + step, width, height};
    if (workers_ > 1 && step > 0 && next.frame < frameCount_) {
        drawAhead(&place == &places_[0] ? places_[1] : places_[0], next);
    }
    place.started.reset();
    place.prepared = false;  // unless it turns out well
    const PictureView result = place.renderer.finish();
    place.prepared = true;
    return result;
}

// The one that draws it already, else one that has nothing to do, else one whose document is gone anyway.
Frames::Place& Frames::placeFor(const Wanted& wanted) {
    const auto rank = [&](const Place& place) {
        if (!place.prepared) return 2;
        return place.started == wanted ? 0 : !place.started ? 1 : 3;
    };
    return rank(places_[1]) < rank(places_[0]) ? places_[1] : places_[0];
}

void Frames::start(Place& place, const Wanted& wanted) {
    // A worker that is busy with something else is not waited for, but replaced.
    if (!place.prepared || place.started) {
        place.started.reset();
        place.prepared = false;
        place.renderer.prepare(document_());
        place.prepared = true;
    }
    place.renderer.start(wanted.frame, wanted.width, wanted.height);
    place.started = wanted;
}

void Frames::drawAhead(Place& place, const Wanted& wanted) {
    if (place.prepared && place.started == wanted) return;
    try {
        start(place, wanted);
    } catch (const std::exception&) {
        // It counts when the frame is asked for.
        place.prepared = false;
    }
}

}  // namespace headless::render
