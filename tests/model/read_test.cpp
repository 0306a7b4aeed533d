// Reading and writing projects: what is kept, what is found out, what is refused.

#include <gtest/gtest.h>

#include <ctime>

#include "model/Edit.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using namespace headless::model;

std::string refusal(const std::string& text) {
    try {
        Project::read(text);
    } catch (const ProjectError& error) {
        return error.what();
    }
    return "(accepted)";
}

std::string animation(const std::string& layers, const std::string& assets = "") {
    return R"({"v":"5","fr":30,"ip":0,"op":60,"w":100,"h":80,"layers":[)" + layers + R"(],"assets":[)" +
           assets + "]}";
}

TEST(Read, AnUntouchedFileIsWrittenAsItWas) {
    const std::string text =
        "{ \"v\" : \"5\",\n \"odd\": {\"b\":1.50,\"a\":[1e2, null]}, \"fr\":29.97,\"ip\":0,\"op\":60.0,"
        "\"w\":100,\"h\":80,\"layers\":[ {\"ty\":4, \"mystery\":[1 , 2.0]} ,{\"ty\":3,\"ind\":1.0}\n], "
        "\"markers\":[]}";
    const auto project = Project::read(text);
    EXPECT_EQ(project->write(), text);

    // A change touches its own layer and nothing else; unknown members keep their order.
    setLayerField(
        *project, *project->root().layers[1], [](Layer& l) -> PointStream& { return l.position; },
        PointStream{{7, 8.5, 0}, {}, {}, 2});
    const std::string changed = project->write();
    EXPECT_NE(changed.find("{\"ty\":4, \"mystery\":[1 , 2.0]}"), std::string::npos) << changed;
    EXPECT_NE(changed.find("\"p\":{\"a\":0,\"k\":[7,8.5,0]}"), std::string::npos) << changed;
    EXPECT_LT(changed.find("\"odd\""), changed.find("\"fr\""));
}

TEST(Read, OlderKeyframesCarryTheValueAtTheirEnd) {
    const std::string layer =
        R"({"ty":0,"refId":"c","w":100,"h":80,"ip":0,"op":60,"st":0,"ks":{"a":{"a":1,"k":[)"
        R"({"t":0,"s":[10,20],"e":[30,40],"i":{"x":1,"y":1},"o":{"x":0,"y":0}},{"t":10,"s":[30,40],"e":[50,60],"h":1},{"t":20}]}}})";
    const std::string text = animation(layer, R"({"id":"c","layers":[]})");
    const auto project = Project::read(text);
    Layer& use = *project->root().layers[0];
    ASSERT_EQ(use.anchor.keys.size(), 3u);
    EXPECT_EQ(use.anchor.keys[2].value, (Vec3{50, 60, 0}));
    EXPECT_NEAR(use.anchor.at(5).x, 20, 1e-9);
    EXPECT_EQ(use.anchor.at(15), (Vec3{30, 40, 0}));  // held

    const auto anchor = [](Layer& l) -> PointStream& { return l.anchor; };
    setLayerKey(*project, use, anchor, 1, Vec3{31, 41, 0});
    setLayerKey(*project, use, anchor, 2, Vec3{55, 65, 0});
    const std::string written = project->write();
    EXPECT_NE(written.find(R"("s":[10,20],"e":[31,41])"), std::string::npos) << written;
    EXPECT_NE(written.find(R"("s":[31,41],"e":[55,65],"h":1},{"t":20})"), std::string::npos) << written;
    while (project->history.undo()) {
    }
    EXPECT_EQ(project->write(), text);
    while (project->history.redo()) {
    }
    EXPECT_EQ(project->write(), written);
}

TEST(Read, ANumberAsTheIdOfAnAssetStaysOne) {
    const auto project =
        Project::read(animation(R"({"ty":0,"refId":5,"w":50,"h":40})", R"({"id":5,"layers":[{"ty":3}]})"));
    Comp& card = *project->items[1]->comp;
    setCompSize(*project, card, {20, 10});
    const std::string resized = project->write();
    EXPECT_NE(resized.find(R"("refId":5)"), std::string::npos) << resized;
    EXPECT_NE(resized.find(R"("id":5)"), std::string::npos) << resized;

    // So a new layer finds it, too.
    addLayer(*project, project->root(), *card.item);
    const Json written = Json::parse(project->write());
    EXPECT_EQ(written["layers"][0]["refId"], 5) << written;
    EXPECT_EQ(written["assets"][0]["id"], 5) << written;
}

