#include "render/SharedMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>

namespace headless::render {

SharedMemory::Part::Part(int descriptor, std::uint64_t offsetInFile, std::size_t size) : offset(offsetInFile) {
    void* start =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, static_cast<off_t>(offset));
    if (start == MAP_FAILED) throw std::bad_alloc();
    bytes = {static_cast<std::byte*>(start), size};
}

SharedMemory::Part::~Part() {
    ::munmap(bytes.data(), bytes.size());
}

SharedMemory::SharedMemory() : descriptor_(::memfd_create("kestrin-frames", MFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::system_category(), "memfd_create");
}

SharedMemory::~SharedMemory() {
    ::close(descriptor_);
}

std::shared_ptr<SharedMemory::Part> SharedMemory::part(std::size_t size) {
    const auto isFree = [](const std::shared_ptr<Part>& part) { return part.use_count() == 1; };
    for (const auto& part : parts_) {
        if (isFree(part) && part->bytes.size() >= size) return part;
    }
    // Too small parts give their memory back.
    if (std::all_of(parts_.begin(), parts_.end(), isFree)) {
        parts_.clear();
        (void)!::ftruncate(descriptor_, 0);
        size_ = 0;
    }
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t pages = (size + page - 1) / page * page;
    if (::ftruncate(descriptor_, static_cast<off_t>(size_ + pages)) != 0) throw std::bad_alloc();
    parts_.push_back(std::make_shared<Part>(descriptor_, size_, pages));
    size_ += pages;
    return parts_.back();
}

}  // namespace headless::render
