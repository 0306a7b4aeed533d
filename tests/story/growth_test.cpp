// The host calls of each command, as a formula of the project's size: nothing is done twice for every layer,
// use, keyframe, mask or frame.

#include "support/Story.h"

namespace kestrin_test {
namespace {

using Count = std::uint64_t;

// A scene that shows the card `uses` times, beside precomps with a layer each.
struct Plan {
    int cardLayers = 1, uses = 1, otherComps = 0;
    int keys = 0;                 // of the anchor points of the uses; 0: static
    int masks = 0, maskKeys = 0;  // of each use; 0 keys: static
    int vertices = 4;             // of each mask
    int selected = 1;             // of the card and the other precomps
    int frames = 1;
};

void PrintTo(const Plan& plan, std::ostream* out) {
    *out << plan.cardLayers << " layers, " << plan.uses << " uses, " << plan.otherComps
         << " other compositions, " << plan.keys << " keys, " << plan.masks << " masks with " << plan.maskKeys
         << " keys and " << plan.vertices << " vertices, " << plan.selected << " selected, " << plan.frames
         << " frames";
}

LayerSpec masked(LayerSpec use, const Plan& plan) {
    std::vector<Numbers> outline;
    for (int i = 0; i < plan.vertices; ++i) {
        outline.push_back({20.0 + (i % 2) * 100, 30.0 + i * 200.0 / plan.vertices});
    }
    std::vector<std::pair<double, std::vector<Numbers>>> keyed;
    for (int i = 0; i < plan.maskKeys; ++i) {
        keyed.emplace_back(i, outline);
    }
    for (int i = 0; i < plan.masks; ++i) {
        use = keyed.empty() ? std::move(use).masked(outline) : std::move(use).masked(keyed);
    }
    return use;
}

LayerSpec keyed(LayerSpec use, const Plan& plan) {
    std::vector<Key> keys;
    for (int i = 0; i < plan.keys; ++i) {
        keys.push_back({static_cast<double>(i), {i % 7, i % 5, 0}});
    }
    return keys.empty() ? use : std::move(use).anchor(keys);
}

CompSpec sceneOf(const Plan& plan) {
    constexpr Size size{400, 300};
    LayerSpec card = precomp("Card", size).with(solid("Red", {100, 50}).at({150, 125})).shown(0, plan.frames);
    for (int i = 1; i < plan.cardLayers; ++i) {
        card = std::move(card).with(shape("nothing"));
    }
    CompSpec scene = kestrin_test::project("Scene", size)
                         .lasting(0, plan.frames)
                         .with(masked(keyed(std::move(card), plan), plan));
    for (int i = 0; i < plan.otherComps; ++i) {
        scene = std::move(scene).with(precomp("Other " + std::to_string(i), size).with(solid("Blue", {9, 9})));
    }
    for (int i = 1; i < plan.uses; ++i) {
        scene = std::move(scene).with(masked(keyed(useOf("Card", size), plan), plan));
    }
    return scene;
}

struct Growth : Story {
    void openScene(const Plan& plan) {
        open(sceneOf(plan));
        selectFirst(plan.selected);
    }
    void selectFirst(int count) {
        std::vector<model::SelectedThing> things;
        for (int i = 0; i < count; ++i) {
            things.push_back({comp("Scene").layers[static_cast<std::size_t>(i)]->id, -1});
        }
        session->select(comp("Scene"), things);
    }

    template <class Run>
    Count callsOf(Run&& run) {
        session->clearCalls();
        EXPECT_EQ(run(), 0);
        return session->calls().total;
    }

    // Finding the uses of one composition: each item, composition and layer of the project once.
    static Count walk(const Plan& plan) {
        const Count comps = 2 + plan.otherComps;
        const Count solids = 1 + plan.otherComps;
        const Count layers = plan.cardLayers + plan.uses + 2 * Count(plan.otherComps);
        return 2 * (comps + solids) + 2 * comps + 2 * layers;
    }
    // Correcting one use of the card.
    static Count correction(const Plan& plan) {
        const Count vertices = 2 * Count(plan.vertices);
        const Count anchor = plan.keys > 0 ? 4 + 7 * Count(plan.keys) : 8;
        const Count mask = plan.maskKeys > 0 ? 5 + plan.maskKeys * (5 + vertices) : 9 + vertices;
        return anchor + plan.masks * mask;
    }
    // Hanging a composition's layers on the null and back.
    static Count hanging(Count layers) { return 3 * layers; }
    static Count lookingForThreeD(Count layers) { return 3 * layers; }
};

const Plan plans[] = {{.cardLayers = 10},
                      {.cardLayers = 1'000},
                      {.cardLayers = 10'000},
                      {.uses = 10},
                      {.uses = 10'000},
                      {.otherComps = 10},
                      {.otherComps = 5'000},
                      {.uses = 3, .keys = 10},
                      {.uses = 3, .keys = 10'000},
                      {.uses = 3, .masks = 10},
                      {.uses = 2, .masks = 1'000},
                      {.uses = 2, .masks = 1, .vertices = 5'000},
                      {.uses = 2, .masks = 2, .maskKeys = 1'000},
                      {.cardLayers = 30, .uses = 40, .otherComps = 50, .keys = 6, .masks = 7, .vertices = 8}};

TEST_F(Growth, AStandardCropLooksAtEachLayerOfTheProjectOnce) {
    for (const Plan& plan : plans) {
        openScene(plan);
        EXPECT_EQ(callsOf([&] { return run(); }), 69 + lookingForThreeD(plan.cardLayers) +
                                                      hanging(plan.cardLayers) + walk(plan) +
                                                      plan.uses * correction(plan))
            << testing::PrintToString(plan);
    }
}

TEST_F(Growth, EachSelectedCompositionIsACropOfItsOwn) {
    for (const int selected : {1, 2, 10, 100}) {
        const Plan plan{.otherComps = 120, .selected = selected};
        openScene(plan);
        EXPECT_EQ(callsOf([&] { return run(); }),
                  20 + selected * (49 + lookingForThreeD(1) + hanging(1) + walk(plan) + correction(plan)));
    }
}

TEST_F(Growth, ADurationCropCallsTheSameForEachFrame) {
    for (const Plan& plan :
         {Plan{.frames = 10}, Plan{.frames = 200}, Plan{.cardLayers = 500, .uses = 50, .frames = 20}}) {
        openScene(plan);
        EXPECT_EQ(callsOf([&] { return runDuration(); }),
                  60 + 12 * Count(plan.frames) + lookingForThreeD(plan.cardLayers) + hanging(plan.cardLayers) +
                      walk(plan) + plan.uses * correction(plan))
            << testing::PrintToString(plan);
    }
}

TEST_F(Growth, AMaskCropReadsEachVertexOnceMore) {
    for (Plan plan : plans) {
        plan.masks = 1;
        openScene(plan);
        EXPECT_EQ(callsOf([&] { return runMaskCrop(); }),
                  67 + plan.vertices + hanging(plan.cardLayers) + walk(plan) + plan.uses * correction(plan))
            << testing::PrintToString(plan);
    }
}

TEST_F(Growth, TheMenuLooksAtTwelveSelectedLayersAtMost) {
    openScene({.otherComps = 10'000});
    for (const int selected : {1, 2, 12, 13, 10'000}) {
        selectFirst(selected);
        session->clearCalls();
        session->openMenu();
        EXPECT_EQ(session->calls().total, 7 + 4 * Count(std::min(selected, 12)) + (selected == 1 ? 1 : 0))
            << selected;
    }
}

}  // namespace
}  // namespace kestrin_test
