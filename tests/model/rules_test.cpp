// The rules under a crop, before any plug-in: what a resize, a new null, a parent and its deletion do.

#include <gtest/gtest.h>

#include "model/Edit.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using namespace headless::model;

void expectNear(const Vec3& actual, const Vec3& expected) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(actual[axis], expected[axis], 0.0005) << "axis " << axis;
    }
}

void expectNear(const MaskVertex& actual, const MaskVertex& expected) {
    expectNear(actual.point, expected.point);
    expectNear(actual.inTangent, expected.inTangent);
    expectNear(actual.outTangent, expected.outTangent);
}

struct Rules : ::testing::Test {
    void open(const CompSpec& spec) {
        opened = spec.text();
        project = Project::read(opened);
    }
    Comp& compNamed(const std::string& name) {
        for (const ItemPtr& item : project->items) {
            if (item->comp && item->name == name) {
                return *item->comp;
            }
        }
        throw std::runtime_error("no composition " + name);
    }
    Layer& layerNamed(const std::string& name) {
        for (const ItemPtr& item : project->items) {
            if (item->comp) {
                for (const LayerPtr& layer : item->comp->layers) {
                    if (layer->name == name) {
                        return *layer;
                    }
                }
            }
        }
        throw std::runtime_error("no layer " + name);
    }
    // What a crop does to the inside of a composition.
    void moveInside(Comp& comp, double left, double top) {
        Layer& null = addNull(*project, comp, "Null", std::nullopt);
        moveLayer(*project, null, comp.layers.size() - 1);
        for (const LayerPtr& layer : std::deque(comp.layers)) {
            if (layer->parent == nullptr && layer.get() != &null) {
                setParent(*project, *layer, &null);
            }
        }
        setLayerField(
            *project, null, [](Layer& l) -> Vec3& { return l.position.value; }, Vec3{-left, -top, 0});
        Item& source = *null.source;
        deleteLayer(*project, null);
        deleteItem(*project, source);
    }

    std::string opened;
    std::unique_ptr<Project> project;
};

TEST_F(Rules, ResizeScalesTheUsesAndMovesNothingInside) {
    CompSpec spec =
        ::kestrin_test::project("Scene", {1920, 1080})
            .having(comp("C", {1920, 1080})
                        .with(solid("inside", {10, 10}).at({700, 400}))
                        .with(solid("child", {10, 10}).at({10, -20})))
            .with(useOf("C", {1920, 1080}).anchor({960, 540}).set("nm", "plain"))
            .with(useOf("C", {1920, 1080}).anchor({300, 77, 12}).threeD().set("nm", "deep"))
            .with(useOf("C", {1920, 1080})
                      .anchor({{0, {100, 100, 10}, {6, 4, 0}, {-6, 4, 0}}, {20, {800, 500, 20}}})
                      .set("nm", "keyed"))
            .with(useOf("C", {1920, 1080}).masked({{900, 80}, {1000, 80}, {1000, 200}}).set("nm", "masked"));
    spec.layers[3].json_["masksProperties"][0]["pt"]["k"]["i"][0] = {-5, 6};
    spec.layers[3].json_["masksProperties"][0]["pt"]["k"]["o"][0] = {7, 8};
    open(spec);

    project->history.begin("resize");
    setCompSize(*project, compNamed("C"), {1000, 500});
    project->history.end();

    expectNear(layerNamed("inside").position.value, {700, 400, 0});
    expectNear(layerNamed("plain").anchor.value, {500, 250, 0});
    expectNear(layerNamed("deep").anchor.value, {156.25, 35.648, 5.5556});
    const auto& keys = layerNamed("keyed").anchor.keys;
    expectNear(keys[0].value, {52.083, 46.296, 4.6296});
    expectNear(keys[1].value, {416.667, 231.481, 9.2593});
    expectNear(*keys[0].outTangent, {3.125, 1.8519, 0});
    expectNear(layerNamed("masked").masks[0]->path.value.vertices[0],
               {{468.75, 37.037, 0}, {-2.604, 2.778, 0}, {3.646, 3.704, 0}});
    EXPECT_EQ(layerNamed("plain").useSize, (Size{1000, 500}));

    // The file has the new numbers too, and the old ones bit for bit after undo.
    const auto again = Project::read(project->write());
    EXPECT_EQ(again->items[1]->size, (Size{1000, 500}));
    ASSERT_TRUE(project->history.undo());
    EXPECT_EQ(project->write(), opened);
    ASSERT_TRUE(project->history.redo());
    expectNear(layerNamed("plain").anchor.value, {500, 250, 0});
}

