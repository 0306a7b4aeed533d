// The program on .lottie archives: which form goes in, which comes out, and that nothing else in them changes.

#include <gmock/gmock.h>

#include "Program.h"
#include "archive/DotLottie.h"
#include "archive/Packed.h"
#include "render/Png.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class Archives : public Program {
 protected:
    static std::string card(const std::string& name) {
        return project(name, {100, 80})
            .with(precomp("Card", {60, 60}).with(solid("Red", {10, 20}).at({5, 5})))
            .text();
    }
    Outcome crop(const std::string& in, const std::string& out, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"crop", pathOf(in), "--layer", "Card"});
        more.insert(more.end(), {"-o", pathOf(out)});
        return run(more);
    }
    Size cardIn(const std::string& file, const std::string& animation = "") {
        const auto archive = headless::archive::openArchive(pathOf(file));
        return headless::archive::openAnimation(archive, animation)->items[1]->size;
    }
    std::string entry(const std::string& file, const std::string& name) {
        return headless::archive::Zip(contentOf(pathOf(file)), file).contentOf(name);
    }
};

TEST_F(Archives, AsAWholeEveryAnimationIsCroppedIntoOneArchive) {
    const std::string tight = project("Tight", {100, 80}).text();
    write("in.lottie",
          packed({{"manifest.json", R"({"animations":[{"id":"a"},{"id":"b"},{"id":"c"},{"id":"d"}]})"},
                  {"animations/a.json", card("First"), ZIP_CM_STORE},
                  {"animations/b.json", "{}"},
                  {"animations/c.json", tight},
                  {"animations/d.json", card("Last")}}));
    const auto all = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"crop", "--all", pathOf("in.lottie"), "--padding", "0"});
        return run(more);
    };
    const Outcome outcome = all({"--json", "-o", pathOf("out.lottie")});
    EXPECT_EQ(outcome.code, ExitCode::BadInput) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("animation \"b\": "));
    std::string told;
    const Json document = Json::parse(outcome.out);
    for (const Json& file : document["files"]) {
        told += file["animation"].get<std::string>() + " " + file["result"].get<std::string>() +
                (file["output"].is_null() ? "; " : ", written; ");
    }
    EXPECT_EQ(told, "a done, written; b bad input; c nothing to do, written; d done, written; ");
    EXPECT_EQ(cardIn("out.lottie", "a"), (Size{10, 20}));
    EXPECT_EQ(cardIn("out.lottie", "d"), (Size{10, 20}));
    EXPECT_EQ(entry("out.lottie", "animations/b.json"), "{}");
    EXPECT_EQ(entry("out.lottie", "animations/c.json"), tight);

    // One that is named, and the others stay.
    EXPECT_EQ(crop("in.lottie", "one.lottie").code, ExitCode::BadInput);
    EXPECT_EQ(crop("in.lottie", "one.lottie", {"--animation", "a"}).code, ExitCode::Done);
    EXPECT_EQ(all({"--animation", "d", "--in-place"}).code, ExitCode::Done);
    EXPECT_EQ(cardIn("one.lottie", "a"), (Size{10, 20}));
    EXPECT_EQ(entry("one.lottie", "animations/d.json"), card("Last"));
    EXPECT_EQ(cardIn("in.lottie", "d"), (Size{10, 20}));
    EXPECT_EQ(cardIn("in.lottie", "a"), (Size{60, 60}));
    EXPECT_THAT(run({"info", pathOf("in.lottie"), "--animation", "a"}).out, HasSubstr("\"First\", the root"));
    EXPECT_EQ(all({"-o", pathOf("out.json")}).code, ExitCode::BadInput);  // it holds one
    EXPECT_FALSE(fs::exists(pathOf("out.json")));
}

