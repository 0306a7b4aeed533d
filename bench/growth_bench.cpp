// How time and memory grow with a project: opening, cropping and writing it in the headless host, from 1,000
// to 100,000 layers (or uses, compositions, keyframes, masks, members of an object), each run in a process of
// its own.
//
// Prints a table, and fails where time grows faster than the project or where one takes more memory than its
// limit: all kinds but those where one layer is as large as the file.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "session/Session.h"
#include "support/ProjectSpec.h"

namespace {

using namespace headless;
using namespace kestrin_test;

constexpr double steepest = 1.05;    // slope of the logarithm of the time over that of the size
constexpr double largestMemory = 6;  // of the file
constexpr std::array sizes = {1'000, 3'162, 10'000, 31'623, 100'000};
constexpr Size sceneSize{400, 300};

// ---- The projects -------------------------------------------------------------------------------------------

// With the members that exporters always write.
LayerSpec asExported(LayerSpec layer, int index) {
    const auto fixed = [](Json value) { return Json{{"a", 0}, {"k", std::move(value)}}; };
    layer.json_["ks"].update({{"o", fixed(100)}, {"r", fixed(0)}, {"s", fixed({100, 100, 100})}});
    return std::move(layer).index(index).set("ddd", 0).set("sr", 1).set("ao", 0).set("bm", 0);
}

LayerSpec dot(int index) {
    return asExported(
        solid("Dot " + std::to_string(index), {10, 10}).at({20.0 + index % 300, 30.0 + index % 200, 0}), index);
}

LayerSpec card(const std::string& name, int layers) {
    LayerSpec use = precomp(name, sceneSize);
    for (int i = 1; i <= layers; ++i) {
        use = std::move(use).with(dot(i));
    }
    return use;
}

CompSpec layersInManyComps(int count) {
    constexpr int layersEach = 100;
    CompSpec scene = project("Scene", sceneSize);
    for (int i = 0; i * layersEach < count; ++i) {
        scene = std::move(scene).with(asExported(card("Card " + std::to_string(i), layersEach), i + 1));
    }
    return scene;
}

CompSpec layersInOneComp(int count) {
    return project("Scene", sceneSize).with(asExported(card("Card", count), 1));
}

CompSpec uses(int count) {
    CompSpec scene = project("Scene", sceneSize).with(asExported(card("Card", 3), 1));
    for (int i = 2; i <= count; ++i) {
        scene = std::move(scene).with(asExported(useOf("Card", sceneSize), i));
    }
    return scene;
}

CompSpec comps(int count) {
    CompSpec scene = project("Scene", sceneSize);
    for (int i = 1; i <= count; ++i) {
        scene = std::move(scene).with(asExported(card("Card " + std::to_string(i), 1), i));
    }
    return scene;
}

CompSpec keyframes(int count) {
    std::vector<Key> keys;
    for (int i = 0; i < count; ++i) {
        keys.push_back({static_cast<double>(i), {i % 50, i % 40, 0}});
    }
    return project("Scene", sceneSize).with(asExported(card("Card", 3).anchor(keys), 1));
}

CompSpec masks(int count) {
    LayerSpec use = card("Card", 3);
    for (int i = 0; i < count; ++i) {
        use = std::move(use).masked({{0, 0}, {390, 0}, {390, 290}, {0, 290}}, "Mask " + std::to_string(i));
    }
    return project("Scene", sceneSize).with(asExported(std::move(use), 1));
}

CompSpec members(int count) {
    Json::object_t many;
    many.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {  // one after the other would look through all before it
        static_cast<Json::object_t::Container&>(many).emplace_back("member " + std::to_string(i), i);
    }
    return project("Scene", sceneSize)
        .with(asExported(card("Card", 3), 1).set("unknown", Json(std::move(many))));
}

CompSpec selectedLayers(int count) {
    CompSpec scene = project("Scene", sceneSize).with(asExported(card("Card", 3), 1));
    for (int i = 2; i <= count; ++i) {
        scene = std::move(scene).with(i % 2 == 0 ? dot(i) : asExported(useOf("Card", sceneSize), i));
    }
    return scene;
}

struct Growth {
    const char* what;
    CompSpec (*project)(int count);
    bool limitsMemory = false;
    bool selectsAll = false;
};
constexpr std::array growths = {Growth{"layers, 100 in a composition", layersInManyComps, true},
                                Growth{"layers of the cropped composition", layersInOneComp, true},
                                Growth{"uses of the cropped composition", uses, true},
                                Growth{"compositions", comps, true},
                                Growth{"keyframes of a use", keyframes},
                                Growth{"masks of a use", masks},
                                Growth{"members of one object", members},
                                Growth{"selected layers", selectedLayers, true, true}};

// ---- One run, in a process of its own -----------------------------------------------------------------------

struct Run {
    double open = 0, crop = 0, write = 0;  // seconds
    double megabytes = 0;                  // most that was resident
    double total() const { return open + crop + write; }
};

struct NoAnswers : ui::Answerer {
    ui::Action next(const ui::Dialog&) override { return {}; }
};

double residentMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stod(line.substr(6)) * 1024 / 1e6;
        }
    }
    throw std::runtime_error("/proc says nothing of the memory");
}

