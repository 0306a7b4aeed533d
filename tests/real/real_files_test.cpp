// Published animations, cropped one precomp at a time: what is on screen at that frame stays as it was.

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "cli/Comparison.h"
#include "cli/Comps.h"
#include "cli/Find.h"
#include "real/Crop.h"

namespace kestrin_test {

namespace {

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

std::vector<Use> shownUses(const model::Project& project) {
    std::vector<Use> uses;
    forEachUse(project, [&](const model::Layer& layer) {
        const model::Comp& comp = *layer.comp;
        const int first = std::max(0, static_cast<int>(std::ceil(layer.inFrame - comp.firstFrame)));
        const int last =
            std::min(frameCount(comp) - 1, static_cast<int>(std::ceil(layer.outFrame - comp.firstFrame)) - 1);
        if (first <= last) {
            uses.push_back({comp.item->name, project.indexOf(layer), {first, (first + last) / 2, last}});
        }
    });
    return uses;
}

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

struct RealFiles : testing::TestWithParam<RealFile> {
    void SetUp() override {
        const std::string folder = KESTRIN_REAL_FILES;
        if (folder.empty()) {
            GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
        }
        file = folder + "/" + GetParam().name;
        before = model::Project::open(file);
    }
    // One use after another, cropped and compared, at one frame or at all.
    void check(const Use& use, Command command, int frame, std::optional<int> comparedFrame) {
        const std::string after = cropped(file, use.comp, use.layer + 1, command, frame);
        if (after.empty()) {
            return;
        }
        ++crops;
        const std::string comp = comparedFrame ? use.comp : "";
        for (const ComparedComp& compared :
             compare(*before, *model::Project::read(after), {comparedFrame, comp}).compared) {
            EXPECT_TRUE(compared.verdict != Verdict::Shifted || !GetParam().mustMatch)
                << "layer #" << use.layer + 1 << " of \"" << use.comp << "\", cropped at frame " << frame
                << ": in \"" << compared.name << "\", frame " << compared.worst.frame << ", by up to "
                << compared.worst.largest << " at " << compared.worst.at.x << "," << compared.worst.at.y;
        }
    }
    void TearDown() override { EXPECT_TRUE(crops > 0 || !GetParam().mustMatch || IsSkipped()); }

    std::string file;
    std::unique_ptr<model::Project> before;
    int crops = 0;
};

TEST_P(RealFiles, NothingShiftsAtTheFrameThatWasCropped) {
    for (const Use& use : shownUses(*before)) {
        for (const int frame : use.frames) {
            if (shownOnce(*before, use, frame)) {
                check(use, Command::Standard, frame, frame);
            }
        }
    }
}

TEST_P(RealFiles, NothingShiftsAtAnyFrameAfterADurationCrop) {
    std::set<const model::Item*> done;
    for (const Use& use : shownUses(*before)) {
        if (done.insert(findComp(*before, use.comp).layers[use.layer]->source).second) {
            check(use, Command::Duration, *use.frames.begin(), std::nullopt);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, RealFiles,
                         testing::Values(RealFile{"lock.json", true}, RealFile{"puzzle.json", true},
                                         RealFile{"coins.json", true}, RealFile{"morph-search.json", true},
                                         RealFile{"starfish.json", true}, RealFile{"animation.json", true},
                                         RealFile{"banner.json", true}, RealFile{"background.json", false},
                                         RealFile{"adrock.json", false}),
                         [](const auto& file) { return wordOf(file.param.name); });

// Moving masks, of a layer that shows the composition beside one without its mask.
TEST(RealMasks, NothingShiftsAfterAMaskCrop) {
    if (std::string(KESTRIN_REAL_FILES).empty()) {
        GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
    }
    for (const auto& [name, layer] : {std::pair("navidad.json", 9), std::pair("banner.json", 4)}) {
        const std::string file = std::string(KESTRIN_REAL_FILES) + "/" + name;
        const auto before = model::Project::open(file);
        const std::string after = cropped(file, "", static_cast<std::size_t>(layer), Command::MaskCrop);
        ASSERT_NE(after, "");
        const Comparison comparison = compare(*before, *model::Project::read(after), {89, ""});
        EXPECT_FALSE(comparison.compared.empty());
        EXPECT_NE(comparison.verdict(), Verdict::Shifted) << name;
    }
}

}  // namespace

}  // namespace kestrin_test