TEST_F(Archives, OneNameInBothFoldersIsTwoAnimations) {
    write("in.lottie", packed({{"animations/x.json", card("First")}, {"a/x.json", card("Second")}}));
    const Outcome outcome = run({"crop", "--all", pathOf("in.lottie"), "--in-place"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(cardIn("in.lottie", "animations/x.json"), (Size{14, 24}));
    EXPECT_EQ(cardIn("in.lottie", "a/x.json"), (Size{14, 24}));
}

TEST_F(Archives, AnAnimationIsNamedOfArchivesOnly) {
    write("in.json", card("Scene"));
    write("in.lottie", packed({{"a/x.json", card("Scene")}}));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"info", pathOf("in.json")},
          {"crop", pathOf("in.json"), "--layer", "Card", "-o", pathOf("out.json")},
          {"crop", "--all", pathOf("in.json"), "-o", pathOf("out.json")},
          {"compare", pathOf("in.json"), pathOf("in.json")}}) {
        std::vector<std::string> named = arguments;
        named.insert(named.end(), {"--animation", "x"});
        const Outcome outcome = run(named);
        EXPECT_EQ(outcome.code, ExitCode::BadInput) << arguments[0];
        EXPECT_THAT(outcome.err, AllOf(HasSubstr("in.json"), HasSubstr("--animation")));
    }
    EXPECT_FALSE(fs::exists(pathOf("out.json")));
    // One that was taken out of its archive.
    EXPECT_EQ(run({"compare", pathOf("in.lottie"), pathOf("in.json"), "--animation", "x"}).code,
              ExitCode::Done);
}

TEST_F(Archives, TheFormFollowsTheNameButStaysWhereTheFileDoes) {
    write("in.lottie", packed({{"a/x.json", card("Scene")}}));
    EXPECT_EQ(crop("in.lottie", "out.json").code, ExitCode::Done);
    EXPECT_EQ(headless::model::Project::open(pathOf("out.json"))->items[1]->size, (Size{10, 20}));

    write("in.json", card("Scene"));
    EXPECT_EQ(crop("in.json", "made.lottie").code, ExitCode::Done);
    EXPECT_EQ(cardIn("made.lottie", "animation"), (Size{10, 20}));
    EXPECT_EQ(run({"compare", pathOf("in.lottie"), pathOf("made.lottie")}).code, ExitCode::Done);

    for (const std::string name : {"renamed.json", "renamed"}) {
        write(name, contentOf(pathOf("in.lottie")));
        EXPECT_EQ(run({"crop", pathOf(name), "--layer", "Card", "--in-place"}).code, ExitCode::Done);
        EXPECT_EQ(cardIn(name), (Size{10, 20}));
    }
}

TEST_F(Archives, PicturesStayWithTheAnimation) {
    // A card whose only content is a picture of 3 x 2 pixels beside it.
    Json json = Json::parse(project("Scene", {40, 30})
                                .with(precomp("Card", {40, 30}).with(LayerSpec(2, "dot").set("refId", "dot")))
                                .text());
    json["assets"].push_back({{"id", "dot"}, {"w", 3}, {"h", 2}, {"u", "images/"}, {"p", "dot.png"}});
    const std::string scene = json.dump();
    headless::render::writePng(pathOf("dot.png"), {3, 2, std::vector<std::uint32_t>(6, 0xFFFF0000)});
    const std::string dot = contentOf(pathOf("dot.png"));
    write("in.lottie", packed({{"animations/x.json", scene}, {"images/dot.png", dot, ZIP_CM_STORE}}));
    ASSERT_EQ(crop("in.lottie", "out.lottie").code, ExitCode::Done);
    EXPECT_EQ(cardIn("out.lottie"), (Size{3, 2}));
    EXPECT_EQ(entry("out.lottie", "images/dot.png"), dot);
    EXPECT_EQ(run({"compare", pathOf("in.lottie"), pathOf("out.lottie")}).code, ExitCode::Done);

    headless::render::writePng(pathOf("other.png"), {3, 2, std::vector<std::uint32_t>(6, 0xFF00FF00)});
    write("other.lottie",
          packed({{"animations/x.json", scene}, {"images/dot.png", contentOf(pathOf("other.png"))}}));
    EXPECT_EQ(run({"compare", pathOf("in.lottie"), pathOf("other.lottie")}).code, ExitCode::Differs);

    const Outcome alone = crop("in.lottie", "out.json");
    EXPECT_EQ(alone.code, ExitCode::BadInput);
    EXPECT_THAT(alone.err, AllOf(HasSubstr("images/dot.png"), HasSubstr(".lottie")));
    EXPECT_FALSE(fs::exists(pathOf("out.json")));

    fs::create_directory(pathOf("images"));
    fs::rename(pathOf("dot.png"), pathOf("images/dot.png"));
    write("in.json", scene);
    ASSERT_EQ(crop("in.json", "made.lottie", {"--images", folder.string()}).code, ExitCode::Done);
    EXPECT_EQ(cardIn("made.lottie"), (Size{3, 2}));
    EXPECT_EQ(entry("made.lottie", "i/dot.png"), dot);
}

}  // namespace
}  // namespace kestrin_test
