// What a person would see: the pixels of the virtual display, from the file that it keeps them in.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

struct Box {
    int left, top, width, height;
    bool operator==(const Box&) const = default;
};

class Screen {
 public:
    using Colour = std::uint32_t;  // 0xRRGGBB

    // As it is now. KESTRIN_SCREEN names the file, an X window dump.
    Screen() {
        const char* path = std::getenv("KESTRIN_SCREEN");
        std::ifstream file(path == nullptr ? "" : path, std::ios::binary);
        bytes_.assign(std::istreambuf_iterator<char>(file), {});
        if (bytes_.size() < 100) {
            ADD_FAILURE() << "no virtual display; run by scripts/test-platform";
            return;
        }
        width_ = static_cast<int>(headerField(4));
        height_ = static_cast<int>(headerField(5));
        lineSize_ = headerField(12);
        constexpr std::size_t colourMapEntrySize = 12;
        pixels_ = headerField(0) + headerField(19) * colourMapEntrySize;
    }

    Colour at(int x, int y) const {
        constexpr std::size_t pixelSize = 4;
        const std::size_t offset =
            pixels_ + static_cast<std::size_t>(y) * lineSize_ + static_cast<std::size_t>(x) * pixelSize;
        return byteAt(offset + 2) << 16 | byteAt(offset + 1) << 8 | byteAt(offset);
    }

    // The smallest box that holds all pixels of that colour; of width 0 if there is none.
    Box boxOf(Colour colour) const {
        int left = width_, top = height_, right = -1, bottom = -1;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                if (at(x, y) == colour) {
                    left = std::min(left, x);
                    right = std::max(right, x);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
            }
        }
        return right < 0 ? Box{0, 0, 0, 0} : Box{left, top, right - left + 1, bottom - top + 1};
    }

    int countBrightIn(const Box& box) const {
        int count = 0;
        for (int y = box.top; y < box.top + box.height; ++y) {
            for (int x = box.left; x < box.left + box.width; ++x) {
                count += (at(x, y) & 0xFF) > 0xC0 && (at(x, y) >> 16) > 0xC0 ? 1 : 0;
            }
        }
        return count;
    }

 private:
    std::uint32_t byteAt(std::size_t at) const { return static_cast<unsigned char>(bytes_.at(at)); }
    std::uint32_t headerField(std::size_t index) const {
        const std::size_t at = index * 4;
        return byteAt(at) << 24 | byteAt(at + 1) << 16 | byteAt(at + 2) << 8 | byteAt(at + 3);
    }

    std::string bytes_;
    int width_ = 0;
    int height_ = 0;
    std::size_t lineSize_ = 0;
    std::size_t pixels_ = 0;
};

// The display draws in a process of its own: waits until `holds(Screen)`, and not for ever.
template <class Condition>
bool becomesVisible(Condition&& holds) {
    using namespace std::chrono_literals;
    for (const auto deadline = std::chrono::steady_clock::now() + 5s;
         std::chrono::steady_clock::now() < deadline; std::this_thread::sleep_for(20ms)) {
        if (holds(Screen())) {
            return true;
        }
    }
    return false;
}