TEST(Read, ManyMembersOfOneObjectTakeNoLongerThanElsewhere) {
    std::string members;
    for (int i = 0; i < 100'000; ++i) {
        members += "\"member " + std::to_string(i) + "\":" + std::to_string(i) + ",";
    }
    const std::clock_t begin = std::clock();
    const auto project = Project::read(animation("{" + members + R"("member 7":"last","ty":4})"));
    const Json layer = project->layerJson(*project->root().layers[0]);
    EXPECT_EQ(layer["member 7"], "last");
    EXPECT_EQ(layer.begin().key(), "member 0");
    EXPECT_EQ(layer.size(), 100'001u);
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 5);  // squared it is half a minute
}

TEST(Read, EasedAndCurvedValuesBetweenKeyframes) {
    PointStream stream;
    stream.keys.resize(2);
    stream.keys[0].out = Interpolation::Bezier;
    stream.keys[0].ease = {Ease{0.5, 0, 0.5, 1}, Ease{0.5, 0, 0.5, 1}, Ease{0.5, 0, 0.5, 1}};
    stream.keys[1].frame = 20;
    stream.keys[1].value = {100, 0, 0};
    EXPECT_NEAR(stream.at(10).x, 50, 1e-6);
    EXPECT_LT(stream.at(4).x, 15);  // slow at first
    PointStream diagonal = stream;
    diagonal.keys[1].value.y = 100;
    diagonal.keys[0].ease = {Ease{0.5, 0, 0.5, 1}, Ease{}, Ease{}};  // an axis each
    EXPECT_EQ(diagonal.at(4).x, stream.at(4).x);
    EXPECT_NEAR(diagonal.at(4).y, 20, 1e-6);
    // Half of a circle's length, by the usual approximation.
    stream.keys[0].outTangent = Vec3{0, 66.67, 0};
    stream.keys[0].inTangent = Vec3{0, 66.67, 0};
    EXPECT_NEAR(stream.at(10).x, 50, 0.5);
    EXPECT_NEAR(stream.at(10).y, 50, 0.5);
}

TEST(Read, TheRangeOfAnAssetIsWhatItsUsesShow) {
    const auto range = [](const CompSpec& spec) {
        const auto project = Project::read(spec.text());
        const Comp& comp = *project->items[1]->comp;
        return std::pair(comp.firstFrame, comp.endFrame);
    };
    const auto inside = [] { return precomp("C", {10, 10}).with(solid("s", {1, 1}).shown(-900, 6363)); };
    const auto scene = [] { return project("Scene", {10, 10}); };
    EXPECT_EQ(range(scene().with(inside())), std::pair(0.0, 30.0));
    EXPECT_EQ(range(scene().with(inside().shown(5, 12).startingAt(10))), std::pair(-5.0, 2.0));
    EXPECT_EQ(range(scene().with(inside().shown(-50, 500).startingAt(4, 2))), std::pair(-2.0, 13.0));
    EXPECT_EQ(range(scene().with(inside().remapped(0.5))), std::pair(15.0, 16.0));
    EXPECT_EQ(range(scene().with(inside().shown(0, 5)).with(useOf("C", {10, 10}).shown(20, 25))),
              std::pair(0.0, 25.0));
    EXPECT_EQ(range(scene().having(comp("C", {10, 10}).with(solid("s", {1, 1}).shown(3, 9)))),
              std::pair(3.0, 9.0));
}

TEST(Read, NamesAndSizesComeFromTheUses) {
    const auto project = Project::read(animation(
        R"({"ty":0,"nm":"Twice","nm":"Card","refId":7,"w":50,"h":40},{"ty":0,"refId":"7","w":60,"h":30},{"ty":0,"nm":"Card","refId":"b","w":5,"h":5})",
        R"({"id":7,"layers":[]},{"id":"b","layers":[]},{"id":"c","nm":"Card","layers":[]})"));
    EXPECT_EQ(project->items[1]->name, "Card");
    EXPECT_EQ(project->items[2]->name, "Card 2");
    EXPECT_EQ(project->items[3]->name, "Card 3");
    EXPECT_EQ(project->items[1]->size, (Size{60, 40}));
    EXPECT_EQ(project->items[3]->size, (Size{100, 80}));  // nothing uses it: as the animation
}

