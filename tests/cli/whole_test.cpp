// crop --all: whole animations, what is left and put back, and what the program says about it.

#include <gmock/gmock.h>
#include <sched.h>
#include <signal.h>

#include <chrono>
#include <thread>

#include "Program.h"
#include "model/Project.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Whole : public Program {
 protected:
    // The document that --json prints, and the file it wrote.
    Json all(const CompSpec& project, std::vector<std::string> more = {}) {
        more.insert(more.begin(),
                    {"crop", "--all", write("in.json", project.text()), "--json", "-o", pathOf("out.json")});
        outcome = run(more);
        Json document = Json::parse(outcome.out, nullptr, false);
        EXPECT_FALSE(document.is_discarded()) << outcome.out << outcome.err;
        EXPECT_EQ(document["exitCode"], static_cast<int>(outcome.code));
        return document["files"][0];
    }
    // "name outcome width x height", innermost first.
    static std::vector<std::string> lines(const Json& file) {
        std::vector<std::string> result;
        for (const Json& comp : file["compositions"]) {
            result.push_back(comp["name"].get<std::string>() + " " + comp["outcome"].get<std::string>() + " " +
                             comp["after"]["width"].dump() + " x " + comp["after"]["height"].dump());
        }
        return result;
    }
    Outcome outcome;
};

TEST_F(Whole, EachCompositionOnceInnermostFirstAndWhatDoesNotPayStays) {
    const Json file =
        all(project("Scene", {300, 200})
                .with(precomp("Outer", {300, 200})
                          .with(precomp("Inner", {200, 200})
                                    .with(solid("s", {20, 10}).at({{0, {50, 60}}, {29, {90, 60}}})))
                          .with(useOf("Inner", {200, 200}).at({60, 0})))
                .with(precomp("Full", {100, 100}).with(solid("f", {98, 98}).at({1, 1})))
                .having(comp("Unused", {100, 100}).with(solid("u", {5, 5}))));
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_THAT(lines(file), ElementsAre("Inner cropped 64 x 14", "Outer cropped 124 x 14",
                                         "Full left 100 x 100", "Unused left 300 x 200"));
    EXPECT_EQ(file["compositions"][0]["corner"], Json::parse(R"({"x": 48.0, "y": 58.0})"));
    EXPECT_EQ(file["compositions"][0]["uses"], 2);
    EXPECT_EQ(file["area"]["after"], 64 * 14 + 124 * 14 + 100 * 100);
    EXPECT_EQ(file["comparison"]["verdict"], "equal");

    const Outcome again = run({"crop", "--all", pathOf("out.json"), "-o", pathOf("again.json")});
    EXPECT_EQ(again.code, ExitCode::NothingToDo) << again.out;
    EXPECT_THAT(again.out, HasSubstr("again.json, unchanged"));
    EXPECT_EQ(contentOf(pathOf("again.json")), contentOf(pathOf("out.json")));

    EXPECT_THAT(lines(all(project("Scene", {100, 100})
                              .with(precomp("Card", {100, 100}).with(solid("s", {80, 80}).at({10, 10}))),
                          {"--least-saving", "30"})),
                ElementsAre("Card left 100 x 100"));
}

TEST_F(Whole, WhatTheFrameCutsOffIsNotBroughtToLight) {
    // Content that runs over the left edge: padding would show two more of its pixels.
    const Json file =
        all(project("Scene", {300, 200})
                .with(precomp("Card", {200, 200}).with(solid("s", {60, 20}).at({-20, 50})).at({50, 0})));
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_THAT(lines(file), ElementsAre("Card cropped 40 x 20"));
    EXPECT_EQ(file["compositions"][0]["padding"], 0);

    // Said where the padding was given up, not where none was asked for.
    const auto said = [&](const std::string& padding) {
        return run({"crop", "--all", pathOf("in.json"), "--padding", padding, "-o", pathOf("out.json")}).out;
    };
    EXPECT_THAT(said("2"), HasSubstr("without padding"));
    EXPECT_THAT(said("0"), AllOf(HasSubstr("-> 40 x 20"), Not(HasSubstr("without padding"))));
}

