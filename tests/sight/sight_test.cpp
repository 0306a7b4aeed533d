#include "sight/Sight.h"

#include <gtest/gtest.h>

#include "model/Base64.h"

namespace headless::sight {

namespace {

using Codes = std::vector<std::string>;

std::unique_ptr<model::Project> scene(const std::string& layers, const std::string& more = "") {
    return model::Project::read(R"({"v":"5.7.0","fr":10,"ip":0,"op":10,"w":100,"h":100,"nm":"Scene",)" + more +
                                R"("layers":[)" + layers + "]}");
}

std::string layer(int type, const std::string& transform, const std::string& more = R"("ip":0,"op":10)",
                  const std::string& name = "L") {
    return R"({"ty":)" + std::to_string(type) + R"(,"nm":")" + name + R"(","st":0,"ks":{)" + transform + "}," +
           more + "}";
}

std::string solid(const std::string& transform, const std::string& more = R"("ip":0,"op":10)") {
    return layer(1, transform, R"("sw":60,"sh":40,"sc":"#3366cc",)" + more);
}

Codes codesIn(const model::Project& project, const model::Comp& comp, const std::set<std::string>& fonts = {}) {
    Codes codes;
    for (const Unseen& each : unseenIn(project, comp, fonts)) {
        codes.push_back(each.code);
    }
    return codes;
}

Codes codesIn(const std::unique_ptr<model::Project>& project, const std::set<std::string>& fonts = {}) {
    return codesIn(*project, project->root(), fonts);
}

const model::Comp& innerOf(const model::Project& project) {
    for (const model::ItemPtr& item : project.items) {
        if (item->comp && item->comp->assetId == "c") {
            return *item->comp;
        }
    }
    throw std::logic_error("there is no composition c");
}

}  // namespace

TEST(Sight, OneEntryForEachLayerAndCodeThatNamesBoth) {
    const auto project = scene(solid(R"("glow":{},"bend":{})") + "," + solid(R"("glow":{})"));
    const std::vector<Unseen> unseen = unseenIn(*project, project->root());
    ASSERT_EQ(unseen.size(), 2u);
    EXPECT_EQ(unseen[0].layer, project->root().layers[0]->id);
    EXPECT_EQ(unseen[1].layer, project->root().layers[1]->id);
    EXPECT_EQ(unseen[0].what, "the unknown member \"glow\" of its transform");
    EXPECT_EQ(nameOf(unseen[0].kind), "other");
    EXPECT_EQ(nameOf(Kind::ThreeD), "3d");
}

TEST(Sight, MomentsThatNoFrameShows) {
    const Codes between{"between-frames"}, none{};
    EXPECT_EQ(codesIn(scene(solid("", R"("ip":2.2,"op":2.8)"))), between);
    EXPECT_EQ(codesIn(scene(solid("", R"("ip":2.2,"op":3.8)"))), none);
    EXPECT_EQ(codesIn(scene(solid("", R"("ip":2,"op":2.8)"))), none);
    const auto moves = [](const char* times[3], const char* far) {
        std::string keys;
        for (int i = 0; i < 3; ++i) {
            keys += (i == 0 ? "" : ",") + std::string(R"({"i":{"x":1,"y":1},"o":{"x":0,"y":0},"t":)") +
                    times[i] + R"(,"s":[)" + (i == 1 ? far : "0") + ",0]}";
        }
        return codesIn(scene(solid(R"("p":{"a":1,"k":[)" + keys + "]}")));
    };
    const char *inOne[] = {"4", "4.5", "5"}, *overTwo[] = {"3", "4.5", "6"}, *onFrames[] = {"3", "4", "6"};
    EXPECT_EQ(moves(inOne, "1"), between);
    EXPECT_EQ(moves(overTwo, "90"), between);
    EXPECT_EQ(moves(overTwo, "3"), none);
    EXPECT_EQ(moves(onFrames, "90"), none);
}

TEST(Sight, ExpressionsReachTheirOwnComposition) {
    const auto turned = [](const std::string& expression, const std::string& value = "6") {
        return solid(R"("r":{"a":0,"k":)" + value + R"(,"x":"var $bm_rt;\n$bm_rt = )" + expression + R"(;"})");
    };
    const std::string controls = layer(3, "",
                                       R"("ip":0,"op":10,"ef":[{"ty":5,"nm":"S","ef":[{"ty":0,"nm":"V",)"
                                       R"("v":{"a":0,"k":2}}]}])",
                                       "S");
    const std::string asset = R"("assets":[{"id":"c","layers":[)" +
                              turned("comp('Scene').layer('S').effect('S')('V')") + "," +
                              turned("$bm_mul($bm_div(value, 2), comp('Scene').layer('S').effect('S')('V'))") +
                              "," + turned("comp('Scene').layer('S').effect('S')('V')", "2") + "," +
                              turned("$bm_mul(time, 90)") + R"(]}],)";
    const std::string use = R"("refId":"c","w":100,"h":100,"ip":0,"op":10)";
    const auto project = scene(controls + "," + layer(0, "", use), asset);
    // The first alone: what the others say is the value that stands there, or tells the time.
    const model::Comp& inner = innerOf(*project);
    const std::vector<Unseen> unseen = unseenIn(*project, inner);
    ASSERT_EQ(unseen.size(), 1u);
    EXPECT_EQ(unseen[0].layer, inner.layers[0]->id);

    const auto later = scene(controls + "," + layer(0, "", use + R"(,"sr":2)"), asset);
    EXPECT_EQ(codesIn(*later, innerOf(*later)), Codes(2, "expression"));  // another time inside
}

TEST(Sight, AnExpressionOfAnyLengthIsJudged) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) {
        deep += "$bm_mul(";
    }
    EXPECT_EQ(codesIn(scene(solid(R"("r":{"a":0,"k":1,"x":"var $bm_rt;\n$bm_rt = )" + deep + R"(;"})"))),
              Codes{"expression"});
}

