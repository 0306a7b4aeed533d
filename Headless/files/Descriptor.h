// A file descriptor and who closes it.

#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace headless {

class Descriptor {
 public:
    // Negative where opening failed, and for AT_FDCWD, which nobody closes.
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }
    int release() { return std::exchange(number_, -1); }
    // Whether all that was written got there.
    bool close() {
        const int number = release();
        return number < 0 || ::close(number) == 0;
    }

 private:
    int number_;
};

}  // namespace headless
