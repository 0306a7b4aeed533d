// One worker process that draws a Lottie document: the documents are other people's files, and whatever they
// do to the renderer must stay outside.

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace headless::render {

// Premultiplied, one 32-bit word a pixel (blue in the lowest byte, alpha in the highest), rows without
// gaps, top row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    bool operator==(const Picture&) const = default;
};

// The same in somebody else's memory.
struct PictureView {
    PictureView() = default;
    PictureView(int pictureWidth, int pictureHeight, std::span<const std::uint32_t> itsPixels)
        : width(pictureWidth), height(pictureHeight), pixels(itsPixels) {}
    PictureView(const Picture& picture) : PictureView(picture.width, picture.height, picture.pixels) {}

    Picture copy() const { return {width, height, {pixels.begin(), pixels.end()}}; }

    int width = 0;
    int height = 0;
    std::span<const std::uint32_t> pixels;
};

// The worker refused the document, died, hung or outgrew its limits. The message says which, in words that
// follow "cannot render ...: ".
struct RenderError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Limits {
    std::chrono::milliseconds frameTime{20'000};      // for one frame or one prepared document
    std::uint64_t memoryBytes = 4ull << 30;           // address space of the worker
    std::uint64_t picturePixels = 30'000ull * 8'000;  // largest picture that is asked for
};

class Renderer {
 public:
    explicit Renderer(Limits limits = {});
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    // Hands over a document that normalise() made; it stays until the next call. Starts the worker when there
    // is none. Whether it can be drawn is known when its first frame is finished. Throws RenderError.
    void prepare(const std::string& document);
    // Has the worker draw frame `frame` (from 0 = the document's in point) of the prepared document, to fill
    // width x height, and does not wait for it. Throws RenderError.
    void start(int frame, int width, int height);
    // Waits for the frame that was started. Its pixels stay until the next call. Throws RenderError; then the
    // next prepare() starts a new worker.
    PictureView finish();

 private:
    struct Worker;
    template <class Do>
    void guarded(Do&& action);

    std::unique_ptr<Worker> worker_;
    Limits limits_;
    PictureView started_;
};

}  // namespace headless::render