TEST_F(Rules, ADeletedNullLeavesItsChildrenWhereItsMovePutThem) {
    open(
        ::kestrin_test::project("Scene", {1920, 1080})
            .with(solid("static", {10, 10}).at({700, 400}).index(1))
            .with(solid("child", {10, 10}).at({10, -20}).childOf(1))
            .with(solid("keyed", {10, 10}).at({{0, {300, 200, 0}, {5, 6, 0}, {-7, 8, 0}}, {20, {900, 600, 0}}}))
            .with(solid("separated", {10, 10}).moving({{0, 100}, {10, 300}}, {{0, 50}, {5, 70}}))
            .with(solid("no position", {10, 10}))
            .with(camera("camera").at({960, 540, -1000}).anchor({960, 540, 0})));

    project->history.begin("move");
    moveInside(project->root(), 100, 50);
    project->history.end();

    expectNear(layerNamed("static").position.value, {600, 350, 0});
    expectNear(layerNamed("child").position.value, {10, -20, 0});
    EXPECT_EQ(layerNamed("child").parent, &layerNamed("static"));
    const auto& keys = layerNamed("keyed").position.keys;
    expectNear(keys[0].value, {200, 150, 0});
    expectNear(keys[1].value, {800, 550, 0});
    expectNear(*keys[0].outTangent, {5, 6, 0});
    expectNear(*keys[0].inTangent, {-7, 8, 0});
    const auto& axes = layerNamed("separated").position.axes;
    EXPECT_EQ(axes[0].keys[1].value, 200);
    EXPECT_EQ(axes[1].keys[0].value, 0);
    expectNear(layerNamed("no position").position.value, {-100, -50, 0});
    expectNear(layerNamed("camera").position.value, {860, 490, -1000});
    expectNear(layerNamed("camera").anchor.value, {860, 490, 0});
    EXPECT_EQ(project->root().layers.size(), 6u);
    const auto again = Project::read(project->write());
    expectNear(again->root().layers[4]->position.value, {-100, -50, 0});

    ASSERT_TRUE(project->history.undo());
    EXPECT_EQ(project->write(), opened);
}

TEST_F(Rules, ANullStandsAtTheCentreAndAParentLetsItsChildJump) {
    open(::kestrin_test::project("Scene", {400, 300}).with(solid("S", {10, 10}).at({30, 40})));
    Comp& root = project->root();
    Layer& null = addNull(*project, root, "N", std::nullopt);
    expectNear(null.position.value, {200, 150, 0});
    expectNear(null.anchor.value, {0, 0, 0});
    EXPECT_EQ(null.source->size, (Size{100, 100}));
    EXPECT_EQ(root.layers.front().get(), &null);

    setParent(*project, layerNamed("S"), &null);
    expectNear(layerNamed("S").position.value, {30, 40, 0});
    EXPECT_THROW(setParent(*project, null, &layerNamed("S")), EditError);
    // The layer's file form names the parent by an index that the null has been given.
    EXPECT_EQ(Project::read(project->write())->root().layers[1]->parent->name, "N");
}

TEST_F(Rules, ATurnedParentIsBakedIntoItsChildren) {
    open(::kestrin_test::project("Scene", {400, 300})
             .with(solid("parent", {10, 10})
                       .at({200, 100})
                       .anchor({5, 5})
                       .rotated(90)
                       .scale({200, 200, 100})
                       .index(1))
             .with(solid("child", {10, 10}).at({15, 5}).childOf(1)));
    deleteLayer(*project, layerNamed("parent"));
    const Layer& child = layerNamed("child");
    expectNear(child.position.value, {200, 120, 0});  // 10 px right of the anchor, doubled, turned down
    EXPECT_NEAR(child.rotation.value, 90, 1e-9);
    expectNear(child.scale.value, {200, 200, 100});
    EXPECT_EQ(child.parent, nullptr);
}

TEST_F(Rules, SizesOutsideTheLimitsChangeNothing) {
    open(::kestrin_test::project("Scene", {400, 300}).with(precomp("C", {400, 300})));
    for (const Size size : {Size{0, 10}, Size{10, -1}, Size{30001, 10}}) {
        EXPECT_THROW(setCompSize(*project, compNamed("C"), size), EditError);
    }
    EXPECT_EQ(project->write(), opened);
    EXPECT_TRUE(project->history.done().empty());
}

TEST_F(Rules, ADuplicateSharesSourcesAndKeepsParents) {
    open(::kestrin_test::project("Scene", {400, 300})
             .with(precomp("C", {400, 300})
                       .with(solid("a", {10, 10}).index(7))
                       .with(solid("b", {10, 10}).childOf(7).masked({{0, 0}, {5, 0}, {5, 5}}))
                       .with(precomp("D", {40, 30}))));
    project->history.begin("duplicate");
    Comp& copy = duplicateComp(*project, compNamed("C"));
    EXPECT_EQ(copy.item->name, "C 2");
    ASSERT_EQ(copy.layers.size(), 3u);
    EXPECT_EQ(copy.layers[1]->parent, copy.layers[0].get());
    EXPECT_EQ(copy.layers[2]->source, compNamed("C").layers[2]->source);
    EXPECT_THROW(addLayer(*project, compNamed("D"), *compNamed("C").item), EditError);

    while (!compNamed("C").layers.empty()) {
        deleteLayer(*project, *compNamed("C").layers.front());
    }
    addLayer(*project, compNamed("C"), *copy.item);
    project->history.end();
    const auto again = Project::read(project->write());
    EXPECT_EQ(again->items.size(), project->items.size());
    ASSERT_TRUE(project->history.undo());
    EXPECT_EQ(project->write(), opened);
    ASSERT_TRUE(project->history.redo());
    EXPECT_EQ(Project::read(project->write())->items.size(), again->items.size());
}

}  // namespace
}  // namespace kestrin_test
