// The scan beside a plain read of the same bytes, a loop over the pixels and OpenCV's answer.
//
// All of them in turn, on frames in a ring larger than the caches, so that a noisy machine is noisy for all.
// Prints a table of ratios to the plain read: the median of the rounds and, for the scan, the second lowest and
// second highest. Fails where a box is wrong.

#include <benchmark/benchmark.h>
#include <emmintrin.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>
#include <vector>

#include "Crop_Scan.h"

namespace {

using crop::VisibleRange;

constexpr int rounds = 11;
const std::size_t ringBytes = [] {
    const long cache = sysconf(_SC_LEVEL3_CACHE_SIZE);
    return std::max<std::size_t>(256u << 20, cache > 0 ? static_cast<std::size_t>(cache) * 5 / 4 : 0);
}();
constexpr int paddingPixels = 12;  // behind each row

// ---- Frames -------------------------------------------------------------------------------------------------

struct Content {
    const char* name;
    // Whether a pixel is visible.
    std::function<bool(int col, int row, int width, int height)> isVisible;
    float invisible = 0;  // alpha of the others
};

const Content contents[] = {
    {"transparent", [](int, int, int, int) { return false; }},
    {"opaque", [](int, int, int, int) { return true; }},
    {"centred",
     [](int col, int row, int width, int height) {
         return col >= width / 4 && col < width * 3 / 4 && row >= height / 4 && row < height * 3 / 4;
     }},
    {"sparse noise",
     [random = std::minstd_rand(7)](int, int, int, int) mutable { return random() % 1000 == 0; }},
    {"one pixel in the last row",
     [](int col, int row, int width, int height) { return row == height - 1 && col == width / 3; }},
    {"diagonal", [](int col, int row, int width, int height) { return col == row * width / height; }},
    {"central column", [](int col, int, int width, int) { return col == width / 2; }},
    {"widening V", [](int col, int row, int width,
                      int height) { return std::abs(col - width / 2) == row * (width / 2) / height; }},
    {"negative", [](int, int, int, int) { return false; }, -1},  // float only
};

template <class Pixel>
struct Ring {
    using Alpha = decltype(Pixel::alpha);

    Ring(int frameWidth, int frameHeight)
        : width(frameWidth),
          height(frameHeight),
          stride(static_cast<std::size_t>(width) + paddingPixels),
          frameLength(stride * static_cast<std::size_t>(height)),
          frames(ringBytes / (frameLength * sizeof(Pixel)) + 1),
          pixels(std::make_unique_for_overwrite<Pixel[]>(frames * frameLength)) {}

    // Colours and gaps stay visible garbage. Returns the box.
    VisibleRange fill(const Content& content) {
        auto isVisible = content.isVisible;
        VisibleRange box{height, 0, width, 0};
        std::fill_n(pixels.get(), frameLength, Pixel{1, 1, 1, 1});
        for (int row = 0; row < height; ++row) {
            for (int col = 0; col < width; ++col) {
                const bool visible = isVisible(col, row, width, height);
                pixels[static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(col)].alpha =
                    static_cast<Alpha>(visible ? 1 : content.invisible);
                if (visible) {
                    box = {std::min(box.minRow, row), std::max(box.maxRow, row), std::min(box.minCol, col),
                           std::max(box.maxCol, col)};
                }
            }
        }
        for (std::size_t frame = 1; frame < frames; ++frame) {
            std::copy_n(pixels.get(), frameLength, pixels.get() + frame * frameLength);
        }
        return box;
    }

    double gigabytes() const { return static_cast<double>(frames * sizeof(Pixel)) * width * height / 1e9; }