TEST(Sight, TextNeedsItsGlyphsOrItsFont) {
    const std::string text =
        layer(5, "",
              R"("ip":0,"op":10,"t":{"d":{"k":[{"t":0,"s":{"s":20,"f":"F-Bold","t":"A","j":0,"fc":[1,0,0]}}]},)"
              R"("p":{},"m":{},"a":[]})");
    const std::string fonts = R"("fonts":{"list":[{"fName":"F-Bold","fFamily":"F","fStyle":"Bold"}]},)";
    const auto glyph = [](const std::string& character) {
        return R"("chars":[{"ch":")" + character +
               R"(","style":"Bold","fFamily":"F","size":20,"w":60,"data":{}}],)";
    };
    const Codes withoutFont{"text-without-font"}, none{};
    EXPECT_EQ(codesIn(scene(text, fonts)), withoutFont);
    EXPECT_EQ(codesIn(scene(text, fonts), {"F-Bold"}), none);
    EXPECT_EQ(codesIn(scene(text, fonts), {"F"}), withoutFont);
    EXPECT_EQ(codesIn(scene(text, fonts + glyph("A"))), none);
    EXPECT_EQ(codesIn(scene(text, fonts + glyph("B")), {"F-Bold"}),
              withoutFont);  // players take the glyphs alone
}

TEST(Sight, PicturesAreKnownByTheirBytes) {
    const auto shown = [](const std::string& type, const std::string& bytes) {
        return codesIn(scene(layer(2, "", R"("refId":"i","ip":0,"op":10)"),
                             R"("assets":[{"id":"i","w":4,"h":3,"e":1,"u":"","p":"data:image/)" + type +
                                 ";base64," + model::base64(bytes) + R"("}],)"));
    };
    using namespace std::string_literals;
    const std::string png = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\4\0\0\0\3"s;
    const std::string jpeg = "\xff\xd8\xff\xc0\0\x0b\x08\0\3\0\4\1\1\x11\0"s;
    const std::string turned = "\xff\xd8\xff\xe1\0\4\0\0"s + jpeg.substr(2);
    const Codes none{}, otherType{"image-type"};
    EXPECT_EQ(shown("png", png), none);
    EXPECT_EQ(shown("png", jpeg), none);
    EXPECT_EQ(shown("jpeg", turned), otherType);
    EXPECT_EQ(shown("png", "<svg xmlns='http://www.w3.org/2000/svg'/>"), otherType);
    EXPECT_EQ(shown("png", png.substr(0, 20)), otherType);
    EXPECT_EQ(shown("png", "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\4\0\0\0\6"s), Codes{"image-shape"});
}

}  // namespace headless::sight
