// The duration crop: every frame is rendered, and the union of what they show is kept.

#include "support/Story.h"

namespace kestrin_test {
namespace {

struct Duration : Story {
    // A square that moves from (20, 30) to (300, 200) and a blink at the edge on one frame.
    static CompSpec scene() {
        return kestrin_test::project("Scene", {400, 300})
            .with(precomp("Card", {400, 300})
                      .with(solid("mover", {40, 40}).at({{0, {20, 30, 0}}, {29, {300, 200, 0}}}))
                      .with(solid("blink", {10, 10}).at({0, 250}).shown(17, 18)))
            .with(useOf("Card", {400, 300}).set("nm", "other").scale({50, 50, 100}));
    }

    void openSelected(SessionOptions options = {}) {
        open(scene(), std::move(options));
        select({"Card"});
    }
    void expectCropped() {
        auto untouched = model::Project::read(opened);
        CompPictures pictures(*untouched);
        for (int frame = 0; frame < 30; frame += 7) {
            expectSame(pictureOf("Scene", frame), pictures.picture(untouched->root(), frame));
        }
    }
};

TEST_F(Duration, KeepsWhateverIsVisibleAtAnyTime) {
    openSelected();
    moveTo(12);
    EXPECT_EQ(runDuration(), 0);
    EXPECT_EQ(sizeOf("Card"), (Size{340, 230}));  // 0 to 339, 30 to 259
    expectCropped();
    EXPECT_EQ(comp("Scene").currentFrame, 12);
    EXPECT_EQ(project().history.done().back().name, "Kestrin Duration");
    const auto& shown = session->progressShown();
    ASSERT_EQ(shown.size(), 30u);
    EXPECT_TRUE(shown.front() == 1 && shown.back() == 97 && std::is_sorted(shown.begin(), shown.end()));
    expectNothingOpen();
    ASSERT_TRUE(undo());
    EXPECT_EQ(project().write(), opened);
}

TEST_F(Duration, AnotherTimeScaleIsRescaledWithTruncation) {
    for (const std::uint32_t scale : {30u, 7u}) {
        SessionOptions options;
        options.durationScale = scale;
        openSelected(std::move(options));
        EXPECT_EQ(runDuration(), 0);
        EXPECT_EQ(session->progressShown().size(), 30u);
        EXPECT_TRUE(scale != 30 || sizeOf("Card") == (Size{340, 230}));
        expectNothingOpen();
    }
}

TEST_F(Duration, HoldingBothKeysEndsItAndChangesNothing) {
    openSelected();
    session->onProgress = [&](int percent) { session->holdKeys(percent > 30, percent > 30); };
    EXPECT_EQ(runDuration(), 0);
    EXPECT_EQ(session->calls().counts.find("AEGP_RenderAndCheckoutFrame")->second, 11u);
    EXPECT_EQ(project().write(), opened);
    EXPECT_TRUE(project().history.done().empty());
    EXPECT_FALSE(session->progressOpen());
    EXPECT_EQ(session->undoMismatches(), 0);
    EXPECT_EQ(session->held(), HeldThings{.options = 1});  // the render options stay open
}

TEST_F(Duration, NothingVisibleEndsItSilently) {
    open(kestrin_test::project("Scene", {400, 300}).with(precomp("Card", {400, 300}).with(null("n"))));
    select({"Card"});
    EXPECT_EQ(runDuration(), 0);
    EXPECT_EQ(project().write(), opened);
    EXPECT_TRUE(alerts().empty());
    EXPECT_FALSE(session->progressOpen());
    EXPECT_EQ(session->held(), HeldThings{.options = 1});
}

TEST_F(Duration, MasksOfTheLayerLimitIt) {
    CompSpec spec = scene();
    spec.layers[0] = std::move(spec.layers[0])
                         .masked({{0, {{50, 60}, {200, 60}, {200, 150}, {50, 150}}},
                                  {29, {{70, 60}, {220, 60}, {220, 170}, {70, 170}}}});
    spec.layers.pop_back();
    open(spec);
    select({"Card"});
    preferences().setBool(section, "IncludeMasks", true);
    EXPECT_EQ(runDuration(), 0);
    EXPECT_EQ(sizeOf("Card").width, 171);  // 50 to 220
    EXPECT_NEAR(sizeOf("Card").height, 111, 1);
    expectCropped();
    expectNothingOpen();

    // A composition that is active itself has no layer whose masks could count.
    open(spec);
    preferences().setBool(section, "IncludeMasks", true);
    EXPECT_EQ(runDuration(), 0);
    EXPECT_EQ(session->calls().counts.count("AEGP_GetLayerMaskedBounds"), 0u);
}

}  // namespace
}  // namespace kestrin_test
