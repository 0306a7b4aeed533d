#include "Drawing.h"

#include <gtest/gtest.h>

namespace headless::render {
namespace {

const std::string red = "#ff0000";
const std::string green = "#00ff00";
const std::string blue = "#0000ff";
const std::string linear = R"("i": {"x": 1, "y": 1}, "o": {"x": 0, "y": 0})";

std::string rectangle(int x, int y, int width, int height) {
    const auto point = [](int px, int py) { return "[" + std::to_string(px) + "," + std::to_string(py) + "]"; };
    return R"({"k": {"i": [[0,0],[0,0],[0,0],[0,0]], "o": [[0,0],[0,0],[0,0],[0,0]], "c": true, "v": [)" +
           point(x, y) + "," + point(x + width, y) + "," + point(x + width, y + height) + "," +
           point(x, y + height) + "]}}";
}

std::string mask(const std::string& mode, int x, int width, const std::string& more = R"("inv": false)") {
    return R"({"mode": ")" + mode + R"(", "pt": )" + rectangle(x, -1, width, 4) + ", " + more + "}";
}

std::string masks(const std::string& list) {
    return R"("masksProperties": [)" + list + "]";
}

class Drawing : public testing::Test {
 protected:
    Picture picture(const Json& document, const Scene& scene, int frame) {
        renderer_.prepare(textOf(document, scene));
        return draw(renderer_, frame, scene.width, scene.height).copy();
    }

    // The top row of a composition of 12 x 2 pixels.
    std::string shown(const Json& document, int frame = 0, double firstFrame = 0) {
        return row(picture(document, {12, 2, firstFrame, 100}, frame), 0);
    }
    std::string masked(const std::string& list) {
        return shown(document({solid(0, 0, 12, 2, red, masks(list))}));
    }

