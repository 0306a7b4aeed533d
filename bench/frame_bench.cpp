// What the host adds to the drawing of frames: the duration crop of real files as a whole command beside the
// renderer alone, which draws the same frames of the same documents in this process; and the change to the
// host's order of channels beside a plain copy.
//
// Each file becomes a composition of 1920 x 1080: its root is shown in it as a layer, scaled to fit. The files
// are the arguments, "NAME:8" is the first eight frames of one. Fails where a frame drawn ahead differs from
// the renderer's own, or where fewer than five of the files stay within the limit. (A frame with next to
// nothing in it is cleared faster than it can be looked at.)

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <span>
#include <vector>

#include "model/Project.h"
#include "render/Frames.h"
#include "render/SharedMemory.h"
#include "render/World.h"
#include "render/thorvg/ThorVG.h"

namespace {

using namespace headless;
using Json = nlohmann::ordered_json;

constexpr int width = 1920, height = 1080;
constexpr int rounds = 5;
constexpr double longest = 120;  // seconds for a file; no round begins later
constexpr double largestRatio = 1.3;
constexpr int filesWithin = 5;

double secondsOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Of this process, or of those that it has waited for.
double processorSeconds(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct Spread {
    double lowest = 0, median = 0, highest = 0;
};

Spread spreadOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return {values.front(), values[values.size() / 2], values.back()};
}

// ---- Frames -------------------------------------------------------------------------------------------------

Json use(const std::string& id, const Json& root, int useWidth, int useHeight, double scale) {
    const auto fixed = [](Json value) { return Json{{"a", 0}, {"k", std::move(value)}}; };
    return {{"ddd", 0},
            {"ty", 0},
            {"nm", id},
            {"refId", id},
            {"w", useWidth},
            {"h", useHeight},
            {"ip", root["ip"]},
            {"op", root["op"]},
            {"st", 0},
            {"ks",
             {{"p", fixed({width / 2, height / 2, 0})},
              {"a", fixed({useWidth / 2.0, useHeight / 2.0, 0})},
              {"s", fixed({scale, scale, 100})}}}};
}

std::string enlarged(const std::filesystem::path& file, int mostFrames) {
    std::ifstream in(file);
    Json root = Json::parse(in);
    root["op"] = std::min(root["op"].get<double>(), root["ip"].get<double>() + mostFrames);
    const double scale = 100 * std::min(width / root["w"].get<double>(), height / root["h"].get<double>());
    Json stage = use("Original", root, root["w"], root["h"], scale);
    Json& assets = root["assets"];
    assets.push_back({{"id", "Original"}, {"layers", std::move(root["layers"])}});
    assets.push_back({{"id", "Stage"}, {"layers", Json::array({std::move(stage)})}});
    root["layers"] = Json::array({use("Stage", root, width, height, 100)});
    root["w"] = width;
    root["h"] = height;
    return root.dump();
}

int run(const std::vector<std::string>& command) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> arguments;
        for (const std::string& argument : command) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        if (std::freopen("/dev/null", "w", stdout) != nullptr) {
            execv(arguments[0], arguments.data());
        }
        _exit(127);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A file's composition as the renderer gets it.
struct Scene {
    std::filesystem::path file;
    std::string document;
    int frames = 0;
    std::vector<std::size_t> hashes;  // of the frames as the host draws them
};

std::size_t hashOf(std::span<const std::uint32_t> pixels) {
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(pixels.data()), pixels.size_bytes()});
}

// By one worker and by two.
Scene drawnApart(const std::string& argument, const std::filesystem::path& folder) {
    const std::size_t colon = argument.find(':');
    const std::filesystem::path original = argument.substr(0, colon);
    const int mostFrames = colon == std::string::npos ? INT_MAX : std::stoi(argument.substr(colon + 1));
    Scene scene{folder / original.filename(), {}, 0, {}};
    std::ofstream(scene.file, std::ios::binary) << enlarged(original, mostFrames);
    const auto project = model::Project::open(scene.file);
    const model::Comp& comp = *project->root().layers.front()->source->comp;
    scene.frames = static_cast<int>(std::ceil(comp.frameCount()));
    scene.document = project->documentOf(comp, {width, height});
    render::Frames one({}, 1);
    render::Frames two({}, 2);
    for (render::Frames* frames : {&one, &two}) {
        frames->prepare([&] { return scene.document; }, scene.frames);
    }
    for (int frame = 0; frame < scene.frames; ++frame) {
        scene.hashes.push_back(hashOf(one.frame(frame, width, height).pixels));
        if (hashOf(two.frame(frame, width, height).pixels) != scene.hashes.back()) {
            throw std::runtime_error(original.string() + ": two workers draw another picture than one");
        }
    }
    return scene;
}

