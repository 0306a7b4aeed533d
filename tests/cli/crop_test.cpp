// The program end to end: what it crops, what it says and what it writes.

#include <gmock/gmock.h>

#include "Program.h"

#include "render/Difference.h"
#include "render/Png.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using testing::HasSubstr;

class Crop : public Program {
 protected:
    Outcome crop(const std::string& file, std::vector<std::string> more, const std::string& out = "out.json") {
        more.insert(more.begin(), {"crop", file, "-o", pathOf(out)});
        return run(more);
    }
};

TEST_F(Crop, TheExampleShrinksAndLooksAsBefore) {
    const Outcome outcome = crop(KESTRIN_EXAMPLE, {"--layer", "Big lantern", "--padding", "2"});
    ASSERT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\"Lantern\": 800 x 800 -> 244 x 244, 580,464 pixels saved (90 %), "
                                       "5 uses corrected"));
    EXPECT_EQ(outcome.err, "");

    const Outcome comparison = run({"compare", KESTRIN_EXAMPLE, pathOf("out.json")});
    EXPECT_EQ(comparison.code, ExitCode::Done) << comparison.out;
    EXPECT_THAT(comparison.out, HasSubstr("90 frames compared"));

    const Outcome again = crop(pathOf("out.json"), {"--layer", "Big lantern", "--padding", "2"}, "again.json");
    EXPECT_EQ(again.code, ExitCode::Done);
    EXPECT_THAT(again.out, HasSubstr("\"Lantern\": already tight at 244 x 244"));
    EXPECT_EQ(contentOf(pathOf("again.json")), contentOf(pathOf("out.json")));
}

TEST_F(Crop, TheCompositionAsAWholeAtTheTimeGiven) {
    const std::string file = write("in.json", project("Scene", {100, 80})
                                                  .with(solid("Early", {10, 20}).at({5, 5}).shown(0, 15))
                                                  .with(solid("Late", {30, 10}).at({40, 50}).shown(15, 30))
                                                  .text());
    EXPECT_THAT(crop(file, {}).out, HasSubstr("\"Scene\": 100 x 80 -> 10 x 20"));
    EXPECT_THAT(crop(file, {"--frame", "20"}).out, HasSubstr("-> 30 x 10"));
    EXPECT_THAT(crop(file, {"--time", "0.5", "--depth", "32"}).out, HasSubstr("-> 30 x 10"));
    EXPECT_THAT(crop(file, {"--resolution", "half", "--answer", "Low Resolution=Accurate"}).out,
                HasSubstr("-> 10 x 20"));

    // The cropped root is what is on screen; that its content is the same is told beside.
    const Outcome comparison = run({"compare", file, pathOf("out.json"), "--frame", "3"});
    EXPECT_EQ(comparison.code, ExitCode::Differs);
    EXPECT_THAT(comparison.out, HasSubstr("laid over its old picture, moved by 5,5"));
}

TEST_F(Crop, RenderWritesTheFrameThatInfoNames) {
    EXPECT_THAT(run({"info", KESTRIN_EXAMPLE}).out,
                HasSubstr("\"Lantern\", id \"lantern\": 800 x 800, frames 0 to 89"));
    const std::string file = pathOf("frame.png");
    ASSERT_EQ(run({"render", KESTRIN_EXAMPLE, "--comp", "lantern", "--frame", "89", "--resolution", "half",
                   "-o", file})
                  .code,
              ExitCode::Done);
    const auto picture = headless::render::readPng(file);
    EXPECT_EQ((Size{picture.width, picture.height}), (Size{400, 400}));
    EXPECT_EQ(headless::render::visibleBounds(picture), (headless::render::PixelBox{90, 150, 210, 270}));
}

