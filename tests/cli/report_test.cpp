// What a report says: where the crop lies, which frames it holds, and that its page says the same.

#include "cli/Report.h"

#include <gmock/gmock.h>

#include "cli/Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using namespace headless::cli;
using headless::model::Project;
using testing::HasSubstr;
using testing::Not;

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
    struct Case {
        const char* what;
        CompSpec after;
        double left, top;
    };
    const CompSpec before = scene({60, 60}, 10, {5, 5});
    const Case cases[] = {
        {"cropped", scene({20, 20}, 0, {-5, -5}), 10, 10},
        {"padded beyond the frame", scene({90, 90}, 25, {20, 20}), -15, -15},
        {"half a pixel", scene({21, 21}, 0.5, {-4.5, -4.5}), 9.5, 9.5},
        {"shown by no layer in both, so by its visible box",
         project("Scene", {80, 80})
             .with(solid("New", {1, 1}).hidden())
             .with(precomp("Card", {20, 20}).with(solid("Square", {20, 20})).anchor({-5, -5})),
         10, 10},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        const Json report = reported(before, each.after);
        ASSERT_EQ(report["resized"].size(), 1u);
        EXPECT_EQ(report["resized"][0]["crop"]["left"], each.left);
        EXPECT_EQ(report["resized"][0]["crop"]["top"], each.top);
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
    EXPECT_EQ(animation["held"].front(), 0);
    EXPECT_EQ(animation["held"].back(), 499);
    EXPECT_LE(animation["held"].size(), 61u);
    EXPECT_THAT(animation["held"], testing::Contains(animation["shown"]));

    const Json shifted = reported(late(0), late(5));
    EXPECT_EQ(shifted["animation"]["shown"], shifted["compared"][0]["worst"]["frame"]);
}

struct ReportProgram : Program {
    const std::string before = write("before.json", scene({60, 60}, 10, {0, 0}).text());
    const std::string page = pathOf("page.html");
};

TEST_F(ReportProgram, ThePageHoldsTheDocumentAndNamesStayText) {
    const std::string evil = "</script><script>alert('1')</script> \"{{name}}\" &amp; \x1b[31m \u202e";
    const auto named = [&](Size card, double square, Numbers anchor) {
        CompSpec spec = scene(card, square, std::move(anchor));
        spec.name = evil;
        return spec.text();
    };
    const std::string first = write("first.json", named({60, 60}, 10, {0, 0}));
    const std::string second = write("second.json", named({20, 20}, 0, {-10, -10}));
    const Outcome outcome = run({"report", first, second, "-o", page, "--json"});
    ASSERT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    const Json printed = Json::parse(outcome.out);
    EXPECT_EQ(printed["kestrin"], "report");
    EXPECT_EQ(printed["version"], 1);
    EXPECT_EQ(printed["animation"]["name"], evil);

    const std::string html = contentOf(page);
    const std::string opening = "id=\"report\">";
    const std::size_t begin = html.find(opening) + opening.size();
    EXPECT_EQ(Json::parse(html.substr(begin, html.find("</script>", begin) - begin)), printed);
    EXPECT_THAT(html, HasSubstr("&lt;/script&gt;&lt;script&gt;alert(&apos;1&apos;)&lt;/script&gt; "
                                "&quot;{{name}}&quot; &amp;amp; \\x1B[31m"));
    EXPECT_THAT(html, Not(HasSubstr("<script>alert")));

    // The comparison in it is what `compare` says.
    const Json compared = Json::parse(run({"compare", first, second, "--json"}).out);
    EXPECT_EQ(compared["kestrin"], "compare");
    for (const char* member : {"verdict", "conclusion", "changed", "compared"}) {
        EXPECT_EQ(compared[member], printed[member]) << member;
    }
}

TEST_F(ReportProgram, ExitCodesAndRefusals) {
    const std::string shifted = write("shifted.json", scene({20, 20}, 0, {-13, -10}).text());
    EXPECT_EQ(run({"report", before, shifted, "-o", page}).code, ExitCode::Differs);
    EXPECT_EQ(run({"compare", before, shifted, "--json"}).code, ExitCode::Differs);
    EXPECT_THAT(contentOf(page), HasSubstr("the pictures differ"));

    EXPECT_THAT(run({"report", before, shifted}).err, HasSubstr("-o"));
    EXPECT_EQ(run({"report", before, shifted, "-o", shifted}).code, ExitCode::BadInput);
    EXPECT_EQ(contentOf(shifted), scene({20, 20}, 0, {-13, -10}).text());
}

}  // namespace

}  // namespace kestrin_test
