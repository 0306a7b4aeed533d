// Which compositions are compared, and how their differences are judged.

#include "cli/Comparison.h"

#include <gtest/gtest.h>

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