    const int width, height;
    const std::size_t stride, frameLength, frames;
    const std::unique_ptr<Pixel[]> pixels;
};

// ---- What is measured ---------------------------------------------------------------------------------------

template <class Pixel>
std::int64_t plainRead(const Pixel* frame, const Ring<Pixel>& ring) {
    __m128i sums[4] = {};
    const std::size_t vectors = static_cast<std::size_t>(ring.width) * sizeof(Pixel) / sizeof(__m128i);
    for (int row = 0; row < ring.height; ++row) {
        const auto* at = reinterpret_cast<const __m128i*>(frame + static_cast<std::size_t>(row) * ring.stride);
        for (std::size_t i = 0; i + 4 <= vectors; i += 4) {
            sums[0] = _mm_add_epi64(sums[0], _mm_loadu_si128(at + i));
            sums[1] = _mm_add_epi64(sums[1], _mm_loadu_si128(at + i + 1));
            sums[2] = _mm_add_epi64(sums[2], _mm_loadu_si128(at + i + 2));
            sums[3] = _mm_add_epi64(sums[3], _mm_loadu_si128(at + i + 3));
        }
    }
    const __m128i sum = _mm_add_epi64(_mm_add_epi64(sums[0], sums[1]), _mm_add_epi64(sums[2], sums[3]));
    return _mm_cvtsi128_si64(sum) + _mm_cvtsi128_si64(_mm_unpackhi_epi64(sum, sum));
}

template <class Pixel>
VisibleRange scan(const Pixel* frame, const Ring<Pixel>& ring) {
    return crop::findVisible(frame, ring.width, ring.height,
                             static_cast<A_u_long>(ring.stride * sizeof(Pixel)));
}

template <class Pixel>
VisibleRange pixelLoop(const Pixel* frame, const Ring<Pixel>& ring) {
    VisibleRange box{ring.height, 0, ring.width, 0};
    for (int row = 0; row < ring.height; ++row) {
        const Pixel* pixels = frame + static_cast<std::size_t>(row) * ring.stride;
        for (int col = 0; col < ring.width; ++col) {
            if (pixels[col].alpha > 0) {
                box = {std::min(box.minRow, row), std::max(box.maxRow, row), std::min(box.minCol, col),
                       std::max(box.maxCol, col)};
            }
        }
    }
    return box;
}

template <class Pixel>
VisibleRange openCv(const Pixel* frame, const Ring<Pixel>& ring) {
    constexpr int depth = sizeof(Pixel) == 4 ? CV_8U : sizeof(Pixel) == 8 ? CV_16U : CV_32F;
    static cv::Mat alpha, mask;
    const cv::Mat picture(ring.height, ring.width, CV_MAKETYPE(depth, 4), const_cast<Pixel*>(frame),
                          ring.stride * sizeof(Pixel));
    cv::extractChannel(picture, alpha, 0);
    if (depth != CV_8U) {  // boundingRect takes bytes
        cv::compare(alpha, 0, mask, cv::CMP_GT);
    }
    const cv::Rect box = cv::boundingRect(depth == CV_8U ? alpha : mask);
    return box.empty() ? VisibleRange{ring.height, 0, ring.width, 0}
                       : VisibleRange{box.y, box.y + box.height - 1, box.x, box.x + box.width - 1};
}

bool same(const VisibleRange& a, const VisibleRange& b) {
    return a.minRow == b.minRow && a.maxRow == b.maxRow && a.minCol == b.minCol && a.maxCol == b.maxCol;
}

template <class Pixel, class Do>
double secondsFor(const Ring<Pixel>& ring, Do&& action) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < ring.frames; ++i) {
        action(ring.pixels.get() + i * ring.frameLength);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Pixel>
void measure(benchmark::State& state, Ring<Pixel>& ring, const Content& content) {
    const VisibleRange box = ring.fill(content);
    const auto checked = [&](auto find, const char* who) {
        return secondsFor(ring, [&](const Pixel* frame) {
            if (!same(find(frame, ring), box)) {
                state.SkipWithError((std::string("the box is wrong: ") + who).c_str());
            }
        });
    };
    std::vector<double> speeds, scans, loops, openCvs;
    for (auto round : state) {
        const double plain =
            secondsFor(ring, [&](const Pixel* frame) { benchmark::DoNotOptimize(plainRead(frame, ring)); });
        const double scanned = checked(scan<Pixel>, "scan");
        speeds.push_back(ring.gigabytes() / plain);
        scans.push_back(plain / scanned);
        loops.push_back(plain / checked(pixelLoop<Pixel>, "pixel loop"));
        openCvs.push_back(plain / checked(openCv<Pixel>, "OpenCV"));
        state.SetIterationTime(scanned);
    }
    for (auto* values : {&speeds, &scans, &loops, &openCvs}) {
        std::sort(values->begin(), values->end());
        values->resize(rounds);
    }
    state.counters["plain"] = speeds[rounds / 2];
    state.counters["scan"] = scans[rounds / 2];
    state.counters["low"] = scans[1];
    state.counters["high"] = scans[rounds - 2];
    state.counters["loop"] = loops[rounds / 2];
    state.counters["opencv"] = openCvs[rounds / 2];
}

// ---- The table ----------------------------------------------------------------------------------------------

class Table : public benchmark::BenchmarkReporter {
 public:
    bool ReportContext(const Context&) override {
        std::printf(
            "| depth, frame, content | plain read, GB/s | scan | from, to | pixel loop | OpenCV |\n"
            "|---|---|---|---|---|---|\n");
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
                failed = true;
                continue;
            }
            const auto value = [&](const char* name) { return run.counters.at(name).value; };
            std::printf("| %s | %.1f | %.2f | %.2f, %.2f | %.2f | %.2f |\n", run.run_name.function_name.c_str(),
                        value("plain"), value("scan"), value("low"), value("high"), value("loop"),
                        value("opencv"));
            std::fflush(stdout);
        }
    }
    bool failed = false;
};

template <class Pixel>
void enlist(const char* depth) {
    struct Frame {
        const char* name;
        int width, height;
    };
    for (const Frame& frame : {Frame{"1080p", 1920, 1080}, {"4K", 3840, 2160}, {"8K", 7680, 4320}}) {
        for (const Content& content : contents) {
            if (content.invisible < 0 && depth != std::string("float")) {
                continue;
            }
            const std::string name = std::string(depth) + ", " + frame.name + ", " + content.name;
            benchmark::RegisterBenchmark(name.c_str(),
                                         [frame, &content](benchmark::State& state) {
                                             Ring<Pixel> ring(frame.width, frame.height);
                                             measure(state, ring, content);
                                         })
                ->Iterations(rounds)
                ->UseManualTime();
        }
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    cv::setNumThreads(1);
    enlist<PF_Pixel8>("8-bit");
    enlist<PF_Pixel16>("16-bit");
    enlist<PF_PixelFloat>("float");
    Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return table.failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