TEST_F(Whole, WhatWouldShiftIsPutBack) {
    // The second use shows less of the composition than the first, and would show as much.
    const CompSpec disagreeing = project("Scene", {300, 200})
                                     .with(useOf("Card", {100, 100}))
                                     .with(useOf("Card", {40, 40}).set("nm", "Small \"one\"").at({150, 0}))
                                     .having(comp("Card", {100, 100}).with(solid("s", {60, 60}).at({10, 10})));
    const Json file = all(disagreeing);
    EXPECT_EQ(outcome.code, ExitCode::SomePutBack);
    EXPECT_THAT(lines(file), ElementsAre("Card put back 100 x 100"));
    EXPECT_THAT(file["compositions"][0]["reason"].get<std::string>(), HasSubstr("of \"Scene\" would differ"));
    EXPECT_EQ(file["compositions"][0]["difference"]["verdict"], "shifted");
    EXPECT_EQ(file["warnings"], Json::array());  // it has been looked at
    EXPECT_EQ(contentOf(pathOf("out.json")), disagreeing.text());
}

TEST_F(Whole, PrecomposingIsNoSaving) {
    const CompSpec spec =
        project("Scene", {300, 200})
            .with(precomp("Card", {200, 200}).with(solid("s", {20, 20}).at({50, 60, 0}).threeD()));
    EXPECT_THAT(lines(all(spec, {"--answer", "3D Layers=Yes", "--crop-unseen", "3d"})),
                ElementsAre("Card left 200 x 200"));
    EXPECT_EQ(outcome.code, ExitCode::NothingToDo);
    const Json file = Json::parse(outcome.out)["files"][0];
    EXPECT_THAT(file["compositions"][0]["reason"].get<std::string>(),
                HasSubstr("pre-composed it would take 576 pixels more"));
    EXPECT_EQ(file["area"]["after"], file["area"]["before"]);
    EXPECT_EQ(contentOf(pathOf("out.json")), spec.text());

    // Nobody is asked: it is cropped as it is, whatever is remembered for single crops.
    const std::string remembered = write("kestrin.prefs", "[\"Kestrin\"]\n\t\"ThreeD\" = \"1\"\n");
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{}, {"--answer", "3D Layers=No"}, {"--preferences", remembered}}) {
        std::vector<std::string> options{"--crop-unseen", "3d"};
        options.insert(options.end(), more.begin(), more.end());
        const Json direct = all(spec, options);
        EXPECT_THAT(lines(direct), ElementsAre("Card cropped 24 x 24"));
        EXPECT_EQ(direct["compositions"][0]["corner"], Json::parse(R"({"x": 48.0, "y": 58.0})"));
    }
}

// A card that could be cropped to its square, and what makes it impossible to look at the result.
LayerSpec card(const std::string& name) {
    return precomp(name, {200, 200}).with(solid("Square", {20, 20}).at({90, 90}));
}
const Json style = Json::parse(R"([{"ty": 1, "c": {"a": 0, "k": [0, 0, 0, 1]}}])");
const Json reaching = Json::parse(
    R"js({"a": 0, "k": [0, 0], "x": "var $bm_rt = comp('Card').layer('Square').transform.position;"})js");

