// What is left or refused because a crop could not do it right: values in slots, pictures too large to draw.

#include <gmock/gmock.h>

#include "Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

LayerSpec dotted(const Json& box, const Json& colour) {
    Json fill{{"ty", "fl"}, {"o", {{"a", 0}, {"k", 100}}}, {"c", colour}};
    Json shape{{"ty", "rc"}, {"p", {{"a", 0}, {"k", {60, 50}}}}, {"s", box}, {"r", {{"a", 0}, {"k", 0}}}};
    return LayerSpec(4, "Dot").set("shapes", Json::array({shape, fill}));
}

class Obstacles : public Program {
 protected:
    struct Crops {
        Outcome one, all;
    };
    // "Card" cropped alone, and with all.
    Crops crop(const Json& document) {
        const std::string file = write("in.json", document.dump());
        return {run({"crop", file, "--layer", "Card", "--duration", "-o", pathOf("one.json")}),
                run({"crop", "--all", file, "-o", pathOf("all.json")})};
    }
    void isLeft(const Json& document, const std::string& reason) {
        fs::remove(pathOf("one.json"));
        const Crops crops = crop(document);
        EXPECT_EQ(crops.one.code, ExitCode::NothingToDo) << crops.one.out;
        EXPECT_THAT(crops.one.err, HasSubstr(reason));
        EXPECT_FALSE(fs::exists(pathOf("one.json")));
        EXPECT_EQ(crops.all.code, ExitCode::NothingToDo) << crops.all.err;
        EXPECT_THAT(crops.all.out, AllOf(HasSubstr("left"), HasSubstr(reason)));
        EXPECT_EQ(Json::parse(contentOf(pathOf("all.json"))), document);
    }
};

const Json plainBox{{"a", 0}, {"k", {20, 10}}};
const Json plainColour{{"a", 0}, {"k", {1, 0, 0, 1}}};

TEST_F(Obstacles, WhatTakesItsValueFromASlot) {
    const auto scene = [](LayerSpec card, const Json& box = plainBox, const Json& colour = plainColour) {
        Json json = Json::parse(project("Scene", {200, 100})
                                    .with(std::move(card).with(dotted(box, colour)))
                                    .with(LayerSpec(3, "Child").childOf(1).at({5, 5}))
                                    .text());
        json["slots"] = {{"red", {{"p", {{"a", 0}, {"k", {0, 0, 1, 1}}}}}},
                         {"size", {{"p", {{"a", 0}, {"k", {40, 30}}}}}},
                         {"here", {{"p", {{"a", 0}, {"k", {0, 0}}}}}}};
        return json;
    };
    const auto card = [] { return precomp("Card", {200, 100}).index(1).at({0, 0}).anchor({0, 0}); };

    // Colours may change as they like.
    const Crops colours = crop(scene(card(), plainBox, {{"k", {1, 0, 0, 1}}, {"sid", "red"}}));
    for (const Outcome& outcome : {colours.one, colours.all}) {
        EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    }
    for (const char* written : {"one.json", "all.json"}) {
        EXPECT_THAT(contentOf(pathOf(written)),
                    AllOf(HasSubstr(R"("sid":"red")"), HasSubstr(R"("slots":{"red")")));
    }

    isLeft(scene(card(), {{"sid", "size"}, {"k", {20, 10}}}),
           "\"Dot\" in \"Card\" takes more than its colours");
    Json json = scene(card());
    json["layers"][0]["ks"]["a"]["sid"] = "here";
    isLeft(json, "\"Card\" in \"Scene\" takes its anchor point from a slot");
    // Only what the slot says differs.
    const std::string before = write("before.json", json.dump());
    json["slots"]["here"]["p"]["k"] = {30, 0};
    const Outcome compared = run({"compare", before, write("after.json", json.dump())});
    EXPECT_THAT(compared.out, HasSubstr("shifted: \"Scene\""));
    json = scene(card().masked({{0, 0}, {190, 0}, {190, 90}}));
    json["layers"][0]["masksProperties"][0]["pt"]["sid"] = "cut";
    isLeft(json, "\"Card\" in \"Scene\" takes its mask from a slot");
    json = scene(card());
    json["layers"][1]["ks"]["p"]["sid"] = "here";
    isLeft(json, "\"Child\" in \"Scene\" takes its position from a slot");
}

TEST_F(Obstacles, PicturesThatAreTooLargeToDraw) {
    const auto scene = [](Size size, Size card) {
        return Json::parse(
            project("Scene", size).with(precomp("Card", card).with(solid("s", {20, 10}).at({3, 3}))).text());
    };
    const Json largeCard = scene({200, 100}, {30'000, 30'000});
    const Crops crops = crop(largeCard);
    EXPECT_EQ(crops.one.code, ExitCode::Failed);
    EXPECT_THAT(crops.one.err, HasSubstr("30000 x 30000 pixels is too large; at most 36 million"));
    EXPECT_EQ(crops.all.code, ExitCode::NothingToDo) << crops.all.err;
    EXPECT_THAT(crops.all.out, HasSubstr("at most 36 million pixels are drawn"));
    EXPECT_FALSE(fs::exists(pathOf("one.json")));

    const std::string large = write("large.json", scene({30'000, 30'000}, {200, 100}).dump());
    Json other = scene({30'000, 30'000}, {200, 100});
    other["layers"][0]["ks"]["p"] = {{"a", 0}, {"k", {9, 9}}};
    const std::string moved = write("moved.json", other.dump());
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"crop", "--all", large, "-o", pathOf("out.json")},
          {"render", large, "--frame", "0", "-o", pathOf("out.png")},
          {"compare", large, moved}}) {
        const Outcome refused = run(arguments);
        EXPECT_THAT(refused.err, HasSubstr("at most 36 million pixels are drawn"))
            << arguments[0] << refused.out;
        EXPECT_NE(refused.code, ExitCode::Done) << arguments[0];
    }
    EXPECT_FALSE(fs::exists(pathOf("out.json")) || fs::exists(pathOf("out.png")));
}

// A stroke's dashes are a list `d`; of other shapes it says a direction, as a number.
TEST_F(Obstacles, AListInThePlaceOfADirectionIsNotKnownToBeDrawn) {
    for (const char* wrong : {R"([{"n":"d","v":{"k":5}},{"n":"o","v":{"k":1}}])", "[3]", "{}", R"("x")"}) {
        LayerSpec dot = dotted(plainBox, plainColour);
        dot.json_["shapes"][0]["d"] = Json::parse(wrong);
        const Json scene = Json::parse(
            project("Scene", {200, 100}).with(precomp("Card", {200, 100}).with(std::move(dot))).text());
        const Crops crops = crop(scene);
        EXPECT_EQ(crops.all.code, ExitCode::NothingToDo) << wrong << crops.all.err;
        EXPECT_THAT(crops.all.out, HasSubstr("\"Dot\" in \"Card\" has")) << wrong;
        EXPECT_THAT(crops.one.err, HasSubstr("warning: \"Dot\" in \"Card\" has")) << wrong;
    }
}

}  // namespace

}  // namespace kestrin_test
