// The two questions that a crop may ask: at which resolution, and what about 3D layers.

#include "support/Story.h"

namespace kestrin_test {
namespace {

CompSpec twoCards() {
    return kestrin_test::project("Scene", {400, 300})
        .with(precomp("A", {400, 300}).with(solid("a", {101, 50}).at({151, 125})))
        .with(precomp("B", {400, 300}).with(solid("b", {100, 50}).at({20, 30})));
}

struct Resolution : Story {
    void openAt(int factorX, int factorY) {
        open(twoCards());
        for (const model::ItemPtr& item : project().items) {
            if (item->comp) {
                item->comp->downsampleX = factorX;
                item->comp->downsampleY = factorY;
            }
        }
        select({"A", "B"});
    }
};

TEST_F(Resolution, IsAskedOncePerCommandAndNamedInWords) {
    for (const auto& [x, y, words] :
         {std::tuple(2, 2, "set to half."), std::tuple(3, 3, "set to third."),
          std::tuple(4, 4, "set to quarter."), std::tuple(1, 2, "set to less than quarter.")}) {
        answers = {};
        answers.answer("Low Resolution", "Accurate");
        openAt(x, y);
        const Picture before = pictureOf("Scene");
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(sizeOf("A"), (Size{101, 50})) << words;
        expectSame(pictureOf("Scene"), before);
        EXPECT_EQ(answers.shown["Low Resolution"], 1);
        EXPECT_NE(answers.texts.find(words), std::string::npos) << answers.texts;
        EXPECT_EQ(comp("A").downsampleX, x);
        EXPECT_EQ(session->held(), HeldThings{.memory = 1});  // the answer's text
        EXPECT_EQ(run(), 0);                                  // the next command asks again
        EXPECT_EQ(answers.shown["Low Resolution"], 2);
    }
}

TEST_F(Resolution, FastUsesThePixelsThereAre) {
    for (const auto& [button, factorX] : {std::pair("Fast", 2), std::pair("(the close box)", 1)}) {
        answers = {};
        answers.answer("Low Resolution", button);
        openAt(factorX, 2);
        EXPECT_EQ(run(), 0);
        // Half-size columns 75 to 124 are 150 to 248: the last one's block is not extended, and the renderer
        // leaves out the column that the rectangle covers half.
        EXPECT_EQ(sizeOf("A"), (Size{factorX == 2 ? 99 : 101, 49}));
        EXPECT_EQ(sizeOf("B"), (Size{factorX == 2 ? 99 : 100, 49}));
    }
}

TEST_F(Resolution, ARememberedChoiceIsNotAskedAgain) {
    answers.answer("Low Resolution", "Fast", {"Remember My Choice"});
    openAt(2, 2);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(preferences().getLong(section, "Resolution"), 2);
    select({"B"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(answers.shown["Low Resolution"], 1);

    openAt(4, 4);
    preferences().setLong(section, "Resolution", 1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sizeOf("A"), (Size{101, 50}));
    expectNothingOpen();
}

TEST_F(Resolution, AnAnswerSurvivesAnEmptyComposition) {
    answers.answer("Low Resolution", "Accurate");
    open(kestrin_test::project("Scene", {400, 300})
             .with(precomp("A", {400, 300}).with(solid("a", {101, 50}).at({151, 125})).shown(5, 30)));
    comp("Scene").downsampleX = comp("Scene").downsampleY = 2;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts().back(), "This composition is empty at the current time.");
    moveTo(5);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(answers.shown["Low Resolution"], 1);
    EXPECT_EQ(sizeOf("Scene"), (Size{101, 50}));
}

struct ThreeD : Story {
    CompSpec scene() {
        return kestrin_test::project("Scene", {400, 300})
            .with(precomp("A", {400, 300})
                      .with(solid("a", {100, 50}).at({150, 125}).threeD().index(7))
                      .with(solid("child", {9, 9}, "#00ff00").at({5, 5}).childOf(7))
                      .with(solid("masked", {90, 40}).at({150, 125}).masked({{0, 0}, {50, 0}, {50, 30}})))
            .with(precomp("B", {400, 300}).with(solid("b", {100, 50}).at({20, 30})).with(camera("cam")))
            .with(precomp("Flat", {400, 300}).with(solid("f", {60, 60}).at({300, 200})));
    }
};

TEST_F(ThreeD, YesMovesTheContentIntoACopyOnceAskedForAll) {
    answers.answer("3D Layers", "Yes");
    open(scene());
    select({"A", "B", "Flat"});
    const Picture before = pictureOf("Scene");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(answers.shown["3D Layers"], 1);

    EXPECT_EQ(sizeOf("A - Kestrin PreComp"), (Size{100, 50}));
    EXPECT_EQ(sizeOf("A"), (Size{400, 300}));
    ASSERT_EQ(comp("A - Kestrin PreComp").layers.size(), 1u);
    EXPECT_EQ(comp("A - Kestrin PreComp").layers[0]->source, comp("A").item);
    EXPECT_EQ(layer("a", "A").position.value, (model::Vec3{150, 125, 0}));
    EXPECT_EQ(sizeOf("B - Kestrin PreComp"), (Size{100, 50}));
    EXPECT_EQ(sizeOf("Flat"), (Size{60, 60}));
    expectSame(pictureOf("Scene"), before);
    EXPECT_EQ(session->freedWhileLocked, 1);
    expectNothingOpen();

    ASSERT_TRUE(undo());
    EXPECT_EQ(project().write(), opened);
}

TEST_F(ThreeD, NoAndStoredAnswersAndHiddenCameras) {
    answers.answer("3D Layers", "No");
    open(scene());
    select({"A"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sizeOf("A"), (Size{100, 50}));

    preferences().setLong(section, "ThreeD", 2);
    select({"B"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(answers.shown["3D Layers"], 1);
    EXPECT_EQ(sizeOf("B"), (Size{100, 50}));

    open(scene());
    preferences().setLong(section, "ThreeD", 1);
    layer("cam", "B").hidden = true;
    select({"A", "B"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(answers.shown["3D Layers"], 1);
    EXPECT_EQ(sizeOf("A - Kestrin PreComp"), (Size{100, 50}));
    EXPECT_EQ(sizeOf("B"), (Size{100, 50}));  // a camera that is switched off asks nothing
    expectNothingOpen();
}

}  // namespace
}  // namespace kestrin_test
