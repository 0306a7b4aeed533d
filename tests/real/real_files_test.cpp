// Published animations, cropped one precomp at a time: what is on screen at that frame stays as it was.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <set>
#include <sstream>

#include "cli/Comparison.h"
#include "cli/Cropping.h"
#include "cli/ExitCode.h"
#include "cli/Find.h"
#include "real/Undo.h"

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

// One layer that shows a composition, and the frames at which it is cropped.
struct Use {
    std::string comp;
    std::size_t layer;
    std::set<int> frames;
};

std::vector<Use> usesIn(const model::Project& project) {
    std::vector<const model::Layer*> layers;
    for (const model::ItemPtr& item : project.items) {
        if (!item->comp) {
            continue;
        }
        for (const model::LayerPtr& layer : item->comp->layers) {
            if (layer->source != nullptr && layer->source->comp) {
                layers.push_back(layer.get());
            }
        }
    }
    std::vector<Use> uses;
    for (const model::Layer* layer : layers) {
        const model::Comp& comp = *layer->comp;
        const int first = std::max(0, static_cast<int>(std::ceil(layer->inFrame - comp.firstFrame)));
        const int last =
            std::min(frameCount(comp) - 1, static_cast<int>(std::ceil(layer->outFrame - comp.firstFrame)) - 1);
        if (first <= last) {
            uses.push_back({comp.item->name, project.indexOf(*layer), {first, (first + last) / 2, last}});
        }
    }
    return uses;
}

// The project as it is written after the crop; nothing where nothing was visible.
std::unique_ptr<model::Project> cropped(const std::string& file, const Use& use, Command command, int frame) {
    WorkplaceOptions options;
    options.project = file;
    options.plugin = KESTRIN_PLUGIN;
    Workplace workplace(options);
    const std::string before = workplace.session().project().write();
    SelectionOptions selection;
    selection.comp = use.comp;
    selection.layers = {"#" + std::to_string(use.layer + 1)};
    selection.frame = frame;
    CropRequest request;
    request.command = command;
    request.padding = padding;
    try {
        crop(workplace, workplace.open(selection), request);
    } catch (const Stop& stop) {
        EXPECT_EQ(stop.code, ExitCode::NothingToDo) << stop.what();
        expectUndoAndRedo(workplace.session().project(), before);
        return nullptr;
    }
    expectUndoAndRedo(workplace.session().project(), before);
    return model::Project::read(workplace.session().project().write());
}

// How the crops of one file came out; each that shifted is said, and fails the test where it must match.
class Tally {
 public:
    explicit Tally(RealFile file) : file_(std::move(file)) {}
    void add(const Comparison& comparison, const std::string& what) {
        ++crops_;
        for (const ComparedComp& comp : comparison.compared) {
            if (comp.verdict == Verdict::Shifted) {
                std::ostringstream text;
                text << file_.name << ": " << what << ": in \"" << comp.name << "\", frame " << comp.worst.frame
                     << ", " << comp.worst.pixels << " pixels differ, by up to " << comp.worst.largest << " at "
                     << comp.worst.at.x << "," << comp.worst.at.y;
                std::cout << text.str() << '\n';
                EXPECT_FALSE(file_.mustMatch) << text.str();
            }
        }
    }
    ~Tally() { EXPECT_TRUE(crops_ > 0 || !file_.mustMatch); }

 private:
    RealFile file_;
    int crops_ = 0;
};

// Whether the composition is shown once at that frame: other moments of it, shown beside, may reach further
// than the moment that is cropped to.
bool shownOnce(const model::Project& project, const Use& use, int frame) {
    const model::Comp& comp = findComp(project, use.comp);
    const double fileFrame = comp.firstFrame + frame;
    const model::Item* source = comp.layers[use.layer]->source;
    return std::count_if(comp.layers.begin(), comp.layers.end(), [&](const model::LayerPtr& layer) {
               return layer->source == source && layer->inFrame <= fileFrame && fileFrame < layer->outFrame;
           }) == 1;
}

std::string describe(const Use& use) {
    return "layer #" + std::to_string(use.layer + 1) + " of \"" + use.comp + "\"";
}

struct RealFiles : testing::TestWithParam<RealFile> {
    void SetUp() override {
        const std::string folder = KESTRIN_REAL_FILES;
        if (folder.empty()) {
            GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
        }
        file = folder + "/" + GetParam().name;
        before = model::Project::open(file);
    }
    std::string file;
    std::unique_ptr<model::Project> before;
};

TEST_P(RealFiles, NothingShiftsAtTheFrameThatWasCropped) {
    Tally tally(GetParam());
    for (const Use& use : usesIn(*before)) {
        for (const int frame : use.frames) {
            if (!shownOnce(*before, use, frame)) {
                continue;
            }
            if (const auto after = cropped(file, use, Command::Standard, frame)) {
                tally.add(compare(*before, *after, {frame, use.comp}),
                          describe(use) + " cropped at frame " + std::to_string(frame));
            }
        }
    }
}

TEST_P(RealFiles, NothingShiftsAtAnyFrameAfterADurationCrop) {
    Tally tally(GetParam());
    std::set<const model::Item*> done;
    for (const Use& use : usesIn(*before)) {
        if (!done.insert(findComp(*before, use.comp).layers[use.layer]->source).second) {
            continue;  // another use of it has been cropped
        }
        if (const auto after = cropped(file, use, Command::Duration, *use.frames.begin())) {
            tally.add(compare(*before, *after), describe(use));
        }
    }
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
