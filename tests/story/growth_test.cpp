// The host calls of each command grow with the project's size along a line: so many for every layer, use,
// keyframe, mask or frame, and nothing for every pair of them.

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

    // With ten of something, with twenty, and with very many.
    template <class Run>
    void expectLine(Plan plan, int Plan::*what, int many, Count callsEach, Run&& run) {
        Count callsOfTen = 0;
        for (const int count : {10, 20, many}) {
            plan.*what = count;
            openScene(plan);
            const Count calls = callsOf(run);
            callsOfTen = count == 10 ? calls : callsOfTen;
            EXPECT_EQ(calls, callsOfTen + (static_cast<Count>(count) - 10) * callsEach) << "with " << count;
        }
    }
};

// Growing: what, beside what else, how far, and the calls for each.
struct Growing {
    const char* name;
    Plan plan;
    int Plan::*what;
    int many;
    Count callsEach;
};
const Growing growing[] = {
    {"layers", {.uses = 3, .otherComps = 3}, &Plan::cardLayers, 10'000, 8},
    {"uses", {.cardLayers = 3, .otherComps = 3}, &Plan::uses, 10'000, 10},
    {"other compositions", {.cardLayers = 3, .uses = 3}, &Plan::otherComps, 5'000, 10},
    {"keys of three uses", {.uses = 3}, &Plan::keys, 10'000, 3 * 7},
    {"masks of two uses", {.uses = 2}, &Plan::masks, 1'000, 2 * (9 + 2 * 4)},
    {"vertices of two uses", {.uses = 2, .masks = 1}, &Plan::vertices, 5'000, 2 * 2},
    {"keys of four masks", {.uses = 2, .masks = 2}, &Plan::maskKeys, 1'000, 4 * (5 + 2 * 4)}};

TEST_F(Growth, AStandardCropLooksAtEachLayerOfTheProjectOnce) {
    for (const Growing& each : growing) {
        SCOPED_TRACE(each.name);
        expectLine(each.plan, each.what, each.many, each.callsEach, [&] { return run(); });
    }
}

TEST_F(Growth, AStandardCropNeverLooksAtPairs) {
    const auto callsIn = [&](const Plan& plan) {
        openScene(plan);
        return callsOf([&] { return run(); });
    };
    const Count few = callsIn({.cardLayers = 10, .uses = 10, .otherComps = 10, .keys = 10});
    EXPECT_EQ(callsIn({.cardLayers = 3'010, .uses = 510, .otherComps = 1'010, .keys = 10}),
              few + 3'000 * 8 + 500 * (6 + 10 * 7) + 1'000 * 10);
}

TEST_F(Growth, EachSelectedCompositionIsACropOfItsOwn) {
    expectLine({.otherComps = 120}, &Plan::selected, 100, 1277, [&] { return run(); });
}

TEST_F(Growth, ADurationCropCallsTheSameForEachFrame) {
    const auto run = [&] { return runDuration(); };
    expectLine({.cardLayers = 50, .uses = 5}, &Plan::frames, 200, 12, run);
    expectLine({.uses = 3, .frames = 3}, &Plan::cardLayers, 10'000, 8, run);
    expectLine({.cardLayers = 3, .frames = 3}, &Plan::uses, 10'000, 10, run);
    expectLine({.cardLayers = 3, .frames = 3}, &Plan::otherComps, 5'000, 10, run);
}

TEST_F(Growth, AMaskCropReadsEachVertexOnceMore) {
    const auto run = [&] { return runMaskCrop(); };
    expectLine({.masks = 1}, &Plan::vertices, 5'000, 2 + 1, run);
    expectLine({.masks = 1}, &Plan::uses, 10'000, 10 + 9 + 2 * 4, run);
    expectLine({.masks = 1}, &Plan::cardLayers, 10'000, 5, run);
    expectLine({.masks = 1}, &Plan::otherComps, 5'000, 10, run);
}

TEST_F(Growth, ThePreferencesLookAtNoLayer) {
    answers.answer("Kestrin Preferences", "Cancel");
    for (int Plan::*what : {&Plan::cardLayers, &Plan::uses, &Plan::otherComps}) {
        expectLine({}, what, 5'000, 0, [&] { return runPreferences(); });
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
