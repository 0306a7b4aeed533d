// The mask crop: the source of a layer is cut to the box of one of the layer's masks.

#include "support/Story.h"

namespace kestrin_test {
namespace {

struct MaskCrop : Story {
    static LayerSpec card() {
        return precomp("Card", {400, 300})
            .with(solid("Red", {400, 300}))
            .with(solid("dot", {9, 9}, "#00ff00").at({60, 70}));
    }
    void openWith(LayerSpec use) {
        open(kestrin_test::project("Scene", {400, 300})
                 .with(std::move(use))
                 .with(useOf("Card", {400, 300}).hidden().set("nm", "other")));
        select({"Card"});
    }
};

TEST_F(MaskCrop, TheOnlyMaskNeedsNoQuestion) {
    openWith(card().masked(box(10.4, 20.5, 110.6, 220.5)));
    EXPECT_EQ(runMaskCrop(), 0);
    EXPECT_EQ(sizeOf("Card"), (Size{111 - 10 + 1, 221 - 21 + 1}));
    expectNear(layer("dot", "Card").position.value, {50, 49, 0});
    EXPECT_EQ(project().history.done().back().name, "Mask Crop");
    EXPECT_EQ(layer("Card").masks.size(), 1u);
    ASSERT_TRUE(undo());
    pad(5);
    preferences().setBool(section, "DeleteMask", true);
    EXPECT_EQ(runMaskCrop(), 0);
    EXPECT_EQ(sizeOf("Card"), (Size{112, 211}));
    EXPECT_EQ(model::Project::read(project().write())->root().layers[0]->masks.size(), 0u);
    expectNothingOpen();
    ASSERT_TRUE(undo());
    EXPECT_EQ(project().write(), opened);
}

TEST_F(MaskCrop, OfSeveralOneIsChosen) {
    const auto three = [] {
        return card()
            .masked(box(0, 0, 30, 30), "First")
            .masked(box(50, 60, 149, 159), "Second \"two\"")
            .masked(box(7, 8, 9, 9), "Third");
    };
    for (const auto& [entry, size] : {std::pair("Second \"two\"", 100), std::pair("", 31)}) {
        answers.answer("Choose Mask", "OK", {}, entry);  // the first is chosen beforehand
        openWith(three());
        EXPECT_EQ(runMaskCrop(), 0);
        EXPECT_EQ(sizeOf("Card"), (Size{size, size}));
        expectNothingOpen();
    }
    answers.answer("Choose Mask", "Cancel");
    openWith(three());
    EXPECT_EQ(runMaskCrop(), 0);
    EXPECT_EQ(project().write(), opened);
    EXPECT_EQ(session->undoMismatches(), 1);  // the group was left to the host
    EXPECT_EQ(session->held(), (HeldThings{.collections = 1, .memory = 1}));
    EXPECT_EQ(project().history.depth(), 0);

    // A mask that is selected with its layer is the one, and the masks leave the selection.
    openWith(three());
    selectMask("Card", 1);
    EXPECT_EQ(runMaskCrop(), 0);
    EXPECT_EQ(sizeOf("Card"), (Size{100, 100}));
    EXPECT_EQ(comp("Scene").selection, (std::vector<model::SelectedThing>{{layer("Card").id, -1}}));
    expectNothingOpen();
}

TEST_F(MaskCrop, AMovingMaskIsMeasuredAtTheSourcesTime) {
    openWith(card().masked({{0, box(50, 60, 149, 159)}, {10, box(50, 60, 249, 259)}}));
    comp("Card").currentFrame = 10;
    EXPECT_EQ(runMaskCrop(), 0);
    EXPECT_EQ(sizeOf("Card"), (Size{200, 200}));
    EXPECT_EQ(layer("Card").masks[0]->path.keys[0].value.vertices[0].point, (model::Vec3{0, 0, 0}));
}

TEST_F(MaskCrop, AMaskOutsideOrWithoutExtentIsTheHostsToRefuse) {
    openWith(card().masked(box(500, 400, 600, 500)));
    preferences().setBool(section, "Padding", false);
    EXPECT_EQ(runMaskCrop(), 0);  // starts at the composition's size, so only right and bottom move
    EXPECT_EQ(sizeOf("Card"), (Size{600 - 400 + 1, 500 - 300 + 1}));

    openWith(card().masked(box(20, 20, 30, 30)));
    pad(-8);
    EXPECT_EQ(runMaskCrop(), A_Err_GENERIC);  // less than no pixels
    EXPECT_EQ(project().write(), opened);
}

}  // namespace
}  // namespace kestrin_test