TEST_F(Whole, WhatCannotBeLookedAtIsLeftUnlessChosen) {
    const CompSpec spec = project("Scene", {300, 200})
                              .with(card("Holder").with(precomp("Inner", {50, 50}).with(words("Title"))))
                              .with(card("Styled").set("sy", style))
                              .with(card("Plain"))
                              .with(words("Beside"));
    const Json file = all(spec);
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_THAT(lines(file), ElementsAre("Inner left 50 x 50", "Holder left 200 x 200", "Styled left 200 x 200",
                                         "Plain cropped 24 x 24"));
    EXPECT_THAT(file["compositions"][1]["reason"].get<std::string>(),
                HasSubstr("\"Title\" in \"Inner\" has text"));
    EXPECT_EQ(file["compositions"][1]["notDrawn"][0]["kind"], "text");
    EXPECT_EQ(file["compositions"][2]["notDrawn"][0]["layer"], "Styled");
    EXPECT_EQ(file["compositions"][2]["notDrawn"][0]["kind"], "styles");
    EXPECT_EQ(file["compositions"][3]["notDrawn"], Json::array());
    EXPECT_EQ(file["warnings"], Json::array());
    EXPECT_EQ(file["comparison"]["conclusion"], "nothing on screen has shifted");

    // What is chosen is cropped, and said.
    const Json chosen = all(spec, {"--crop-unseen", "text,3d"});
    EXPECT_THAT(lines(chosen), ElementsAre("Inner left 50 x 50", "Holder cropped 24 x 24",
                                           "Styled left 200 x 200", "Plain cropped 24 x 24"));
    ASSERT_EQ(chosen["warnings"].size(), 1u);
    EXPECT_EQ(chosen["warnings"][0]["layer"], "Title");
    EXPECT_EQ(chosen["warnings"][0]["kind"], "text");
    EXPECT_EQ(chosen["warnings"][0]["code"], file["compositions"][1]["notDrawn"][0]["code"]);
    EXPECT_THAT(chosen["comparison"]["conclusion"].get<std::string>(),
                testing::StartsWith("nothing that can be drawn has shifted; not drawn: text"));
    EXPECT_THAT(lines(all(spec, {"--crop-unseen", "all"})), testing::Contains("Styled cropped 24 x 24"));

    const auto said = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"crop", "--all", pathOf("in.json"), "-o", pathOf("out.json")});
        return run(more);
    };
    EXPECT_THAT(said({}).err, HasSubstr("note: --crop-unseen styles,text"));
    EXPECT_THAT(said({"--crop-unseen", "all"}).err,
                AllOf(HasSubstr("warning: \"Title\" in \"Inner\" has text"), Not(HasSubstr("note:"))));
    const Outcome wrong = said({"--crop-unseen", "text,glyphs"});
    EXPECT_EQ(wrong.code, ExitCode::BadInput);
    EXPECT_THAT(wrong.err, AllOf(HasSubstr("no kind \"glyphs\""), HasSubstr("expressions")));
}

TEST_F(Whole, WhatAPictureGoesThroughCounts) {
    const auto left = [&](const CompSpec& spec) {
        const Json file = all(spec);
        EXPECT_EQ(lines(file).back(), "Card left 200 x 200") << file.dump();
        return file["compositions"].back()["reason"].get<std::string>();
    };
    // Its matte, what it is a matte of, its children, and expressions that reach for it by name.
    EXPECT_THAT(
        left(project("Scene", {300, 200}).with(words("Matte").set("td", 1)).with(card("Card").set("tt", 1))),
        HasSubstr("\"Matte\" in \"Scene\" has text"));
    EXPECT_THAT(left(project("Scene", {300, 200})
                         .with(card("Card").set("td", 1).index(7).hidden())
                         .with(null("Between"))
                         .with(words("Cut").set("tt", 1).set("tp", 7))),
                HasSubstr("\"Cut\" in \"Scene\" has text"));
    EXPECT_THAT(left(project("Scene", {300, 200}).with(card("Card").index(1)).with(words("Child").childOf(1))),
                HasSubstr("\"Child\" in \"Scene\" has text"));
    EXPECT_THAT(left(project("Scene", {300, 200})
                         .with(solid("Far", {9, 9}).set("ks", {{"p", reaching}}))
                         .with(card("Card"))),
                HasSubstr("\"Far\" in \"Scene\" has"));
}

TEST_F(Whole, AnExpressionThatIsDrawnIsComparedNotFeared) {
    const auto scene = [](const std::string& script) {
        Json position{{"a", 0}, {"k", {90, 90}}, {"x", script}};
        LayerSpec square = solid("Square", {20, 20}).set("ks", {{"p", position}});
        return project("Scene", {300, 200}).with(precomp("Card", {200, 200}).with(std::move(square)));
    };
    // One follows the value below it, which the crop corrects; the other does not.
    EXPECT_THAT(lines(all(scene("var $bm_rt = value;"))), ElementsAre("Card cropped 24 x 24"));
    EXPECT_EQ(Json::parse(outcome.out)["files"][0]["warnings"], Json::array());
    EXPECT_THAT(lines(all(scene("var $bm_rt = [90, 90];"))), ElementsAre("Card put back 200 x 200"));

    // A single crop looks at nothing, so it warns.
    const std::string file = write("in.json", scene("var $bm_rt = [90, 90];").text());
    EXPECT_THAT(run({"crop", file, "--layer", "Card", "-o", pathOf("one.json")}).err,
                HasSubstr("warning: \"Square\" in \"Card\" has an expression on its position"));
}

