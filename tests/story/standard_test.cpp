// The standard crop, from the selection to the picture that did not move.

#include <cmath>

#include "Crop.h"
#include "suites/Tables.h"
#include "support/Story.h"

namespace kestrin_test {
namespace {

CompSpec cardScene() {
    return kestrin_test::project("Scene", {400, 300})
        .with(precomp("Card", {400, 300}).with(solid("Red", {100, 50}).at({150, 125})));
}

TEST_F(Story, CropTrimsThePrecompAndNothingOnScreenShifts) {
    for (const render::Depth depth : {render::Depth::Bits8, render::Depth::Bits16, render::Depth::Bits32}) {
        open(cardScene(), {.depth = depth, .preferencesFile = {}, .homeFolder = {}});
        select({"Card"});
        const Picture before = pictureOf("Scene");

        EXPECT_EQ(run(), 0);

        EXPECT_EQ(sizeOf("Card"), (Size{100, 50}));
        EXPECT_EQ(pictureOf("Scene"), before);
        expectNear(layer("Red", "Card").position.value, {0, 0, 0});
        expectNear(layer("Card").anchor.value, {-150, -125, 0});
        expectNothingOpen();
        EXPECT_EQ(session->undoMismatches(), 0);

        // The file says it all: opened anew it shows the same.
        const std::string saved = project().write();
        ASSERT_EQ(project().history.done().size(), 1u);
        EXPECT_EQ(project().history.done()[0].name, "Kestrin");
        ASSERT_TRUE(undo());
        EXPECT_EQ(project().write(), opened);
        EXPECT_EQ(pictureOf("Scene"), before);
        auto reopened = model::Project::read(saved);
        EXPECT_EQ(CompPictures(*reopened).picture(reopened->root(), 0), before);
    }
}

TEST_F(Story, OnlyActivePrecompsOfTheSelectionAreCroppedEachSourceOnce) {
    open(kestrin_test::project("Scene", {400, 300})
             .with(solid("Solid", {20, 20}))
             .with(precomp("Ended", {400, 300}).with(solid("s", {50, 50})).shown(0, 10))
             .with(precomp("Later", {400, 300}).with(solid("s", {50, 50})).shown(11, 30))
             .with(precomp("Card", {400, 300}).with(solid("Red", {100, 50}).at({150, 125})).shown(10, 11))
             .with(useOf("Card", {400, 300}).set("nm", "Again").at({30, 20}))
             .with(precomp("Empty", {400, 300}).with(solid("s", {50, 50}).shown(0, 3)))
             .with(precomp("Void", {400, 300})));
    moveTo(10);
    select({"Solid", "Ended", "Later", "Card", "Again", "Empty", "Void"});
    const Picture before = pictureOf("Scene", 10);

    EXPECT_EQ(run(), 0);

    EXPECT_EQ(sizeOf("Card"), (Size{100, 50}));
    for (const char* name : {"Ended", "Later", "Empty", "Void"}) {
        EXPECT_EQ(sizeOf(name), (Size{400, 300})) << name;
    }
    expectSame(pictureOf("Scene", 10), before);
    ASSERT_EQ(alerts().size(), 1u);
    EXPECT_TRUE(alerts()[0].starts_with("Some layers were not cropped:\r\n\r\nEmpty, Void\r\n\r\nThis is"));
    EXPECT_EQ(session->calls().counts.find("AEGP_RenderAndCheckoutFrame")->second, 3u);
    // What was left after the filters is the selection now: of the two uses the lower one.
    std::vector<std::string> selected;
    for (const model::SelectedThing& thing : session->selectionInOrder(comp("Scene"))) {
        selected.push_back(project().nameOf(*project().layer(thing.layer)));
    }
    EXPECT_EQ(selected, (std::vector<std::string>{"Again", "Empty", "Void"}));
    EXPECT_EQ(comp("Scene").currentFrame, 10);
    expectNothingOpen();
}

TEST_F(Story, NothingToCropIsSaidAndChangesNothing) {
    open(kestrin_test::project("Scene", {400, 300})
             .with(precomp("Ended", {400, 300}).with(solid("s", {50, 50})).shown(0, 10)));
    moveTo(10);
    select({"Ended"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts(),
              std::vector<std::string>{"There are no selected layers at the current time slider position."});
    // The driver has ended the group itself, and the hook ends it once more.
    EXPECT_EQ(session->undoMismatches(), 1);
    EXPECT_EQ(project().write(), opened);
    EXPECT_TRUE(project().history.done().empty());
    expectNothingOpen();
}

TEST_F(Story, WithoutASelectionTheCompositionItselfIsCropped) {
    answers.answer("3D Layers", "No");
    open(kestrin_test::project("Scene", {400, 300})
             .with(solid("Red", {100, 50}).at({{0, {10, 20, 0}, {5, 6, 0}, {-7, 8, 0}}, {20, {200, 100, 0}}}))
             .with(solid("child", {10, 10}).at({5, 5}).childOf(9))
             .with(null("n").index(9).at({40, 40}))
             .with(null("separated").moving({{0, 100}, {10, 300}}, {{0, 50}, {5, 70}}))
             .with(null("no position"))
             .with(camera("camera").at({960, 540, -1000}).anchor({960, 540, 0})));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sizeOf("Scene"), (Size{100, 50}));
    const auto& keys = layer("Red").position.keys;
    expectNear(keys[1].value, {190, 80, 0});
    expectNear(*keys[0].outTangent, {5, 6, 0});
    expectNear(*keys[0].inTangent, {-7, 8, 0});
    expectNear(layer("child").position.value, {5, 5, 0});
    expectNear(layer("n").position.value, {30, 20, 0});
    const auto& axes = layer("separated").position.axes;
    EXPECT_EQ(axes[0].keys[1].value, 290);
    EXPECT_EQ(axes[1].keys[0].value, 30);
    expectNear(layer("no position").position.value, {-10, -20, 0});
    expectNear(layer("camera").position.value, {950, 520, -1000});
    expectNear(layer("camera").anchor.value, {950, 520, 0});
}

TEST_F(Story, ATransparentCompositionIsCroppedOnlyWherePaddingCoversIt) {
    for (const int padding : {0, 149, 150}) {
        open(kestrin_test::project("Scene", {300, 200}).with(precomp("Card", {300, 200}).with(null("n"))));
        select({"Card"});
        pad(padding);
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(alerts().empty(), padding == 150) << padding;
    }
}

TEST_F(Story, SeveralCompositionsSelectedInTheProjectPanel) {
    open(kestrin_test::project("Scene", {400, 300})
             .with(precomp("A", {400, 300}).with(solid("a", {30, 40}).at({10, 10})))
             .with(precomp("B", {400, 300}).with(solid("b", {50, 60}).at({20, 30}).shown(5, 9)))
             .with(precomp("C", {400, 300}).with(solid("c", {70, 80}).at({50, 60}))));
    comp("B").currentFrame = 6;
    session->selectInProjectPanel({comp("A").item->id, comp("B").item->id});
    const Picture before = pictureOf("Scene", 6);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sizeOf("A"), (Size{30, 40}));
    EXPECT_EQ(sizeOf("B"), (Size{50, 60}));
    EXPECT_EQ(sizeOf("C"), (Size{400, 300}));
    expectSame(pictureOf("Scene", 6), before);
    session->selectInProjectPanel({});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(project().history.done().size(), 1u);  // an empty group leaves no step
    expectNothingOpen();
}

TEST_F(Story, PaddingExpandAndMasksChangeTheRectangle) {
    open(cardScene());
    select({"Card"});
    const Picture before = pictureOf("Scene");
    for (const int amount : {12, -10}) {
        pad(amount);
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(sizeOf("Card"), (Size{100 + 2 * amount, 50 + 2 * amount}));
        EXPECT_EQ(pictureOf("Scene") == before, amount > 0);
        ASSERT_TRUE(undo());
    }
    preferences().setBool(section, "Padding", false);

    // Expanding runs the crop twice: out by the amount, then back to the content. Of the two sizes one is odd,
    // which costs every use half a pixel.
    preferences().setBool(section, "Expand", true);
    for (const int amount : {20, 0}) {
        preferences().setFloat(section, "ExpandAmount", amount);
        session->clearCalls();
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(session->calls().counts.find("AEGP_SetCompDimensions")->second, amount > 0 ? 2u : 1u);
        EXPECT_EQ(sizeOf("Card"), (Size{100, 50}));
        const double lost = amount > 0 ? 0.5 : 0;
        expectNear(layer("Card").anchor.value, {-150 - lost, -125 - lost, 0});
        ASSERT_TRUE(undo());
    }

    open(kestrin_test::project("Scene", {400, 300})
             .with(precomp("Card", {400, 300})
                       .with(solid("Red", {100, 50}).at({150, 125}))
                       .masked({{160, 100}, {200, 100}, {200, 160}, {160, 160}})));
    select({"Card"});
    preferences().setBool(section, "IncludeMasks", true);
    const Picture masked = pictureOf("Scene");
    EXPECT_EQ(run(), 0);
    // The region's right and bottom edges count as last column and row.
    EXPECT_EQ(sizeOf("Card"), (Size{41, 36}));
    EXPECT_EQ(pictureOf("Scene"), masked);
    expectNothingOpen();
}

// A frame measured without a command around it.
TEST_F(Story, EdgesOfARegionThatAreNoNumbersLimitNothing) {
    open(cardScene());
    AEGP_RenderOptionsH options = nullptr;
    AEGP_FrameReceiptH receipt = nullptr;
    AEGP_WorldH world = nullptr;
    tableRenderOptionsSuite3.AEGP_NewFromItem(0, session->handleOf(comp("Card").item), &options);
    tableRenderSuite3.AEGP_RenderAndCheckoutFrame(options, nullptr, nullptr, &receipt);
    tableRenderSuite3.AEGP_GetReceiptWorld(receipt, &world);
    SPBasicSuite basic = *session->basicSuite();
    crop::CroppingBounds bounds{};
    const double nan = std::nan("");
    EXPECT_EQ(crop::findCropBounds(&basic, &world, 1, 1, &bounds, {nan, 1e300, nan, -1e300}), 0);
    EXPECT_EQ(bounds.left, 150);
    EXPECT_EQ(bounds.right, 249);
    EXPECT_EQ(bounds.top, 2147483647);
    EXPECT_EQ(bounds.bottom, -2147483648.0);
}

TEST_F(Story, TheSourceIsRenderedAtTheTimeThatTheLayerShows) {
    const auto blinking = [] {
        return precomp("Card", {400, 300})
            .with(solid("early", {300, 200}).shown(-100, 45))
            .with(solid("Red", {100, 50}).at({150, 125}).shown(45, 46))
            .with(solid("late", {300, 200}).shown(46, 300));
    };
    const auto cropped = [&](LayerSpec use, double frame) {
        open(kestrin_test::project("Scene", {400, 300}).lasting(0, 200).with(std::move(use).shown(0, 200)));
        moveTo(frame);
        select({"Card"});
        const Picture before = pictureOf("Scene", frame);
        EXPECT_EQ(run(), 0);
        expectSame(pictureOf("Scene", frame), before);
        return sizeOf("Card");
    };
    EXPECT_EQ(cropped(blinking(), 45), (Size{100, 50}));
    EXPECT_EQ(cropped(blinking().startingAt(-15), 30), (Size{100, 50}));
    EXPECT_EQ(cropped(blinking().startingAt(20, 2), 110), (Size{100, 50}));
    EXPECT_EQ(cropped(blinking().remapped(1.5), 7), (Size{100, 50}));
}

TEST_F(Story, APictureWithOtherPixelsThanSquareIsMovedInSquareOnes) {
    open(cardScene());
    comp("Card").pixelAspect = {10, 11};
    select({"Card"});
    EXPECT_EQ(run(), 0);
    expectNear(layer("Red", "Card").position.value, {0, 0, 0});
    EXPECT_EQ(comp("Card").pixelAspect, (model::PixelAspect{10, 11}));
}

TEST_F(Story, TheHookAnswersForItsOwnCommandOnly) {
    open(cardScene());
    select({"Card"});
    EXPECT_NE(session->runCommand(session->pluginCommand() + 1), 0);  // nobody's
    EXPECT_EQ(session->runCommand(0), 1);
    EXPECT_EQ(project().write(), opened);
}

}  // namespace
}  // namespace kestrin_test
