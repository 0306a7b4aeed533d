// What a report says: where the crop lies, which frames it holds, and that its page says the same.

#include "cli/CropReport.h"

#include <gmock/gmock.h>

#include "cli/Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using namespace headless::cli;
using headless::model::Project;
using testing::HasSubstr;

Json reported(const CompSpec& before, const CompSpec& after) {
    const auto first = Project::read(before.text());
    const auto second = Project::read(after.text());
    ReportedProject one{"before.json", *first};
    ReportedProject other{"after.json", *second};
    return reportOf(one, other);
}

// Scene > Card, with a square of 20 pixels in it.
CompSpec scene(Size card, double square, Numbers anchor) {
    return project("Scene", {80, 80})
        .with(precomp("Card", card)
                  .with(solid("Square", {20, 20}).at({square, square}))
                  .anchor(std::move(anchor)));
}

TEST(Report, TheCropLiesWhereALayerThatShowsItSaysSo) {
    const CompSpec before = scene({60, 60}, 10, {5, 5});
    for (const auto& [after, corner] :
         {std::pair(scene({20, 20}, 0, {-5, -5}), 10.0), std::pair(scene({90, 90}, 25, {20, 20}), -15.0),
          std::pair(scene({21, 21}, 0.5, {-4.5, -4.5}), 9.5),
          // Shown by no layer in both, so by its visible box.
          std::pair(project("Scene", {80, 80})
                        .with(solid("New", {1, 1}).hidden())
                        .with(precomp("Card", {20, 20}).with(solid("Square", {20, 20})).anchor({-5, -5})),
                    10.0)}) {
        const Json report = reported(before, after);
        EXPECT_EQ(report["resized"][0]["crop"]["left"], corner);
        EXPECT_EQ(report["resized"][0]["crop"]["top"], corner);
        EXPECT_EQ(report["verdict"], "equal");
    }

    const auto thrice = [](Size card, double square, std::vector<Numbers> anchors) {
        CompSpec spec = project("Scene", {80, 80})
                            .having(comp("Card", card).with(solid("Square", {20, 20}).at({square, square})));
        for (const Numbers& anchor : anchors) {
            spec.layers.push_back(useOf("Card", card).anchor(anchor));
        }
        return spec;
    };
    const Json oneAstray = reported(thrice({60, 60}, 10, {{0, 0}, {0, 0}, {0, 0}}),
                                    thrice({20, 20}, 0, {{-19, -10}, {-10, -10}, {-10, -10}}));
    EXPECT_EQ(oneAstray["verdict"], "shifted");
    EXPECT_EQ(oneAstray["resized"][0]["crop"]["left"], 10);

    const Json root = reported(project("Scene", {80, 80}).with(solid("Square", {20, 20}).at({30, 20})),
                               project("Scene", {20, 20}).with(solid("Square", {20, 20})));
    EXPECT_EQ(root["resized"][0]["crop"], Json({{"left", 30}, {"top", 20}, {"width", 20}, {"height", 20}}));
    EXPECT_EQ(root["area"], Json({{"before", 6400}, {"after", 400}, {"savedPercent", 93.75}}));
}

TEST(Report, FramesThatShowSomethingWithinABudget) {
    const auto late = [](double at) {
        return project("Scene", {1300, 20})
            .with(solid("Square", {20, 20}).at({at, 0}).shown(400, 500))
            .lasting(0, 500);
    };
    const Json animation = reported(late(0), late(0))["animation"];
    EXPECT_GE(animation["shown"], 400);
    EXPECT_EQ(animation["factor"], 3);
    EXPECT_LE(animation["held"].size(), 61u);
    EXPECT_THAT(animation["held"], testing::Contains(animation["shown"]));

    const Json shifted = reported(late(0), late(5));
    EXPECT_EQ(shifted["animation"]["shown"], shifted["compared"][0]["worst"]["frame"]);
}

using ReportProgram = Program;

TEST_F(ReportProgram, ExitCodesAndRefusals) {
    const std::string before = write("before.json", scene({60, 60}, 10, {0, 0}).text());
    const std::string page = pathOf("page.html");
    const std::string shifted = write("shifted.json", scene({20, 20}, 0, {-13, -10}).text());
    const Outcome report = run({"report", before, shifted, "-o", page, "--json"});
    EXPECT_EQ(report.code, ExitCode::Differs);
    EXPECT_EQ(Json::parse(report.out)["verdict"],
              Json::parse(run({"compare", before, shifted, "--json"}).out)["verdict"]);
    EXPECT_THAT(contentOf(page), HasSubstr("the pictures differ"));

    const std::string text = write("text.json", project("Scene", {80, 80}).with(words("Title")).text());
    const std::string other = write("other.json", project("Scene", {80, 80}).with(words("Other")).text());
    EXPECT_THAT(run({"report", text, other, "-o", page}).out,
                testing::StartsWith("nothing that can be drawn has shifted; not drawn: "));
    EXPECT_THAT(contentOf(page), HasSubstr("of <bdi>Title</bdi> in <bdi>Scene</bdi>"));

    EXPECT_THAT(run({"report", before, shifted}).err, HasSubstr("-o"));
    EXPECT_EQ(run({"report", before, shifted, "-o", shifted}).code, ExitCode::BadInput);
    EXPECT_EQ(contentOf(shifted), scene({20, 20}, 0, {-13, -10}).text());
}

}  // namespace

}  // namespace kestrin_test
