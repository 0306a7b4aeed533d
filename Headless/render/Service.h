// What runs in a worker process, and what goes over the socket between it and its parent.

#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "render/World.h"

namespace headless::render {

// A frame (from 0 = the document's in point; it may lie between two), drawn to fill width x height.
struct FrameRequest {
    double frame = 0;
    int width = 0;
    int height = 0;
    std::optional<Depth> depth;  // of a world; none: a picture

    bool operator==(const FrameRequest&) const = default;
    WorldShape world() const { return {depth.value(), width, height}; }
    std::size_t bytes() const;
};

// What is sent is all of these bytes, so none may be left to chance.
struct Request {
    enum class Kind : std::uint32_t { Prepare, Frame, Font };
    Kind kind = Kind::Prepare;
    std::uint32_t nameLength = 0;  // of a font, its name comes before the text
    std::uint64_t textLength = 0;  // of the document or font, which follows
    std::uint64_t offset = 0;      // where in the shared memory the frame goes
    double frame = 0;
    std::int32_t width = 0, height = 0;
    std::int32_t depth = 0;  // 0: a picture
    std::int32_t unused = 0;
};
static_assert(sizeof(Request) == 48, "no padding");

struct Answer {
    enum class Kind : std::int32_t { Done, Refused, OutOfMemory, Forbidden, Faulty };
    Kind kind = Kind::Done;
    std::int32_t systemCall = 0;  // the forbidden one
    char reason[120] = {};        // of what is faulty
};
static_assert(sizeof(Answer) == 128, "no padding");

// The processors that a worker may use: two that draw at once get in each other's way less when each has its
// own.
enum class Processors { All, Even, Odd };

// Answers requests until the other end of `socket` is closed; then the process ends. `memory` is the shared
// file. To be called in a process that has just been forked from `parent`.
[[noreturn]] void serve(int socket, int memory, std::uint64_t memoryBytes, Processors processors, pid_t parent);

}  // namespace headless::render