// With what a worker has, in this process.
template <class Take>
void drawAlone(const Scene& scene, Take&& take) {
    render::SharedMemory memory;
    const auto part = memory.part(std::size_t{width} * height * 4);
    render::ThorVG renderer(render::Limits().memoryBytes);
    renderer.load(scene.document);
    const std::span<const std::uint32_t> pixels(reinterpret_cast<const std::uint32_t*>(part->bytes.data()),
                                                std::size_t{width} * height);
    for (int frame = 0; frame < scene.frames; ++frame) {
        renderer.draw(static_cast<float>(frame), {memory.descriptor(), part->offset, width * 4, width, height});
        take(frame, pixels);
    }
}

// Whether the command stays within the limit.
bool measureFile(const Scene& scene) {
    drawAlone(scene, [&](int frame, std::span<const std::uint32_t> pixels) {
        if (hashOf(pixels) != scene.hashes[static_cast<std::size_t>(frame)]) {
            throw std::runtime_error(scene.file.string() +
                                     ": a worker draws another picture than the renderer");
        }
    });
    const std::vector<std::string> command{
        KESTRIN_PROGRAM, "crop",  scene.file,   "--plugin", KESTRIN_PLUGIN,
        "--layer",       "Stage", "--duration", "-o",       scene.file.string() + ".cropped"};
    std::vector<double> ratios, alone, whole;
    const double selfBefore = processorSeconds(RUSAGE_SELF);
    const double childrenBefore = processorSeconds(RUSAGE_CHILDREN);
    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < rounds; ++round) {
        if (round > 0 && std::chrono::steady_clock::now() - start > std::chrono::duration<double>(longest))
            break;
        alone.push_back(secondsOf([&] { drawAlone(scene, [](int, const auto&) {}); }));
        whole.push_back(secondsOf([&] {
            if (run(command) != 0) {
                throw std::runtime_error("kestrin crop failed on " + scene.file.string());
            }
        }));
        ratios.push_back(whole.back() / alone.back());
    }
    const double processorRatio =
        (processorSeconds(RUSAGE_CHILDREN) - childrenBefore) / (processorSeconds(RUSAGE_SELF) - selfBefore);
    const Spread ratio = spreadOf(ratios);
    const double aloneMedian = spreadOf(alone).median;
    std::printf("| %s | %d | %.2f | %.2f | %.2f | %.2f, %.2f | %.2f |\n", scene.file.filename().c_str(),
                scene.frames, aloneMedian, spreadOf(whole).median, ratio.median, ratio.lowest, ratio.highest,
                processorRatio);
    std::fflush(stdout);
    return ratio.median <= largestRatio;
}

// ---- Pixels -------------------------------------------------------------------------------------------------

void measureDepth(const char* name, render::Depth depth) {
    const render::World world = render::transparentWorld({depth, width, height});
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < world.bytes() / 4; ++i) {
        state = state * 1'664'525 + 1'013'904'223;
        std::memcpy(world.memory.get() + 4 * i, &state, 4);
    }
    const std::vector<char> source(world.bytes(), 1);
    const auto copy = std::make_unique<char[]>(world.bytes());
    std::vector<double> ratios, copies, worlds;
    for (int round = 0; round < 101; ++round) {
        copies.push_back(secondsOf([&] { std::memcpy(copy.get(), source.data(), source.size()); }));
        worlds.push_back(secondsOf([&] { render::layOut(world, world.memory.get()); }));
        ratios.push_back(worlds.back() / copies.back());
        benchmark::DoNotOptimize(copy.get()[round]);
    }
    const Spread ratio = spreadOf(ratios);
    std::printf("| %s | %.2f | %.2f | %.2f |\n", name, 1000 * spreadOf(copies).median,
                1000 * spreadOf(worlds).median, ratio.median);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        std::printf("| depth | copy, ms | frame for the host, ms | ratio |\n|---|---|---|---|\n");
        measureDepth("8-bit", render::Depth::Bits8);
        measureDepth("16-bit", render::Depth::Bits16);
        measureDepth("float", render::Depth::Bits32);

        const auto folder =
            std::filesystem::temp_directory_path() / ("kestrin-frames-" + std::to_string(getpid()));
        std::filesystem::create_directory(folder);
        std::printf(
            "\n| file | frames | renderer alone, s | kestrin crop --duration, s | ratio | from, to | of "
            "processor "
            "time |\n|---|---|---|---|---|---|---|\n");
        std::fflush(stdout);
        std::vector<Scene> scenes;
        for (int i = 1; i < argumentCount; ++i) {
            scenes.push_back(drawnApart(arguments[i], folder));
        }
        const auto within = std::count_if(scenes.begin(), scenes.end(), measureFile);
        std::filesystem::remove_all(folder);
        std::printf("\nWithin %.1f times the renderer's own time: %d of %d files.\n", largestRatio,
                    static_cast<int>(within), static_cast<int>(scenes.size()));
        return within >= filesWithin || scenes.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "frame_bench: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
