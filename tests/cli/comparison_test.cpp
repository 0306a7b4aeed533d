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

TEST(Comparison, ResizedAllTheWayUpIsLaidOver) {
    const CompSpec before = project("Scene", {80, 80}).with(square(30, 20));
    const Comparison cropped = compared(before, project("Scene", {20, 20}).with(square(0, 0)));
    EXPECT_EQ(cropped.compared[0].offset, (headless::render::PixelPoint{30, 20}));

    // Laid over by the first frame: what moves differently later is seen.
    const auto moving = [](Size size, double from, double to) {
        return project("Scene", size)
            .with(solid("Square", {20, 20}).at({Key{0, {from, from}}, Key{29, {to, to}}}));
    };
    const Comparison later = compared(moving({80, 80}, 10, 40), moving({60, 60}, 0, 34));
    EXPECT_EQ(later.verdict(), Verdict::Shifted);
    EXPECT_GT(later.compared[0].worst.frame, 0);
}

TEST(Comparison, EdgeNoiseIsFewFaintPixels) {
    const auto scene = [](double squareX, const std::string& grey, Size dot = {1, 40}) {
        return project("Scene", {80, 80}).with(square(squareX, 10)).with(solid("Dot", dot, grey).at({70, 20}));
    };
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#828282")).verdict(), Verdict::Equal);
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#838383")).verdict(), Verdict::EdgeNoise);
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#c0c0c0")).verdict(), Verdict::EdgeNoise);
    EXPECT_EQ(compared(scene(10, "#808080"), scene(10, "#c1c1c1")).verdict(), Verdict::Shifted);
    EXPECT_EQ(compared(scene(10, "#808080", {2, 41}), scene(10, "#888888", {2, 41})).verdict(),
              Verdict::EdgeNoise);
    EXPECT_EQ(compared(scene(10, "#808080", {1, 41}), scene(10, "#898989", {1, 41})).verdict(),
              Verdict::Shifted);
    EXPECT_EQ(compared(scene(10, "#808080", {9, 41}), scene(10, "#838383", {9, 41})).verdict(),
              Verdict::Shifted);  // faint, but no line

    const auto faint = [](double x) {
        return project("Scene", {80, 80})
            .with(solid("Faint", {18, 18}, "#a0a0a0").at({x, 10}))
            .with(solid("Paper", {80, 80}, "#808080"));
    };
    EXPECT_EQ(compared(faint(10), faint(11)).verdict(), Verdict::Shifted);  // few and faint, yet moved

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
