// Which compositions are compared, and how their differences are judged.

#include "cli/Comparison.h"

#include <gmock/gmock.h>

#include <functional>

#include "cli/ComparisonJson.h"
#include "cli/ExitCode.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using namespace headless::cli;
using headless::model::Project;

Comparison compared(const CompSpec& before, const CompSpec& after, const ComparisonRequest& request = {}) {
    return compare(*Project::read(before.text()), *Project::read(after.text()), request);
}

LayerSpec square(double x, double y, int size = 20) {
    return solid("Square", {size, size}).at({x, y});
}

std::vector<std::string> names(const Comparison& comparison) {
    std::vector<std::string> result;
    for (const ComparedComp& comp : comparison.compared) {
        result.push_back(comp.name);
    }
    return result;
}

// Scene > Outer > Card; Card may be cropped by (10, 10) on the left and top.
CompSpec nested(Size cardSize, double squareAt, Numbers cardAnchor) {
    return project("Scene", {80, 80})
        .with(precomp("Outer", {70, 70}).with(useOf("Card", cardSize).anchor(std::move(cardAnchor))))
        .having(comp("Card", cardSize).with(square(squareAt, squareAt)));
}

TEST(Comparison, WhatShowsAChangedCompositionIsCompared) {
    const CompSpec before = nested({60, 60}, 10, {0, 0});
    const Comparison same = compared(before, before);
    EXPECT_TRUE(same.changed.empty());
    EXPECT_TRUE(same.compared.empty());

    const Comparison cropped = compared(before, nested({20, 20}, 0, {-10, -10}));
    EXPECT_EQ(cropped.changed.size(), 2u);  // Card by its size, Outer by the use in it
    EXPECT_EQ(names(cropped), (std::vector<std::string>{"Scene", "Outer"}));
    EXPECT_EQ(cropped.compared[0].frames, 30);
    EXPECT_EQ(cropped.verdict(), Verdict::Equal);
}

TEST(Comparison, AResizedRootIsShiftedWhateverItsContentDoes) {
    const CompSpec before = project("Scene", {80, 80}).with(square(30, 20));
    const Comparison cropped = compared(before, project("Scene", {20, 20}).with(square(0, 0)));
    EXPECT_EQ(cropped.verdict(), Verdict::Shifted);
    EXPECT_EQ(cropped.compared[0].offset, (headless::render::PixelPoint{30, 20}));
    EXPECT_EQ(cropped.compared[0].worst.largest, 0);  // laid over, nothing else differs
    EXPECT_EQ(compared(before, project("Scene", {80, 60}).with(square(30, 20))).verdict(), Verdict::Shifted);
}

TEST(Comparison, AResizedCompositionIsLaidOverOnceForAllItsFrames) {
    // Where its uses say; behind another layer its use is not known again, so where its content begins.
    const auto card = [](Size size, std::vector<Key> dot, Numbers anchor, bool behind = false) {
        CompSpec spec =
            project("Scene", {80, 80}).having(comp("Card", size).with(solid("Dot", {6, 6}).at(std::move(dot))));
        if (behind) {
            spec.layers.push_back(solid("New", {1, 1}).hidden());
        }
        return std::move(spec).with(useOf("Card", size).anchor(std::move(anchor)));
    };
    const auto verdict = [](const CompSpec& before, const CompSpec& after, std::optional<int> frame = {}) {
        return compared(before, after, {.frame = frame, .comp = "Card"}).verdict();
    };
    const CompSpec jumping = card({60, 60}, {Key{0, {10, 10}}, Key{29, {40, 40}}}, {0, 0});
    EXPECT_EQ(verdict(jumping, card({50, 50}, {Key{0, {0, 0}}, Key{29, {30, 30}}}, {-9, 0}, true)),
              Verdict::Equal);
    const CompSpec still = card({50, 50}, {Key{0, {0, 0}}, Key{29, {0, 0}}}, {0, 0}, true);
    EXPECT_EQ(verdict(jumping, still), Verdict::Shifted);
    EXPECT_EQ(verdict(jumping, still, 29), Verdict::Shifted);

    const CompSpec used = card({60, 60}, {Key{0, {10, 10}}}, {0, 0});
    EXPECT_EQ(verdict(used, card({50, 50}, {Key{0, {0, 0}}}, {-10, -10})), Verdict::Equal);
    EXPECT_EQ(verdict(used, card({50, 50}, {Key{0, {30, 0}}}, {-10, -10})), Verdict::Shifted);
    EXPECT_EQ(verdict(used, card({50, 50}, {Key{0, {0, 0}}}, {-1e6, 0})), Verdict::Shifted);
}

TEST(Comparison, TimeCounts) {
    const auto scene = [](double rate, double end) {
        Json json = Json::parse(project("Scene", {80, 80}).with(square(10, 10)).lasting(0, end).text());
        json["fr"] = rate;
        return Project::read(json.dump());
    };
    const Comparison slower = compare(*scene(30, 30), *scene(10, 30));
    EXPECT_TRUE(slower.compared.at(0).otherTimes);
    EXPECT_EQ(slower.verdict(), Verdict::Shifted);
    EXPECT_EQ(compare(*scene(30, 30), *scene(30, 29.5)).verdict(), Verdict::Shifted);
    EXPECT_EQ(compare(*scene(30, 30), *scene(30, 30)).verdict(), Verdict::Equal);
}

