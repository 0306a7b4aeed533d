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
using testing::Not;

class Archives : public Program {
 protected:
    static std::string card(const std::string& name) {
        return project(name, {100, 80})
            .with(precomp("Card", {60, 60}).with(solid("Red", {10, 20}).at({5, 5})))
            .text();
    }
    // A card whose only content is a picture of 3 x 2 pixels beside it.
    std::string pictured() {
        Json scene = Json::parse(
            project("Scene", {40, 30})
                .with(precomp("Card", {40, 30}).with(LayerSpec(2, "dot").set("refId", "dot").at({10, 20})))
                .text());
        scene["assets"].push_back({{"id", "dot"}, {"w", 3}, {"h", 2}, {"u", "images/"}, {"p", "dot.png"}});
        headless::render::writePng(pathOf("dot.png"), {3, 2, std::vector<std::uint32_t>(6, 0xFFFF0000)});
        dot = contentOf(pathOf("dot.png"));
        return scene.dump();
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
    std::string dot;
};

TEST_F(Archives, OneAnimationOfSeveralIsCroppedAndTheOthersStay) {
    const std::string manifest = R"({"version":"1.0","animations":[{"id":"one"},{"id":"two"}], "author":"A"})";
    const std::string bytes = packed({{"animations/two.json", card("Second")},
                                      {"manifest.json", manifest},
                                      {"animations/one.json", card("First"), ZIP_CM_STORE}});
    write("in.lottie", bytes);
    const Outcome unsaid = crop("in.lottie", "out.lottie");
    EXPECT_EQ(unsaid.code, ExitCode::BadInput);
    EXPECT_THAT(unsaid.err, AllOf(HasSubstr("--animation"), HasSubstr("\"one\", \"two\"")));

    const Outcome outcome = crop("in.lottie", "out.lottie", {"--animation", "two"});
    ASSERT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(cardIn("out.lottie", "two"), (Size{10, 20}));
    EXPECT_EQ(cardIn("out.lottie", "one"), (Size{60, 60}));
    EXPECT_EQ(entry("out.lottie", "animations/one.json"), card("First"));
    EXPECT_EQ(entry("out.lottie", "manifest.json"), manifest);
    EXPECT_THAT(run({"info", pathOf("in.lottie"), "--animation", "one"}).out, HasSubstr("\"First\", the root"));
    EXPECT_THAT(run({"menu", pathOf("in.lottie"), "--animation", "one", "--select", "Card"}).out,
                HasSubstr("Layer > Kestrin"));
    EXPECT_EQ(files(), (std::vector<std::string>{"in.lottie", "out.lottie"}));
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
    const std::string scene = pictured();
    write("in.lottie", packed({{"animations/x.json", scene}, {"images/dot.png", dot, ZIP_CM_STORE}}));
    ASSERT_EQ(crop("in.lottie", "out.lottie").code, ExitCode::Done);
    EXPECT_EQ(cardIn("out.lottie"), (Size{3, 2}));
    EXPECT_EQ(entry("out.lottie", "images/dot.png"), dot);
    EXPECT_EQ(run({"compare", pathOf("in.lottie"), pathOf("out.lottie")}).code, ExitCode::Done);
    ASSERT_EQ(run({"render", pathOf("out.lottie"), "--frame", "0", "-o", pathOf("frame.png")}).code,
              ExitCode::Done);
    EXPECT_EQ(headless::render::readPng(pathOf("frame.png")).pixels[20 * 40 + 10] & 0x00F0FFFFu, 0x00F00000u);

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

TEST_F(Archives, ABadArchiveIsRefusedAndNothingIsWritten) {
    write("in.lottie",
          patched(packed({{"a/x.json", card("Scene")}, {"../escape?[31m", "p"}}), "escape?", "escape\x1b"));
    const Outcome outcome = crop("in.lottie", "out.lottie");
    EXPECT_EQ(outcome.code, ExitCode::BadInput);
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("in.lottie: ../escape"), HasSubstr("leads out"), Not(HasSubstr("\x1b"))));
    EXPECT_EQ(files(), std::vector<std::string>{"in.lottie"});
}

}  // namespace
}  // namespace kestrin_test
