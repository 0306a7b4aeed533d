// Pictures of a Lottie document, made in a worker process of the program's own: the documents are other
// people's files, and whatever they do to the renderer must stay outside.

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
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

    // Loads a document that normalise() made; it stays until the next call. Starts the worker when there is
    // none. Throws RenderError.
    void prepare(const std::string& document);
    // Frame `frame` (from 0 = the document's in point) of the prepared document, drawn to fill
    // width x height. Throws RenderError; the next prepare() starts a new worker.
    Picture frame(int frame, int width, int height);

 private:
    struct Worker;
    std::unique_ptr<Worker> worker_;
    Limits limits_;
};

}  // namespace headless::render
