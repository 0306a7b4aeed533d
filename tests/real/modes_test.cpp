// The duration and the mask crop on published animations.

#include <gtest/gtest.h>

#include <cmath>

#include "cli/Comparison.h"
#include "cli/Cropping.h"
#include "cli/ExitCode.h"
#include "real/Undo.h"

namespace kestrin_test {

namespace {

using namespace headless;
using namespace headless::cli;

class RealModes : public testing::Test {
 protected:
    void SetUp() override {
        if (std::string(KESTRIN_REAL_FILES).empty()) {
            GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
        }
    }
    // Opens a file's composition with one layer selected, by its place from 1.
    void open(const std::string& file, const std::string& comp, int layer) {
        workplace.reset();
        WorkplaceOptions options;
        options.project = std::string(KESTRIN_REAL_FILES) + "/" + file;
        options.plugin = KESTRIN_PLUGIN;
        before = model::Project::open(options.project);
        workplace = std::make_unique<Workplace>(options);
        SelectionOptions selection;
        selection.comp = comp;
        selection.layers = {"#" + std::to_string(layer)};
        opened = &workplace->open(selection);
        source = opened->layers[static_cast<std::size_t>(layer) - 1]->source;
        use = opened->layers[static_cast<std::size_t>(layer) - 1].get();
    }
    model::Project& project() { return workplace->session().project(); }
    CropResult run(Command command, bool includeMasks = false) {
        CropRequest request;
        request.command = command;
        request.padding = command == Command::MaskCrop ? 0 : 2;
        request.includeMasks = includeMasks;
        const CropResult result = crop(*workplace, *opened, request);
        expectUndoAndRedo(project(), before->write());
        return result;
    }
    Verdict verdict(std::optional<int> frame = std::nullopt) {
        return compare(*before, *model::Project::read(project().write()), {frame, opened->assetId}).verdict();
    }

    std::unique_ptr<model::Project> before;
    std::unique_ptr<Workplace> workplace;
    model::Comp* opened = nullptr;
    model::Item* source = nullptr;
    model::Layer* use = nullptr;
};

TEST_F(RealModes, MasksLimitTheDurationCrop) {
    open("navidad.json", "", 9);
    run(Command::Duration);
    const model::Size whole = source->size;
    open("navidad.json", "", 9);
    run(Command::Duration, true);
    EXPECT_LE(source->size.width, whole.width);
    EXPECT_LE(source->size.height, whole.height);
    EXPECT_LT(source->size.width, 1920);
    EXPECT_NE(verdict(89), Verdict::Shifted);
}

TEST_F(RealModes, TheMaskCropCutsToTheMasksCorners) {
    struct Case {
        const char* file;
        int layer;
        bool animated;
    };
    for (const Case& each :
         {Case{"navidad.json", 3, false}, Case{"navidad.json", 9, true}, Case{"banner.json", 4, true}}) {
        open(each.file, "", each.layer);
        ASSERT_EQ(use->masks.size(), 1u);
        EXPECT_EQ(!use->masks[0]->path.keys.empty(), each.animated) << each.file;
        double left = source->size.width, top = source->size.height, right = 0, bottom = 0;
        const model::MaskPath path = use->masks[0]->path.at(opened->firstFrame);
        for (const model::MaskVertex& vertex : path.vertices) {
            left = std::min(left, std::round(vertex.point.x));
            top = std::min(top, std::round(vertex.point.y));
            right = std::max(right, std::round(vertex.point.x));
            bottom = std::max(bottom, std::round(vertex.point.y));
        }
        run(Command::MaskCrop);
        EXPECT_EQ(source->size,
                  (model::Size{static_cast<int>(right - left) + 1, static_cast<int>(bottom - top) + 1}))
            << each.file << ", layer " << each.layer;
        if (each.animated) {  // the other one is shown without its mask, too
            EXPECT_NE(verdict(89), Verdict::Shifted) << each.file << ", layer " << each.layer;
        }
    }
}

}  // namespace

}  // namespace kestrin_test