int runOnce(const std::filesystem::path& file, bool selectsAll) {
    using Time = std::chrono::steady_clock;
    auto lap = Time::now();
    const auto secondsSince = [&lap] {
        const auto before = std::exchange(lap, Time::now());
        return std::chrono::duration<double>(lap - before).count();
    };
    NoAnswers answers;
    Run run;
    {
        Session session(model::Project::open(file), answers);
        session.loadPlugin(KESTRIN_PLUGIN);
        run.open = secondsSince();

        model::Comp& root = session.project().root();
        const model::Item& cropped = *root.layers.front()->source;
        std::vector<model::SelectedThing> selection;
        for (std::size_t i = 0; i < (selectsAll ? root.layers.size() : 1); ++i) {
            selection.push_back({root.layers[i]->id, -1});
        }
        session.select(root, std::move(selection));
        if (session.runCommand(session.pluginCommand()) != 0 || cropped.size.width >= sceneSize.width) {
            std::cerr << file << " was not cropped\n";
            return EXIT_FAILURE;
        }
        run.crop = secondsSince();

        std::ofstream out(file.string() + ".cropped", std::ios::binary);
        out << session.project().write() << std::flush;
        run.write = secondsSince();
        run.megabytes = residentMegabytes();
    }
    std::cout << run.open << " " << run.crop << " " << run.write << " " << run.megabytes << "\n";
    return EXIT_SUCCESS;
}

Run runApart(const char* self, const std::filesystem::path& file, bool selectsAll) {
    FILE* child = popen((std::string(self) + " " + file.string() + (selectsAll ? " all" : "")).c_str(), "r");
    Run run;
    const bool read = child != nullptr && std::fscanf(child, "%lf %lf %lf %lf", &run.open, &run.crop,
                                                      &run.write, &run.megabytes) == 4;
    if (child == nullptr || pclose(child) != 0 || !read) {
        throw std::runtime_error("a run failed");
    }
    return run;
}

// ---- All runs -----------------------------------------------------------------------------------------------

// Of the straight line through the seconds over the sizes, both as logarithms.
double slope(const std::vector<double>& seconds) {
    double x = 0, y = 0, xx = 0, xy = 0;
    for (std::size_t i = 0; i < seconds.size(); ++i) {
        const double size = std::log(sizes[i]);
        x += size;
        y += std::log(seconds[i]);
        xx += size * size;
        xy += size * std::log(seconds[i]);
    }
    const auto n = static_cast<double>(seconds.size());
    return (n * xy - x * y) / (n * xx - x * x);
}

bool measure(const char* self, const Growth& growth, const std::filesystem::path& folder) {
    std::printf("| %s | file, MB | open, s | crop, s | write, s | memory / file |\n|---|---|---|---|---|---|\n",
                growth.what);
    std::vector<double> crops, totals;
    double memory = 0;
    for (const int size : sizes) {
        const std::filesystem::path file = folder / "project.json";
        std::ofstream(file, std::ios::binary) << growth.project(size).text();
        const double megabytes = static_cast<double>(std::filesystem::file_size(file)) / 1e6;

        std::vector<Run> runs;
        for (int i = 0; i < 5; ++i) {
            runs.push_back(runApart(self, file, growth.selectsAll));
        }
        std::nth_element(runs.begin(), runs.begin() + 2, runs.end(),
                         [](const Run& a, const Run& b) { return a.total() < b.total(); });
        const Run& median = runs[2];
        memory = median.megabytes / megabytes;
        crops.push_back(median.crop);
        totals.push_back(median.total());
        std::printf("| %d | %.1f | %.3f | %.3f | %.3f | %.1f |\n", size, megabytes, median.open, median.crop,
                    median.write, memory);
    }
    std::printf("\nSlope of the crop %.2f, of the whole %.2f.\n\n", slope(crops), slope(totals));
    std::fflush(stdout);
    bool good = true;
    if (slope(crops) > steepest || slope(totals) > steepest) {
        std::cerr << growth.what << ": time grows faster than the project\n";
        good = false;
    }
    if (growth.limitsMemory && memory > largestMemory) {
        std::cerr << growth.what << ": takes " << memory << " times the file's size\n";
        good = false;
    }
    return good;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        if (argumentCount > 1) {
            return runOnce(arguments[1], argumentCount > 2);
        }
        const auto folder =
            std::filesystem::temp_directory_path() / ("kestrin-growth-" + std::to_string(getpid()));
        std::filesystem::create_directory(folder);
        bool good = true;
        for (const Growth& growth : growths) {
            good &= measure(arguments[0], growth, folder);
        }
        std::filesystem::remove_all(folder);
        return good ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "growth_bench: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
