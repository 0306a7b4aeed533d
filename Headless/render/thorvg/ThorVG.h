// The renderer: ThorVG, compiled from the WebAssembly file of its package, as native code with a memory of its
// own.
//
// Whatever a document does to it stays inside that memory, which is reserved as a whole: an address there that
// has no memory behind it ends the call, not the process. One instance, on one thread.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace headless::render {

// The module stopped and is of no more use. Says where it failed in the module's own words.
struct ModuleFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// It wants more memory than it is given. Of no more use either.
struct ModuleOutOfMemory : std::bad_alloc {};

class ThorVG {
 public:
    // Addresses that the module reserves beside the memory it really takes.
    static constexpr std::uint64_t reservedBytes = 8ull << 30;

    explicit ThorVG(std::uint64_t memoryBytes);
    ThorVG(const ThorVG&) = delete;
    ThorVG& operator=(const ThorVG&) = delete;
    ~ThorVG();

    // A font for text that names it, beside those that documents carry. False where it is none that can be
    // read.
    bool addFont(const std::string& name, std::string_view file);

    // The document that is drawn from now on. False where it cannot be read; then there is none.
    bool load(std::string_view document);

    // Pixels in a file of memory: words of premultiplied pixels, blue in the lowest byte. `offset` may be any.
    struct Target {
        int file = -1;
        std::uint64_t offset = 0;
        std::size_t rowBytes = 0;
        int width = 0, height = 0;

        bool operator==(const Target&) const = default;
    };
    // Draws the document to fill the target, whatever was there. `frame` counts from the document's first and
    // may lie between two.
    void draw(float frame, const Target& target);

 private:
    struct Module;

    template <class Call>
    void call(Call&& action);
    std::uint32_t copied(std::string_view bytes);
    void aimAt(const Target& target);
    void drop();

    std::unique_ptr<Module> module_;
    std::uint32_t canvas_ = 0, animation_ = 0, picture_ = 0;
    Target target_;
    int pictureWidth_ = 0, pictureHeight_ = 0;
};

}  // namespace headless::render
