// One worker process that draws a Lottie document: the documents are other people's files, and whatever they
// do to the renderer must stay outside.

#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "render/Service.h"
#include "render/SharedMemory.h"

namespace headless::render {

// The worker refused the document, died, hung or outgrew its limits. The message says which, in words that
// follow "cannot render ...: ".
struct RenderError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Limits {
    // Processor time of the worker for one frame with the document before it. What else the machine does
    // meanwhile does not count.
    std::chrono::milliseconds frameTime{20'000};
    std::uint64_t memoryBytes = 4ull << 30;           // of the worker; the renderer in it has at most 2 GiB
    std::uint64_t picturePixels = 30'000ull * 8'000;  // largest picture that is asked for
    std::map<std::string, std::string> fonts{};       // files, by the names that documents call them by
};

// For those that are made without limits of their own. The program's options set it before there is one.
Limits& usualLimits();

class Renderer {
 public:
    explicit Renderer(Limits limits = usualLimits(), Processors processors = Processors::All);
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    // Hands over a document whose pictures are inside; it stays until the next call. Starts the worker when
    // there is none. Whether it can be drawn is known when its first frame is finished. Throws RenderError.
    void prepare(const std::string& document);
    // Has the worker draw a frame of the prepared document and does not wait for it. Throws RenderError.
    void start(const FrameRequest& wanted);
    // Waits for the frame that was started: its pixels, which stay as they are while somebody holds them.
    // Throws RenderError; then the next prepare() starts a new worker.
    std::shared_ptr<std::byte> finish();

 private:
    struct Worker;
    template <class Do>
    void guarded(Do&& action);

    std::unique_ptr<Worker> worker_;
    Limits limits_;
    Processors processors_;
    std::shared_ptr<SharedMemory::Part> started_;
};

}  // namespace headless::render
