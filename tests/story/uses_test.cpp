// Every layer that shows a cropped composition, wherever it is, and whatever it does with it.

#include "support/Story.h"

namespace kestrin_test {
namespace {

// Content from (100, 50) to (1099, 549) of 1920 x 1080.
LayerSpec content() {
    return solid("content", {1000, 500}).at({100, 50});
}

TEST_F(Story, AnchorsAndMasksOfEveryUseFollow) {
    CompSpec scene =
        kestrin_test::project("Scene", {1920, 1080})
            .with(precomp("C", {1920, 1080})
                      .with(content())
                      .with(solid("dot", {40, 40}, "#00ff00").at({{0, {300, 200, 0}}, {20, {900, 400, 0}}})))
            .with(useOf("C", {1920, 1080}).set("nm", "centred").anchor({960, 540}).at({960, 540}))
            .with(useOf("C", {1920, 1080}).set("nm", "deep").anchor({300, 77, 12}).threeD())
            .with(useOf("C", {1920, 1080})
                      .set("nm", "keyed")
                      .anchor({{0, {100, 100, 10}}, {20, {800, 500, 20}}})
                      .at({200, 200}))
            .with(useOf("C", {1920, 1080})
                      .set("nm", "masked")
                      .masked({{900, 80}, {1000, 80}, {1000, 300}, {850, 200}}))
            .with(useOf("C", {1920, 1080})
                      .set("nm", "animated mask")
                      .at({0, 400})
                      .masked({{0, {{100, 100}, {500, 100}, {500, 400}}},
                               {20, {{200, 100}, {700, 150}, {500, 500}}}}))
            .with(precomp("Inner", {1920, 1080})
                      .with(useOf("C", {1920, 1080}).set("nm", "nested").at({5, 6}))
                      .at({100, 300}));
    Json& mask = scene.layers[4].json_["masksProperties"][0]["pt"]["k"];
    mask["i"][0] = {-5, 6};
    mask["o"][0] = {7, 8};
    scene.layers[3].json_["ks"]["a"]["k"][1]["h"] = 1;
    open(scene);
    select({"C"});
    const Picture before = pictureOf("Scene", 10);

    EXPECT_EQ(run(), 0);

    EXPECT_EQ(sizeOf("C"), (Size{1000, 500}));
    expectNear(layer("centred").anchor.value, {860, 490, 0});
    expectNear(layer("deep").anchor.value, {200, 27, 12});
    expectNear(layer("keyed").anchor.keys[0].value, {0, 50, 4.6296});  // z of a keyframed anchor stays scaled
    expectNear(layer("keyed").anchor.keys[1].value, {700, 450, 9.2593});
    EXPECT_EQ(layer("keyed").anchor.keys[1].in, model::Interpolation::Bezier);
    EXPECT_EQ(layer("keyed").anchor.keys[1].out, model::Interpolation::Hold);
    const auto& vertex = layer("masked").masks[0]->path.value.vertices[0];
    expectNear(vertex.point, {800, 30, 0});
    expectNear(vertex.inTangent, {-5, 6, 0});
    expectNear(vertex.outTangent, {7, 8, 0});
    expectNear(layer("animated mask").masks[0]->path.keys[1].value.vertices[2].point, {400, 450, 0});
    expectNear(layer("nested", "Inner").anchor.value, {-100, -50, 0});
    expectNear(layer("dot", "C").position.keys[1].value, {800, 350, 0});
    expectSame(pictureOf("Scene", 10), before);
    expectNothingOpen();

    ASSERT_TRUE(undo());
    EXPECT_EQ(project().write(), opened);
    ASSERT_TRUE(project().history.redo());
    expectSame(pictureOf("Scene", 10), before);
}

// Turned and scaled edges are drawn softly, twice where the frame cuts the content: with room around it nothing
// shows.
TEST_F(Story, ATurnedAndScaledUseStaysInPlace) {
    open(kestrin_test::project("Scene", {400, 300})
             .with(precomp("C", {400, 300})
                       .with(solid("content", {100, 50}).at({150, 125}))
                       .anchor({200, 150})
                       .at({210, 140})
                       .scale({130, 80, 100})
                       .rotated(25)));
    select({"C"});
    pad(2);
    const Picture before = pictureOf("Scene");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sizeOf("C"), (Size{104, 54}));
    expectSame(pictureOf("Scene"), before);
}

// What is known to shift stays as it is: the host must not repair it behind the plug-in's back.
TEST_F(Story, OddSizesOpenMasksAndCurvesKeepTheirResidue) {
    open(kestrin_test::project("Scene", {1001, 751})
             .with(precomp("C", {1001, 751})
                       .with(solid("content", {800, 600}).at({100, 50}))
                       .anchor({500.5, 375.5})
                       .at({500.5, 375.5})));
    select({"C"});
    EXPECT_EQ(run(), 0);
    expectNear(layer("C").anchor.value, {400, 325, 0});

    open(kestrin_test::project("Scene", {1920, 1080})
             .with(precomp("C", {1920, 1080})
                       .with(content())
                       .masked({{900, 80}, {1000, 80}, {500, 500}}, "open", false)));
    select({"C"});
    EXPECT_EQ(run(), 0);
    const auto& vertices = layer("C").masks[0]->path.value.vertices;
    expectNear(vertices[1].point, {900, 30, 0});
    expectNear(vertices[2].point, {260.417, 231.481, 0});

    open(kestrin_test::project("Scene", {1920, 1080})
             .with(precomp("C", {1920, 1080})
                       .with(content())
                       .anchor({{0, {100, 100, 0}, {6, 4, 0}, {-6, 4, 0}}, {20, {800, 500, 0}}})));
    select({"C"});
    EXPECT_EQ(run(), 0);
    expectNear(*layer("C").anchor.keys[0].outTangent, {3.125, 1.8519, 0});
}

}  // namespace
}  // namespace kestrin_test