TEST_F(Crop, PicturesOutsideTheFileAreReadFromTheFolderThatWasAllowed) {
    fs::create_directories(pathOf("images"));
    headless::render::writePng(pathOf("images/dot.png"), {3, 2, std::vector<std::uint32_t>(6, 0xFFFF0000)});
    Json scene = Json::parse(project("Scene", {40, 30}).with(LayerSpec(2, "dot").set("refId", "dot")).text());
    scene["assets"] = {{{"id", "dot"}, {"w", 3}, {"h", 2}, {"u", "images/"}, {"p", "dot.png"}, {"e", 0}}};
    const std::string file = write("in.json", scene.dump());
    EXPECT_EQ(crop(file, {}).code, ExitCode::BadInput);
    EXPECT_THAT(crop(file, {"--images", folder.string()}).out, HasSubstr("-> 3 x 2"));
    EXPECT_EQ(contentOf(pathOf("out.json")).find("base64"), std::string::npos);
    fs::remove(pathOf("images/dot.png"));
    EXPECT_THAT(crop(file, {"--images", folder.string()}).err,
                HasSubstr("dot.png: the picture cannot be read"));
}

TEST_F(Crop, ATightCompositionOfOddSizeStaysInPlaceToo) {
    const auto scene = [](Size size) {
        return project("Scene", {100, 100})
            .with(precomp("Card", size).with(solid("Full", size)).anchor({20.5, 20.5}).at({50, 50}).index(1))
            .with(solid("child", {7, 7}, "#00ff00").at({3, 4}).childOf(1))
            .text();
    };
    const std::string odd = write("odd.json", scene({41, 41}));
    const Outcome tight = crop(odd, {"--layer", "Card"});
    EXPECT_THAT(tight.out, HasSubstr("gave its uses back the half pixel"));
    EXPECT_THAT(tight.out, HasSubstr("already tight at 41 x 41"));
    EXPECT_EQ(run({"compare", odd, pathOf("out.json")}).code, ExitCode::Done);
    EXPECT_EQ(crop(odd, {"--layer", "Card", "--plug-in-only"}).code, ExitCode::Done);
    EXPECT_EQ(run({"compare", odd, pathOf("out.json")}).code, ExitCode::Differs);

    const std::string even = write("even.json", scene({40, 40}));
    EXPECT_EQ(crop(even, {"--layer", "Card", "--expand", "10"}).code, ExitCode::Done);
    EXPECT_EQ(run({"compare", even, pathOf("out.json")}).code, ExitCode::Done);

    // An amount of which the plug-in's 16 bits keep nothing: it crops twice and expands neither time.
    const std::string store =
        write("prefs", "[\"Kestrin\"]\n\t\"Expand\" = 01\n\t\"ExpandAmount\" = \"65536\"\n");
    for (const std::string& file : {even, odd}) {
        const Outcome twice = crop(file, {"--layer", "Card", "--preferences", store});
        EXPECT_EQ(twice.code, ExitCode::Done) << twice.err;
        EXPECT_EQ(twice.out.find("gave its uses back") == std::string::npos, file == even) << twice.out;
        EXPECT_EQ(run({"compare", file, pathOf("out.json")}).code, ExitCode::Done) << file;
    }
}

TEST_F(Crop, WhatAPaddingTakesAwayIsNotCalledInvisible) {
    for (const std::vector<std::string>& how : {std::vector<std::string>{}, {"--duration"}}) {
        std::vector<std::string> arguments = {"--layer", "Big lantern", "--padding", "-30000"};
        arguments.insert(arguments.end(), how.begin(), how.end());
        const Outcome outcome = crop(KESTRIN_EXAMPLE, arguments);
        EXPECT_EQ(outcome.code, ExitCode::NothingToDo);
        EXPECT_THAT(outcome.err, HasSubstr("with 30,000 pixels taken off each side by the padding"));
    }
}

TEST_F(Crop, APaddingBeyondEverySizeIsRefused) {
    const std::string store =
        write("prefs", "[\"Kestrin\"]\n\t\"Padding\" = 01\n\t\"PaddingAmount\" = \"999999999999\"\n");
    const Outcome outcome = crop(KESTRIN_EXAMPLE, {"--layer", "Big lantern", "--preferences", store});
    EXPECT_EQ(outcome.code, ExitCode::Failed) << outcome.out;
    EXPECT_FALSE(fs::exists(pathOf("out.json")));
    EXPECT_EQ(crop(KESTRIN_EXAMPLE, {"--layer", "Big lantern"}, "../../dev/null").code, ExitCode::BadInput);
}

}  // namespace

}  // namespace kestrin_test
