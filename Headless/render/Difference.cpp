#include "render/Difference.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <cstdlib>

namespace headless::render {
namespace {

int channel(std::uint32_t pixel, int shift) {
    return static_cast<int>(pixel >> shift & 0xFF);
}

int distance(std::uint32_t one, std::uint32_t other) {
    if (one == other) return 0;
    int largest = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        largest = std::max(largest, std::abs(channel(one, shift) - channel(other, shift)));
    }
    return largest;
}

void include(std::optional<PixelBox>& box, int x, int y) {
    if (!box) box = PixelBox{x, y, x + 1, y + 1};
    box = PixelBox{std::min(box->left, x), std::min(box->top, y), std::max(box->right, x + 1),
                   std::max(box->bottom, y + 1)};
}

// Pixels that differ by more than the tolerance and lie wholly among others that do: none where the differences
// are lines of at most two pixels.
std::size_t pixelsInside(const PictureView& one, const PictureView& other, int tolerance) {
    const auto differs = [&](int x, int y) {
        const std::size_t index = static_cast<std::size_t>(y) * one.width + x;
        return distance(one.pixels[index], other.pixels[index]) > tolerance;
    };
    std::size_t count = 0;
    for (int y = 1; y + 1 < one.height; ++y) {
        for (int x = 1; x + 1 < one.width; ++x) {
            bool inside = differs(x, y);
            for (int i = 0; inside && i < 9; ++i) {
                inside = differs(x - 1 + i % 3, y - 1 + i / 3);
            }
            count += inside ? 1 : 0;
        }
    }
    return count;
}

// Whether the pixels that differ by more than the tolerance, with those around them, come closer to the other
// picture's by more than half once that one is moved by one pixel. Not asked of a handful of pixels: those fit
// by chance.
bool fitsBetterMoved(const PictureView& one, const PictureView& other, int tolerance) {
    constexpr std::size_t handful = 8;
    const auto apart = [&](int x, int y, int otherX, int otherY) {
        return distance(one.pixels[static_cast<std::size_t>(y) * one.width + x],
                        other.pixels[static_cast<std::size_t>(otherY) * one.width + otherX]);
    };
    std::array<std::int64_t, 9> sums{};  // by the direction moved; the middle one stays
    std::size_t count = 0;
    for (int y = 2; y + 2 < one.height; ++y) {
        for (int x = 2; x + 2 < one.width; ++x) {
            if (apart(x, y, x, y) <= tolerance) continue;
            ++count;
            for (int near = 0; near < 9; ++near) {
                const int nearX = x - 1 + near % 3;
                const int nearY = y - 1 + near / 3;
                for (int move = 0; move < 9; ++move) {
                    sums[move] += apart(nearX, nearY, nearX - 1 + move % 3, nearY - 1 + move / 3);
                }
            }
        }
    }
    return count > handful && *std::min_element(sums.begin(), sums.end()) * 2 < sums[4];
}

// Between the least and the most of a channel among a pixel and those around it.
int contrastAt(const PictureView& picture, int x, int y, int shift) {
    int least = 255;
    int most = 0;
    for (int nearY = std::max(0, y - 1); nearY < std::min(picture.height, y + 2); ++nearY) {
        for (int nearX = std::max(0, x - 1); nearX < std::min(picture.width, x + 2); ++nearX) {
            const int level =
                channel(picture.pixels[static_cast<std::size_t>(nearY) * picture.width + nearX], shift);
            least = std::min(least, level);
            most = std::max(most, level);
        }
    }
    return most - least;
}

// Pixels that differ by more than an edge that is in both pictures explains.
std::size_t strayPixels(const PictureView& one, const PictureView& other, const NoiseLimits& limits) {
    std::size_t count = 0;
    std::size_t index = 0;
    for (int y = 0; y < one.height; ++y) {
        for (int x = 0; x < one.width; ++x, ++index) {
            bool stray = false;
            for (int shift = 0; !stray && shift < 32; shift += 8) {
                const int apart =
                    std::abs(channel(one.pixels[index], shift) - channel(other.pixels[index], shift)) -
                    limits.invisible;
                stray = apart > 0 &&
                        apart > std::min(contrastAt(one, x, y, shift), contrastAt(other, x, y, shift)) /
                                    limits.partOfContrast;
            }
            count += stray ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

Difference difference(const PictureView& one, const PictureView& other, int tolerance) {
    assert(one.width == other.width && one.height == other.height);
    Difference result;
    std::size_t index = 0;
    for (int y = 0; y < one.height; ++y) {
        for (int x = 0; x < one.width; ++x, ++index) {
            const int apart = distance(one.pixels[index], other.pixels[index]);
            if (apart > result.largest) {
                result.largest = apart;
                result.worst = {x, y};
            }
            if (apart > tolerance) {
                ++result.count;
                include(result.box, x, y);
            }
        }
    }
    return result;
}

bool isEdgeNoise(const PictureView& one, const PictureView& other, const NoiseLimits& limits) {
    const std::size_t most = std::min(limits.pixels, one.pixels.size() / limits.pictureForEach);
    const Difference beyondFaint = difference(one, other, limits.faint);
    return beyondFaint.largest <= limits.largest && beyondFaint.count <= most &&
           pixelsInside(one, other, limits.invisible) <= most &&
           strayPixels(one, other, limits) <= most / limits.strayPart &&
           !fitsBetterMoved(one, other, limits.faint);
}

std::optional<PixelBox> visibleBounds(const PictureView& picture) {
    std::optional<PixelBox> result;
    std::size_t index = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x, ++index) {
            if (picture.pixels[index] >> 24 != 0) include(result, x, y);
        }
    }
    return result;
}

}  // namespace headless::render