    Renderer renderer_;
};

TEST_F(Drawing, MattesShowTheTargetThroughTheLayerAbove) {
    const Json source = solid(2, 0, 4, 2, blue, R"("td": 1)");
    EXPECT_EQ(shown(document({source, solid(0, 0, 12, 2, green, R"("tt": 1)")})), "..GGGG......");
    EXPECT_EQ(shown(document({source, solid(0, 0, 8, 2, green, R"("tt": 2)")})), "GG....GG....");
    // Luma: blue lets next to nothing through, white everything.
    const Json white = solid(2, 0, 4, 2, "#ffffff", R"("td": 1)");
    EXPECT_EQ(shown(document({white, solid(0, 0, 8, 2, green, R"("tt": 3)")})), "..GGGG......");
    EXPECT_EQ(shown(document({source})), "............") << "without a target";
}

TEST_F(Drawing, MattesByNumberMayLieAnywhereAndEndAtCircles) {
    const Jsons layers{solid(2, 0, 4, 2, blue, R"("td": 1, "ind": 7)"), solid(11, 0, 1, 2, red),
                       solid(0, 0, 5, 2, green, R"("tt": 1, "tp": 7)"),
                       solid(5, 0, 5, 2, red, R"("tt": 1, "tp": 7)")};
    EXPECT_EQ(shown(document(layers)), "..GGGR.....R");
    const Jsons circle{solid(0, 0, 3, 2, red, R"("ind": 1, "tt": 1, "tp": 2)"),
                       solid(1, 0, 4, 2, green, R"("ind": 2, "tt": 1, "tp": 1)")};
    EXPECT_NO_THROW(shown(document(circle)));
}

TEST_F(Drawing, AMatteFollowsTheTimesOfItsSource) {
    for (const auto& [type, outside] : {std::pair("1", "............"), std::pair("2", "GGGGGGGGGGGG")}) {
        const Jsons layers{solid(2, 0, 4, 2, blue, R"("td": 1, "op": 5)"),
                           solid(0, 0, 12, 2, green, std::string(R"("tt": )") + type)};
        EXPECT_EQ(shown(document(layers), 7), outside);
    }
}

TEST_F(Drawing, MatteAndMaskKeepTheirParentsAndTheirChildren) {
    const Jsons layers{
        Json{{"ty", 3}, {"ind", 1}, {"ks", {{"p", {{"k", {4, 0}}}}}}},
        solid(0, 0, 2, 2, blue, R"("td": 1, "parent": 1)"),
        solid(-1, 0, 9, 2, green, R"("tt": 1, "parent": 1, "ind": 3)"),
        solid(6, 0, 1, 2, red, R"("parent": 3)"),
        solid(0, 0, 3, 2, blue, R"("parent": 3, "ks": {"p": {"k": [-3, 0]}},)" + masks(mask("s", 0, 1)))};
    EXPECT_EQ(shown(document(layers)), ".BB.GG...R..");
    // A parent that is not drawn at all.
    const Jsons text{Json{{"ty", 5}, {"ind", 1}, {"ip", 0}, {"op", 9}, {"ks", {{"p", {{"k", {4, 0}}}}}}},
                     solid(0, 0, 2, 2, green, R"("parent": 1)")};
    EXPECT_EQ(shown(document(text)), "....GG......");
}

TEST_F(Drawing, OneMask) {
    EXPECT_EQ(masked(mask("a", 2, 4)), "..RRRR......");  // also without hasMask
    EXPECT_EQ(masked(mask("i", 2, 4)), "..RRRR......");
    EXPECT_EQ(masked(mask("n", 2, 4)), "RRRRRRRRRRRR");
    EXPECT_EQ(masked(mask("s", 2, 4, R"("o": {"k": 50})")), "RRrrrrRRRRRR");
}

TEST_F(Drawing, SeveralMasksActInTheirOrder) {
    EXPECT_EQ(masked(mask("a", 0, 2) + "," + mask("a", 4, 2)), "RR..RR......");
    EXPECT_EQ(masked(mask("a", 0, 6) + "," + mask("i", 3, 6)), "...RRR......");
    EXPECT_EQ(masked(mask("a", 0, 6) + "," + mask("s", 3, 6)), "RRR.........");
    EXPECT_EQ(masked(mask("a", 0, 6) + "," + mask("f", 3, 6)), "RRR...RRR...");
    EXPECT_EQ(masked(mask("s", -1, 20) + "," + mask("s", 0, 2)), "............");
}

TEST_F(Drawing, MasksHoldOnWidePictures) {
    const Json layer = solid(0, 0, 3000, 2, red, masks(mask("a", 10, 2900) + "," + mask("s", 100, 2700)));
    const std::string top = row(picture(document({layer}), {3000, 2, 0, 1}, 0), 0);
    EXPECT_EQ(top, std::string(10, '.') + std::string(90, 'R') + std::string(2700, '.') +
                       std::string(110, 'R') + std::string(90, '.'));
}

TEST_F(Drawing, RemappedTimeShowsTheFrameThatIsNamed) {
    Json asset =
        composition("", {solid(0, 0, 2, 2, red, R"("op": 50)"), solid(2, 0, 2, 2, green, R"("ip": 50)")});
    asset["id"] = 3;  // referred to as "3"
    const Jsons assets{asset};
    const auto at = [&](const std::string& remap, int frame) {
        return shown(document({use("3", R"("sr": 2, "tm": )" + remap)}, assets), frame);
    };
    EXPECT_EQ(at(R"({"k": 2})", 0), "..GG........");
    EXPECT_EQ(at(R"({"k": 1})", 60), "RR..........");
}

TEST_F(Drawing, NestedTimesAreFinerThanFrames) {
    const std::string moving =
        R"("ip": -9, "ks": {"p": {"k": [{"t": 0, "s": [0, 0], )" + linear + R"(}, {"t": 1, "s": [8, 0]}]}})";
    const Jsons assets{composition("a", {solid(0, 0, 2, 2, red, moving)})};
    EXPECT_EQ(shown(document({use("a", R"("st": 0.5)")}, assets), 1), "....RR......");
    EXPECT_EQ(shown(document({use("a", R"("sr": 4)")}, assets), 1), "..RR........");
}

TEST_F(Drawing, TheShownRangeMayBeginAnywhere) {
    const Jsons layers{solid(0, 0, 2, 2, red, R"("ip": -5, "op": -1)"), solid(4, 0, 2, 2, green, R"("op": 10)"),
                       solid(8, 0, 2, 2, blue, R"("ip": 10)")};
    EXPECT_EQ(shown(document(layers), 3, -5), "RR..........");
    EXPECT_EQ(shown(document(layers), 5, -5), "....GG......");
    EXPECT_EQ(shown(document(layers), 0, 9), "....GG......");
    EXPECT_EQ(shown(document(layers), 1, 9), "........BB..");
}

TEST_F(Drawing, KeyframesInEverySpelling) {
    const auto at = [&](const std::string& keys, int frame) {
        return shown(document({solid(0, 0, 2, 2, red, R"("ks": {"p": {"k": [)" + keys + "]}}")}), frame);
    };
    const std::string toSix = R"({"t": 4, "s": [6, 0, 0])";
    EXPECT_EQ(at(R"({"t": 0, "s": [2, 0]},)" + toSix + "}", 2), "....RR......");  // no handles: linear
    EXPECT_EQ(at(R"({"t": 0, "s": [2, 0], )" + linear + "}," + toSix + ", " + linear + "}", 9), "......RR....");
    EXPECT_EQ(at(toSix + "}", 9), "......RR....");  // a single key
    EXPECT_EQ(at(R"({"t": 0, "s": [2, 0], "e": [6, 0], )" + linear + R"(}, {"t": 4})", 9), "......RR....");
    EXPECT_EQ(at(R"({"t": 0, "s": [2, 0], "h": 1},)" + toSix + "}", 3), "..RR........");
    const std::string axes = R"("ks": {"p": {"x": {"k": [4]}, "y": {"k": 0}, "s": 1}, "o": {"k": [100]}})";
    EXPECT_EQ(shown(document({solid(0, 0, 2, 2, red, axes)})), "....RR......");
}

TEST_F(Drawing, LooselyTypedLayersAreRead) {
    Json loose =
        solid(0, 0, 2, 2, red, R"("sw": 2.0, "ind": 1.0, "parent": null, "nm": null, "hd": 0, "ao": false)");
    loose["ks"] = {{"p", {{"k", {3, 2}}}}, {"r", {{"k", -90}}}};
    loose.erase("ddd");  // whose absence must not take the rotation away
    Json bare = document({loose, solid(8, 0, 2, 2, green, R"("ks": {"p": {"k": [8, 0]}, "rx": {"k": 9}})")});
    bare.erase("v");
    bare.erase("assets");
    EXPECT_EQ(shown(bare), "...RR...GG..");
}

TEST_F(Drawing, ShapesInGroups) {
    const std::string fill = R"({"ty": "fl", "c": {"k": [1, 0, 0, 1]}})";
    const std::string box = R"({"p": {"k": [2, 1]}, "s": {"k": [2, 9]}, "ty": "rc"})";
    const std::string right = R"({"ty": "tr", "p": {"k": [4, 0]}})";
    EXPECT_EQ(shown(document({shapes(box + "," + fill)})), ".RR.........");
    EXPECT_EQ(shown(document({shapes(R"({"ty": "gr", "it": [)" + box + "," + fill + "," + right + "]}")})),
              ".....RR.....");
    EXPECT_EQ(shown(document({shapes(R"({"ty": "gr", "hd": true, "it": [)" + box + "," + fill + "]}")})),
              "............");
    // A group without a transform still moves.
    const std::string moving =
        R"({"ty": "rc", "s": {"k": [2, 9]}, "p": {"k": [{"t": 0, "s": [2, 1]}, {"t": 4, "s": [6, 1]}]}})";
    const Json group = document({shapes(R"({"ty": "gr", "it": [)" + moving + "," + fill + "]}")});
    EXPECT_EQ(shown(group, 4), ".....RR.....");
    // A triangle turned by 60 degrees stands on its tip.
    const std::string triangle =
        R"({"ty": "sr", "sy": 2, "pt": {"k": 3}, "or": {"k": 40}, "os": {"k": 0}, "p": {"k": [50, 50]}, "r": {"k": 60}})";
    const Picture turned = picture(document({shapes(triangle + "," + fill)}), {100, 100, 0, 1}, 0);
    EXPECT_GT(row(turned, 65).find_first_not_of('.'), row(turned, 35).find_first_not_of('.') + 10);
}

// The second asks for a file of the machine.
TEST_F(Drawing, PicturesComeFromTheDocumentOnly) {
    const std::string pixels =
        "iVBORw0KGgoAAAANSUhEUgAAAAIAAAACCAIAAAD91JpzAAAAEElEQVR4nGP4z8AARAwQCgAf7gP9i18U1AAAAABJRU5ErkJggg==";
    const Jsons assets{{{"id", "i"}, {"w", 2}, {"h", 2.0}, {"e", 1}, {"p", "data:image/png;base64," + pixels}},
                       {{"id", "j"}, {"w", 2}, {"h", 2}, {"u", "/etc/"}, {"p", "hostname"}}};
    const std::string image = R"("ty": 2)";
    EXPECT_EQ(shown(document({use("i", image), use("j", image)}, assets)), "RR..........");
}

// A layer that is at rest when its matte or its target comes must not be where it was before it moved.
TEST_F(Drawing, FramesDoNotDependOnTheOnesBefore) {
    const std::string box =
        R"({"ty": "rc", "s": {"k": [2, 9]}, "p": {"k": [{"t": 0, "s": [1, 1]}, {"t": 8, "s": [9, 1]}]}})";
    const std::string fill = R"({"ty": "fl", "c": {"k": [0, 1, 0]}})";
    Json moving = shapes(box + "," + fill);
    const auto after = [&](const Jsons& layers) {
        renderer_.prepare(textOf(document(layers)));
        for (int frame = 0; frame < 12; ++frame) draw(renderer_, frame, 12, 2);
        return row(draw(renderer_, 12, 12, 2), 0);
    };
    moving["tt"] = 1;
    EXPECT_EQ(after({solid(0, 0, 12, 2, blue, R"("td": 1, "ip": 10)"), moving}), "........GG..");
    moving.erase("tt");
    EXPECT_EQ(after({moving, solid(0, 0, 12, 2, blue, R"("tt": 1, "ip": 10)")}), "........BB..");
}

}  // namespace
}  // namespace headless::render
