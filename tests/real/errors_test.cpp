// The comparison's eye: one pixel wrong in a cropped file is reported as shifted.
//
// The files are spoiled as text, so that nothing of the tool takes part in making the error.

#include <gtest/gtest.h>

#include <set>

#include "cli/Comparison.h"
#include "real/Crop.h"

namespace kestrin_test {

namespace {

using model::Json;

// One use of a composition, and what one pixel wrong there does.
struct Row {
    const char* file;
    int layer;  // the use, from 1, in the root
    int inner;  // a layer in what it shows, from 1
    // The frame at which the error shows, or that it shows at none.
    int anchorX, anchorY, position, innerPosition, mask, width, height;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.file;
}

constexpr int noMask = -1;
constexpr int unseen = -2;

// ---- Errors ------------------------------------------------------------------------------------------

Json& layersOf(Json& document, const Json& id) {
    for (Json& asset : document["assets"]) {
        if (asset["id"] == id) {
            return asset["layers"];
        }
    }
    return document["layers"];
}

void addOne(Json& number) {
    number = number.get<double>() + 1;
}

// A value, or keyframes with one value each, or with two in older files.
template <class Change>
void forEachValue(Json& k, Change&& change) {
    if (!k.is_array() || !k.at(0).is_object() || k[0].contains("v")) {
        change(k.is_array() && k.at(0).is_object() ? k[0] : k);
        return;
    }
    for (Json& key : k) {
        for (const char* member : {"s", "e"}) {
            if (key.contains(member)) {
                forEachValue(key[member], change);
            }
        }
    }
}

void movePoint(Json& layer, const char* member, int axis) {
    Json& point = layer["ks"][member];
    const bool separated = point.value("s", false);
    forEachValue(separated ? point[axis == 0 ? "x" : "y"]["k"] : point["k"],
                 [&](Json& value) { addOne(value.is_array() ? value[separated ? 0 : axis] : value); });
}

void moveMasks(Json& layer) {
    for (Json& mask : layer["masksProperties"]) {
        forEachValue(mask["pt"]["k"], [](Json& path) {
            for (Json& vertex : path["v"]) {
                addOne(vertex[0]);
            }
        });
    }
}

// So much that one pixel of the content goes with the padding.
void cut(Json& document, const std::string& id, const char* side) {
    const auto cutIn = [&](Json& layers) {
        for (Json& layer : layers) {
            if (layer.value("refId", "") == id) {
                layer[side] = layer[side].get<int>() - padding - 1;
            }
        }
    };
    cutIn(document["layers"]);
    for (Json& asset : document["assets"]) {
        if (asset.contains("layers")) {
            cutIn(asset["layers"]);
        }
    }
}

struct Error {
    const char* name;
    int Row::*frame;
    void (*make)(Json& document, const Row& row, Json& use, Json& inner);
};

const Error errors[] = {
    {"anchor x", &Row::anchorX, [](Json&, const Row&, Json& use, Json&) { movePoint(use, "a", 0); }},
    {"anchor y", &Row::anchorY, [](Json&, const Row&, Json& use, Json&) { movePoint(use, "a", 1); }},
    {"position", &Row::position, [](Json&, const Row&, Json& use, Json&) { movePoint(use, "p", 0); }},
    {"inner position", &Row::innerPosition,
     [](Json&, const Row&, Json&, Json& inner) { movePoint(inner, "p", 0); }},
    {"mask", &Row::mask, [](Json&, const Row&, Json& use, Json&) { moveMasks(use); }},
    {"width", &Row::width,
     [](Json& document, const Row&, Json& use, Json&) { cut(document, use["refId"], "w"); }},
    {"height", &Row::height,
     [](Json& document, const Row&, Json& use, Json&) { cut(document, use["refId"], "h"); }},
};

// ---- Comparison --------------------------------------------------------------------------------------

struct RealErrors : testing::TestWithParam<Row> {
    void SetUp() override {
        if (std::string(KESTRIN_REAL_FILES).empty()) {
            GTEST_SKIP() << "the files are not here; configure with -DKESTRIN_REAL_FILES=FOLDER";
        }
    }
};

TEST_P(RealErrors, OnePixelIsSeenWhereverItShows) {
    const Row& row = GetParam();
    const std::string file = row.file[0] == '/' ? row.file : std::string(KESTRIN_REAL_FILES) + "/" + row.file;
    const std::string text = cropped(file, "", static_cast<std::size_t>(row.layer), Command::Duration);
    const Json good = Json::parse(text);
    const auto before = model::Project::open(file);
    const auto unspoiled = model::Project::read(text);
    std::set<int> lookedAt;
    for (const Error& error : errors) {
        const int frame = row.*error.frame;
        // What is not seen is looked for where the other errors are.
        const ComparisonRequest request{frame >= 0 ? frame : row.anchorX, ""};
        SCOPED_TRACE(error.name);
        if (lookedAt.insert(*request.frame).second) {
            EXPECT_NE(compare(*before, *unspoiled, request).verdict(), Verdict::Shifted);
        }
        Json spoiled = good;
        Json& use = spoiled["layers"].at(static_cast<std::size_t>(row.layer) - 1);
        Json& inside = layersOf(spoiled, use["refId"]);
        if (frame == noMask) {
            EXPECT_TRUE(use.value("masksProperties", Json::array()).empty());
            continue;
        }
        error.make(spoiled, row, use, inside.at(static_cast<std::size_t>(row.inner) - 1));
        EXPECT_NE(spoiled, good);
        EXPECT_EQ(
            compare(*before, *model::Project::read(spoiled.dump()), request).verdict() == Verdict::Shifted,
            frame >= 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , RealErrors,
    testing::Values(
        // file, use, inner layer | anchor x and y, position, inner position, mask, width, height
        Row{"lock.json", 3, 1, 130, 130, 130, 130, noMask, 140, 145},
        Row{"puzzle.json", 2, 1, 32, 31, 32, 32, noMask, 54, 25},
        Row{"coins.json", 5, 1, 1, 5, 1, 1, noMask, 0, 0},
        Row{"morph-search.json", 3, 1, 85, 80, 85, 85, noMask, 86, 82},
        Row{"starfish.json", 3, 1, 55, 55, 55, 55, noMask, 58, unseen},
        Row{"animation.json", 3, 2, 2, 4, 2, 2, noMask, 11, 7},
        Row{"banner.json", 1, 2, 472, 454, 472, 472, noMask, 474, 470},
        // The same picture without a mask lies below, and what is shown reaches the edges at other times only.
        Row{"navidad.json", 3, 5, 89, 88, 89, 89, unseen, unseen, unseen},
        Row{KESTRIN_EXAMPLE, 6, 1, 20, 20, 20, 20, 20, 20, 20}),
    [](const auto& row) { return wordOf(row.param.file) + std::to_string(row.index); });

}  // namespace

}  // namespace kestrin_test
