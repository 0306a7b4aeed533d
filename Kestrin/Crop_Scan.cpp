// The scan reads each byte of a row once and in order, at the speed of memory: blocks of 64 bytes are tested
// whole, and pixels one by one only where a block moves an edge of the box found so far.

#include "Crop_Scan.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace crop {
namespace {

constexpr std::uint32_t infinity = 0x7F800000;  // as a float's bits

bool isVisible(const PF_Pixel8& pixel) {
    return pixel.alpha != 0;
}

bool isVisible(const PF_Pixel16& pixel) {
    return pixel.alpha != 0;
}

// Compares the bits: where the processor is set to flush denormal numbers, `alpha > 0` would miss them.
bool isVisible(const PF_PixelFloat& pixel) {
    return std::bit_cast<std::uint32_t>(pixel.alpha) - 1 < infinity;
}

template <class Pixel>
constexpr A_long blockLength = 64 / sizeof(Pixel);

#if defined(__GNUC__) && !defined(KESTRIN_PLAIN_SCAN)

static_assert(std::endian::native == std::endian::little, "the lanes below have the alpha first");

// What is visible in a block or several, or-ed together. Lanes that hold no alpha are garbage.
using Seen = std::uint32_t __attribute__((vector_size(16)));

template <class Pixel>
constexpr Seen alphaLanes{};
template <>
constexpr Seen alphaLanes<PF_Pixel8> = {0xFF, 0xFF, 0xFF, 0xFF};
template <>
constexpr Seen alphaLanes<PF_Pixel16> = {0xFFFF, 0, 0xFFFF, 0};
template <>
constexpr Seen alphaLanes<PF_PixelFloat> = {0xFFFFFFFF, 0, 0, 0};

template <class Pixel>
Seen seenInQuarter(const Pixel* block, int quarter) {
    Seen bits;
    std::memcpy(&bits, block + quarter * blockLength<Pixel> / 4, sizeof bits);
    if constexpr (std::is_same_v<Pixel, PF_PixelFloat>) {
        bits = reinterpret_cast<Seen>(bits - 1 < infinity);
    }
    return bits;
}

// Asks for the bytes 4 KB further on, where the processor's own prefetching may have ended with the page.
// Beyond the last row no harm is done.
inline void prefetchAhead(const void* block) {
    __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(block) + 4096));
}

template <class Pixel>
Seen seenIn(const Pixel* block) {
    prefetchAhead(block);
    return (seenInQuarter(block, 0) | seenInQuarter(block, 1)) |
           (seenInQuarter(block, 2) | seenInQuarter(block, 3));
}

template <class Pixel>
bool anyVisible(Seen seen) {
    using Halves = std::uint64_t __attribute__((vector_size(16)));
    const auto halves = reinterpret_cast<Halves>(seen & alphaLanes<Pixel>);
    return (halves[0] | halves[1]) != 0;
}

#else

using Seen = int;

template <class Pixel>
Seen seenIn(const Pixel* block) {
    Seen seen = 0;
    for (A_long i = 0; i < blockLength<Pixel>; ++i) {
        seen |= isVisible(block[i]) ? 1 : 0;
    }
    return seen;
}

template <class Pixel>
bool anyVisible(Seen seen) {
    return seen != 0;
}

#endif

// The first visible column of [begin, end), or `end`.
template <class Pixel>
A_long firstVisible(const Pixel* row, A_long begin, A_long end) {
    while (end - begin >= blockLength<Pixel> && !anyVisible<Pixel>(seenIn(row + begin))) {
        begin += blockLength<Pixel>;
    }
    while (begin < end && !isVisible(row[begin])) {
        ++begin;
    }
    return begin;
}

template <class Pixel>
bool anyVisible(const Pixel* row, A_long begin, A_long end) {
    Seen seen{};
    for (; end - begin >= blockLength<Pixel>; begin += blockLength<Pixel>) {
        seen |= seenIn(row + begin);
    }
    bool visible = anyVisible<Pixel>(seen);
    for (; begin < end; ++begin) {
        visible |= isVisible(row[begin]);
    }
    return visible;
}

// One past the last visible column of [begin, end), or `begin`.
template <class Pixel>
A_long endOfVisible(const Pixel* row, A_long begin, A_long end) {
    A_long last = begin;
    A_long col = begin;
    for (; end - col >= blockLength<Pixel>; col += blockLength<Pixel>) {
        if (anyVisible<Pixel>(seenIn(row + col))) {
            last = col + blockLength<Pixel>;
        }
    }
    for (; col < end; ++col) {
        if (isVisible(row[col])) {
            last = col + 1;
        }
    }
    while (last > begin && !isVisible(row[last - 1])) {
        --last;
    }
    return last;
}

}  // namespace

template <class Pixel>
VisibleRange findVisible(const Pixel* base, A_long width, A_long height, A_u_long rowBytes) noexcept {
    const auto pixelsPerRow = static_cast<std::ptrdiff_t>(rowBytes / sizeof(Pixel));
    VisibleRange range = nothingVisible(width, height);
    A_long left = width;
    A_long right = 0;  // one past the last column
    for (A_long row = 0; row < height; ++row) {
        const Pixel* pixels = base + row * pixelsPerRow;
        const A_long first = firstVisible(pixels, 0, left);
        const A_long boxEnd = std::max(first, right);
        const bool inBox = anyVisible(pixels, first, boxEnd);
        const A_long end = endOfVisible(pixels, boxEnd, width);
        if (inBox || end > boxEnd) {
            left = first;
            right = end;
            range = {std::min(range.minRow, row), row, left, right - 1};
        }
    }
    return range;
}

template VisibleRange findVisible(const PF_Pixel8*, A_long, A_long, A_u_long) noexcept;
template VisibleRange findVisible(const PF_Pixel16*, A_long, A_long, A_u_long) noexcept;
template VisibleRange findVisible(const PF_PixelFloat*, A_long, A_long, A_u_long) noexcept;

}  // namespace crop