TEST(Read, RefusesWhatCannotBeBorneAndNamesThePlace) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"{", "this is not JSON"},
        {R"({"fr":30,"ip":0,"op":1,"w":1,"h":1})", "not a Lottie animation"},
        {R"({"layers":[],"fr":30,"ip":0,"op":1,"h":1})", "w: a number"},
        {R"({"layers":[],"fr":0,"ip":0,"op":1,"w":1,"h":1})", "fr: frame rates"},
        {R"({"layers":[],"fr":30,"ip":5,"op":5,"w":1,"h":1})", "ends before it begins"},
        {R"({"layers":[],"fr":30,"ip":0,"op":1e300,"w":1,"h":1})", "line 1: the number"},
        {R"({"layers":[],"fr":30,"ip":0,"op":1,"w":1e9,"h":1})", "w: sizes go from 1 to 30000"},
        {animation(R"({"nm":"x"})"), "layers[0]: the layer has no type"},
        {animation("7"), "layers[0]: a layer must be an object"},
        {animation(R"({"ty":4},{"ty":0,"refId":"gone"})"), "layers[1].refId: there is no asset \"gone\""},
        {animation(R"({"ty":2,"refId":"c"})", R"({"id":"c","layers":[]})"),
         "layers[0].refId: the asset \"c\" is of another kind"},
        {animation("", R"({"id":"c","layers":[]},{"id":"c","layers":[]})"), "assets[1].id: a second asset"},
        {animation("", R"({"id":"p","w":1,"h":1,"u":"images/","p":"x.png"})"),
         "assets[0]: the picture \"images/x.png\""},
        {animation(R"({"ty":4,"parent":3})"), "layers[0].parent: there is no layer with the index 3"},
        {animation(R"({"ty":4,"ind":1,"parent":2},{"ty":4,"ind":2,"parent":1})"),
         "layers[0].parent: the parents form a circle"},
        {animation(R"({"ty":0,"refId":"c"})", R"({"id":"c","nm":"Loop","layers":[{"ty":0,"refId":"c"}]})"),
         "composition \"Loop\": it contains itself"},
        {animation(R"({"ty":4,"sr":0})"), "layers[0].sr"},
        {animation(R"({"ty":1,"sw":30001,"sh":5})"), "layers[0].sw: sizes go from 1 to 30000"},
        {animation(R"({"ty":4,"ks":{"p":{"a":0,"k":["x"]}}})"), "layers[0].ks.p.k: a number"},
        {animation(R"({"ty":4,"ks":{"p":{"a":0,"k":1e20}}})"),
         "layers[0].ks.p.k: the number 1e+20 is out of range"},
        {animation(R"({"ty":4,"masksProperties":[{"pt":{"a":0,"k":{"v":[[0,0]],"i":[],"o":[[0,0]]}}}]})"),
         "layers[0].masksProperties[0].pt.k: a mask outline"},
        {R"({"layers":[],"fr":30,"ip":0,"op":1,"w":1,"h":1,"l\u0061yers":[]})",
         "line 1: a second list of layers"},
        {animation("", R"({"id":"c","layers":[],"layers":[]})"), "a second list of layers"},
        {animation("", R"(],"assets":[)"), "a second list of assets"},
        {animation(R"({"ty":4,"ks":{"r":{"k":[{"t":5,"s":[1]},{"t":4,"s":[2]}]}}})"),
         "layers[0].ks.r.k[1].t: the keyframe comes before"},
        {R"({"layers":[],"x":)" + std::string(300, '[') + std::string(300, ']') + "}",
         "nested more than 256 levels"},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_NE(refusal(text).find(message), std::string::npos) << text << "\n  -> " << refusal(text);
    }

    std::string many = R"({"ty":3})";
    for (int i = 0; i < 500'000; ++i) {
        many += R"(,{"ty":3})";
    }
    EXPECT_NE(refusal(animation(many)).find("layers[500000]: the file has more than 500000 layers"),
              std::string::npos);
    std::string values = "0";
    for (int i = 0; i < 10'000'000; ++i) {
        values += ",0";
    }
    EXPECT_NE(
        refusal(animation(R"({"ty":4,"odd":[)" + values + "]}")).find("a layer has more than 10000000 values"),
        std::string::npos);
    values.resize(11'000'001);
    const std::string half = R"({"ty":4,"odd":[)" + values + "]}";
    EXPECT_EQ(refusal(animation(half + "," + half)), "(accepted)");  // each on its own

    // Each composition uses the next one so often.
    const auto chain = [](int length, int uses) {
        std::string assets;
        for (int i = 0; i < length; ++i) {
            assets += R"({"id":")" + std::to_string(i) + R"(","layers":[)";
            for (int use = 0; use < uses; ++use) {
                assets +=
                    std::string(use > 0 ? "," : "") + R"({"ty":0,"refId":")" + std::to_string(i + 1) + R"("})";
            }
            assets += "]},";
        }
        return animation(R"({"ty":0,"refId":"0"})",
                         assets + R"({"id":")" + std::to_string(length) + R"(","layers":[]})");
    };
    EXPECT_NE(refusal(chain(30, 1)).find("nested more than 20"), std::string::npos);
    EXPECT_NE(refusal(chain(8, 10)).find("more than 2000000 layers"), std::string::npos);
}

}  // namespace
}  // namespace kestrin_test