TEST(Comparison, SaysWhereAPictureDiffersMost) {
    const auto scene = [](double x, const std::string& grey) {
        return project("Scene", {80, 80}).with(square(x, 10)).with(solid("Dot", {1, 40}, grey).at({70, 20}));
    };
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#828282")).verdict(), Verdict::Equal);
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#838383")).verdict(), Verdict::EdgeNoise);
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#c0c0c0")).verdict(), Verdict::Shifted);

    const Comparison shifted = compared(scene(10, "#808080"), scene(11, "#808080"));
    ASSERT_EQ(shifted.verdict(), Verdict::Shifted);
    EXPECT_EQ(shifted.compared[0].worst.largest, 255);
    EXPECT_EQ(shifted.compared[0].worst.pixels, 40u);  // a column left, a column reached
    EXPECT_EQ(shifted.compared[0].worst.at, (headless::render::PixelPoint{10, 10}));
}

// "layer in composition" of what differs and is not drawn.
std::vector<std::string> notDrawn(const CompSpec& before, const CompSpec& after) {
    std::vector<std::string> result;
    const Comparison comparison = compared(before, after);
    for (const Named& named : comparison.notDrawn) {
        result.push_back(named.layer + " in " + named.comp);
    }
    EXPECT_EQ(conclusion(comparison) == "nothing on screen has shifted", result.empty());
    return result;
}

TEST(Comparison, NamesWhatDiffersAndIsNotDrawn) {
    using testing::ElementsAre;
    const auto scene = [](int size, double anchor, const std::function<void(LayerSpec&)>& change = {}) {
        LayerSpec use =
            precomp("Card", {size, size}).with(square(anchor + 10, anchor + 10)).anchor({anchor, anchor});
        if (change) {
            change(use);
        }
        return project("Scene", {80, 80}).with(std::move(use));
    };
    const auto withText = [](LayerSpec& use) { use = std::move(use).with(words("Title")); };
    const auto withStyle = [](LayerSpec& use) { use.set("sy", Json::parse(R"([{"ty": 1}])")); };
    EXPECT_EQ(notDrawn(scene(60, 0), scene(40, -10)), std::vector<std::string>{});
    EXPECT_THAT(notDrawn(scene(60, 0, withText), scene(40, -10, withText)), ElementsAre("Title in Card"));
    EXPECT_THAT(notDrawn(scene(60, 0, withStyle), scene(40, -10, withStyle)), ElementsAre("Card in Scene"));
    // Moved with all that is in it, at any depth, and through what lies above it.
    const auto deep = [&](double anchor) {
        LayerSpec outer =
            precomp("Outer", {70, 70}).with(precomp("Card", {60, 60}).with(words("Title")).anchor({anchor, 0}));
        withStyle(outer);
        return project("Scene", {80, 80}).with(std::move(outer)).with(square(0, 0));
    };
    EXPECT_THAT(notDrawn(deep(0), deep(1)), testing::UnorderedElementsAre("Outer in Scene", "Title in Card"));

    // What is the same in both, and that nothing goes through which is not, needs no mention.
    const auto beside = [&](double x, const std::string& name) {
        return project("Scene", {80, 80})
            .with(precomp("Other", {50, 50}).with(words("Still")))
            .with(words(name))
            .with(square(x, 3));
    };
    EXPECT_EQ(notDrawn(beside(3, "Title"), beside(3.001, "Title")), std::vector<std::string>{});
    EXPECT_THAT(notDrawn(beside(3, "Title"), beside(3, "Titles")), ElementsAre("Title in Scene"));
    // A child moves with its parent; what is new or gone differs.
    const auto child = [&](double x) {
        return project("Scene", {80, 80})
            .with(null("Parent").at({x, 0}).index(1))
            .with(words("Child").childOf(1));
    };
    EXPECT_THAT(notDrawn(child(0), child(1)), ElementsAre("Child in Scene"));
    EXPECT_THAT(notDrawn(project("Scene", {80, 80}), project("Scene", {80, 80}).with(words("New"))),
                ElementsAre("New in Scene"));
}

TEST(Comparison, TheConclusionNamesTheFirstOfMuch) {
    const auto texts = [](double x) {
        CompSpec spec = project("Scene", {80, 80});
        for (int i = 0; i < 5; ++i) {
            spec.layers.push_back(words("T" + std::to_string(i)).at({x, 0}));
        }
        return spec;
    };
    const Comparison comparison = compared(texts(0), texts(1));
    const std::string what = comparison.notDrawn.at(0).what;
    EXPECT_EQ(conclusion(comparison), "nothing that can be drawn has shifted; not drawn: " + what +
                                          " of \"T0\" in \"Scene\", " + what + " of \"T1\" in \"Scene\", " +
                                          what + " of \"T2\" in \"Scene\" and 2 more");
    EXPECT_EQ(comparisonJson(comparison)["notDrawn"].size(), 5u);
}

TEST(Comparison, OneFrameOfOneComposition) {
    const auto scene = [](double end) {
        return project("Scene", {80, 80}).with(precomp("Card", {60, 60}).with(square(10, 10).shown(0, end)));
    };
    EXPECT_EQ(compared(scene(30), scene(20), {.frame = 5, .comp = ""}).verdict(), Verdict::Equal);
    EXPECT_EQ(compared(scene(30), scene(20), {.frame = 25, .comp = ""}).verdict(), Verdict::Shifted);
    EXPECT_EQ(names(compared(scene(30), scene(20), {.frame = 25, .comp = "Card"})),
              std::vector<std::string>{"Card"});
    EXPECT_THROW(compared(scene(30), scene(20), {.frame = 30, .comp = ""}), Stop);
    EXPECT_TRUE(compared(scene(30), scene(30).lasting(0, 20)).compared[0].otherTimes);
}

}  // namespace

}  // namespace kestrin_test