TEST_F(Whole, ABatchGoesOnAfterABadFile) {
    write("a.json", project("A", {99, 99}).with(precomp("Card", {90, 90}).with(solid("s", {9, 9}))).text());
    write("b.json", "{\"layers\": 3}");
    write("c.json", project("C", {99, 99}).text());
    fs::create_directory(folder / "out");
    const auto crop = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"crop", "--all"});
        return run(arguments);
    };
    const std::string a = pathOf("a.json"), b = pathOf("b.json"), c = pathOf("c.json"), out = pathOf("out");
    const Outcome batch = crop({a, b, c, "-o", out});
    EXPECT_EQ(batch.code, ExitCode::BadInput);
    EXPECT_THAT(batch.err, HasSubstr("b.json: "));
    EXPECT_THAT(batch.out, HasSubstr("wrote " + out + "/a.json\n"));
    EXPECT_THAT(batch.out, HasSubstr("wrote " + out + "/c.json, unchanged\n"));
    EXPECT_FALSE(fs::exists(folder / "out/b.json"));
    EXPECT_EQ(crop({a, c, "-o", out}).code, ExitCode::Done);

    // Refused before anything is done.
    fs::create_directory(folder / "other");
    fs::copy_file(a, folder / "other/a.json");
    EXPECT_THAT(crop({a, pathOf("other/a.json"), "-o", out}).err, HasSubstr("two results would be written to"));
    EXPECT_THAT(crop({a, "--layer", "Card", "-o", out}).err, HasSubstr("--layer excludes --all"));
    EXPECT_THAT(run({"crop", a, c, "-o", out}).err, HasSubstr("--all"));
}

TEST_F(Whole, AnInterruptEndsTheBatchAndKeepsWhatIsDone) {
    const auto animation = [](int frames) {
        return project("Scene", {2000, 2000})
            .lasting(0, frames)
            .with(precomp("Card", {2000, 2000}).with(solid("s", {9, 9}).shown(0, frames)).shown(0, frames))
            .text();
    };
    write("a.json", animation(1));
    write("b.json", animation(9000));
    fs::create_directory(folder / "out");
    const Outcome cancelled =
        run({"crop", "--all", pathOf("a.json"), pathOf("b.json"), "-o", pathOf("out")}, [&](pid_t child) {
            while (!fs::exists(folder / "out/a.json") && ::kill(child, 0) == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            ::kill(child, SIGINT);
        });
    EXPECT_EQ(cancelled.code, ExitCode::Cancelled) << cancelled.err;
    EXPECT_THAT(cancelled.err,
                HasSubstr("cancelled at " + pathOf("b.json") + "; written before: " + pathOf("out/a.json")));
    EXPECT_FALSE(fs::exists(folder / "out/b.json"));
}

TEST_F(Whole, OneProcessorWritesTheBytesOfTwo) {
    cpu_set_t all;
    ASSERT_EQ(::sched_getaffinity(0, sizeof all, &all), 0);
    if (CPU_COUNT(&all) < 2) {
        GTEST_SKIP() << "there is one processor only";
    }
    run({"crop", "--all", KESTRIN_EXAMPLE, "-o", pathOf("two.json")});
    int first = 0;
    while (!CPU_ISSET(first, &all)) {
        ++first;
    }
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ::sched_setaffinity(0, sizeof one, &one);
    run({"crop", "--all", KESTRIN_EXAMPLE, "-o", pathOf("one.json")});
    ::sched_setaffinity(0, sizeof all, &all);
    EXPECT_NE(contentOf(pathOf("two.json")), "");
    EXPECT_EQ(contentOf(pathOf("one.json")), contentOf(pathOf("two.json")));
}

}  // namespace

}  // namespace kestrin_test
