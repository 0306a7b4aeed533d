#include "render/Frames.h"

#include <sched.h>

#include <exception>
#include <utility>

namespace headless::render {
namespace {

constexpr std::size_t largestKept = 4 << 20;  // of a document's text, bytes

}  // namespace

Frames::Frames(Limits limits, int workers)
    : places_{Place(limits, workers > 1 ? Processors::Even : Processors::All), Place(limits, Processors::Odd)},
      workers_(workers) {}

// Of the processors, only those that this process may use.
int Frames::usualWorkers() {
    cpu_set_t allowed;
    return ::sched_getaffinity(0, sizeof allowed, &allowed) == 0 && CPU_COUNT(&allowed) > 1 ? 2 : 1;
}

void Frames::prepare(MakeDocument document, int frameCount) {
    document_ = std::move(document);
    frameCount_ = frameCount;
    text_.clear();
    last_.reset();
    for (Place& place : places_) place.prepared = false;
}

PictureView Frames::frame(double frame, int width, int height) {
    const auto pixels = drawn({frame, width, height, {}});
    return {width,
            height,
            {reinterpret_cast<const std::uint32_t*>(pixels.get()),
             static_cast<std::size_t>(width) * static_cast<std::size_t>(height)}};
}

World Frames::world(double frame, const WorldShape& shape) {
    return {shape, drawn({frame, shape.width, shape.height, shape.depth})};
}

std::shared_ptr<std::byte> Frames::drawn(const FrameRequest& wanted) {
    Place& place = placeFor(wanted);
    if (place.started != wanted) start(place, wanted);
    FrameRequest next = last_.value_or(wanted);
    const double step = wanted.frame - next.frame;
    next.frame = wanted.frame;
    const bool inSequence = step > 0 && next == wanted;
    next.frame += step;
    last_ = wanted;
    if (workers_ > 1 && inSequence && next.frame < frameCount_) {
        drawAhead(&place == &places_[0] ? places_[1] : places_[0], next);
    }
    place.started.reset();
    place.prepared = false;  // unless it turns out well
    auto result = place.renderer.finish();
    place.prepared = true;
    return result;
}

// The one that draws it already, else one that has nothing to do, else one whose document is gone anyway.
Frames::Place& Frames::placeFor(const FrameRequest& wanted) {
    const auto rank = [&](const Place& place) {
        if (!place.prepared) return 2;
        return place.started == wanted ? 0 : !place.started ? 1 : 3;
    };
    return rank(places_[1]) < rank(places_[0]) ? places_[1] : places_[0];
}

void Frames::start(Place& place, const FrameRequest& wanted) {
    // A worker that is busy with something else is not waited for, but replaced.
    if (!place.prepared || place.started) {
        place.started.reset();
        place.prepared = false;
        if (text_.empty()) text_ = document_();
        place.renderer.prepare(text_);
        if (text_.size() > largestKept) std::string().swap(text_);  // assigning would keep its memory
        place.prepared = true;
    }
    place.renderer.start(wanted);
    place.started = wanted;
}

void Frames::drawAhead(Place& place, const FrameRequest& wanted) {
    if (place.prepared && place.started == wanted) return;
    try {
        start(place, wanted);
    } catch (const std::exception&) {
        // It counts when the frame is asked for.
        place.prepared = false;
    }
}

}  // namespace headless::render
