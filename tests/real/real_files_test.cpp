// Published animations, cropped one precomp at a time: what is on screen at that frame stays as it was.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "cli/Comparison.h"
#include "cli/Cropping.h"
#include "cli/ExitCode.h"
#include "cli/Find.h"

namespace kestrin_test {

namespace {

using namespace headless;
using namespace headless::cli;

constexpr int padding = 2;

struct RealFile {
    const char* name;
    bool mustMatch;  // the others: nothing inside, never shown, or edges too faint to be found
};

void PrintTo(const RealFile& file, std::ostream* out) {
    *out << file.name;
}

class RealFiles : public testing::TestWithParam<RealFile> {};

// One layer that shows a composition, and the frames at which it is cropped.
struct Use {
    std::string comp;
    std::size_t layer;
    std::set<int> frames;
};

std::vector<Use> usesIn(const model::Project& project) {
    std::set<const model::Item*> withChildren;  // a child of a use moves with its layer's corner: not looked at
    std::vector<const model::Layer*> layers;
    for (const model::ItemPtr& item : project.items) {
        if (!item->comp) {
            continue;
        }
        for (const model::LayerPtr& layer : item->comp->layers) {
            if (layer->source != nullptr && layer->source->comp) {
                layers.push_back(layer.get());
                if (!layer->children.empty()) {
                    withChildren.insert(layer->source);
                }
            }
        }
    }
    std::vector<Use> uses;
    for (const model::Layer* layer : layers) {
        const model::Comp& comp = *layer->comp;
        const int first = std::max(0, static_cast<int>(std::ceil(layer->inFrame - comp.firstFrame)));
        const int last =
            std::min(frameCount(comp) - 1, static_cast<int>(std::ceil(layer->outFrame - comp.firstFrame)) - 1);
        if (first <= last && !withChildren.contains(layer->source)) {
            uses.push_back({comp.item->name, project.indexOf(*layer), {first, (first + last) / 2, last}});
        }
    }
    return uses;
}

struct NoAnswers : ui::Answerer {
    ui::Action next(const ui::Dialog& dialog) override {
        ADD_FAILURE() << "an unexpected dialog: " << dialog.title;
        return {};
    }
};

// Of an odd size the plug-in loses half a pixel in the anchors of the uses, which is its rule. Given back here,
// so that the rest can be compared.
void giveBackHalfPixels(model::Project& project, const model::Project& before, const Use& use) {
    const model::Comp& comp = findComp(before, use.comp);
    const model::Item& source = *comp.layers[use.layer]->source;
    const model::Vec3 lost{source.size.width % 2 * 0.5, source.size.height % 2 * 0.5, 0};
    for (const model::ItemPtr& item : project.items) {
        if (!item->comp) {
            continue;
        }
        for (const model::LayerPtr& layer : item->comp->layers) {
            if (layer->source != nullptr && layer->source->id == source.id) {
                layer->anchor.add(lost);
                layer->touched = true;
            }
        }
    }
}

// The project as it is written after the crop; nothing where nothing was visible.
std::unique_ptr<model::Project> cropped(const std::string& file, const model::Project& before, const Use& use,
                                        int frame) {
    NoAnswers answers;
    Session session(model::Project::open(file), answers);
    session.loadPlugin(KESTRIN_PLUGIN);
    CropRequest request;
    request.comp = use.comp;
    request.layers = {"#" + std::to_string(use.layer + 1)};
    request.frame = frame;
    request.padding = padding;
    try {
        crop(session, answers, request);
    } catch (const Stop& stop) {
        EXPECT_EQ(stop.code, ExitCode::NothingToDo) << stop.what();
        return nullptr;
    }
    giveBackHalfPixels(session.project(), before, use);
    return model::Project::read(session.project().write());
}

TEST_P(RealFiles, NothingShiftsAtTheFrameThatWasCropped) {
    const std::string folder = KESTRIN_REAL_FILES;
    if (folder.empty()) {
        GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
    }
    const std::string file = folder + "/" + GetParam().name;
    const auto before = model::Project::open(file);
    int crops = 0;
    std::map<Verdict, int> verdicts;
    for (const Use& use : usesIn(*before)) {
        for (const int frame : use.frames) {
            const auto after = cropped(file, *before, use, frame);
            if (!after) {
                continue;
            }
            ++crops;
            const Comparison comparison = compare(*before, *after, {frame, use.comp});
            ++verdicts[comparison.verdict()];
            if (comparison.verdict() == Verdict::Shifted) {
                const FrameDifference& worst = comparison.compared.front().worst;
                std::ostringstream text;
                text << GetParam().name << ": layer #" << use.layer + 1 << " of \"" << use.comp
                     << "\" cropped at frame " << frame << ": " << worst.pixels << " pixels differ, by up to "
                     << worst.largest << " at " << worst.at.x << "," << worst.at.y;
                if (GetParam().mustMatch) {
                    ADD_FAILURE() << text.str();
                } else {
                    std::cout << text.str() << '\n';
                }
            }
        }
    }
    std::cout << GetParam().name << ": " << crops << " crops, " << verdicts[Verdict::Equal] << " equal, "
              << verdicts[Verdict::EdgeNoise] << " with edge noise, " << verdicts[Verdict::Shifted]
              << " shifted\n";
    EXPECT_TRUE(crops > 0 || !GetParam().mustMatch);
}

INSTANTIATE_TEST_SUITE_P(, RealFiles,
                         testing::Values(RealFile{"lock.json", true}, RealFile{"puzzle.json", true},
                                         RealFile{"coins.json", true}, RealFile{"morph-search.json", true},
                                         RealFile{"starfish.json", true}, RealFile{"animation.json", true},
                                         RealFile{"banner.json", true}, RealFile{"background.json", false},
                                         RealFile{"ripple.json", false}, RealFile{"adrock.json", false}),
                         [](const auto& file) {
                             std::string name = file.param.name;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
                             return name;
                         });

}  // namespace

}  // namespace kestrin_test
