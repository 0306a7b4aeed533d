// Memory for pictures that a process shares with its worker: parts of one file that exists in memory only.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace headless::render {

class SharedMemory {
 public:
    // A part, as long as somebody holds it; it may outlive the SharedMemory.
    struct Part {
        std::uint64_t offset = 0;  // in the file
        std::span<std::byte> bytes;

        Part(int descriptor, std::uint64_t offset, std::size_t size);  // throws std::bad_alloc
        Part(const Part&) = delete;
        Part& operator=(const Part&) = delete;
        ~Part();
    };

    SharedMemory();  // throws std::system_error
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory();

    int descriptor() const { return descriptor_; }
    // `size` bytes at least that nobody holds; what is in them is left over. Throws std::bad_alloc.
    std::shared_ptr<Part> part(std::size_t size);

 private:
    int descriptor_;
    std::uint64_t size_ = 0;  // of the file
    std::vector<std::shared_ptr<Part>> parts_;
};

}  // namespace headless::render
