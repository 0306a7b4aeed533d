// Properties that take their values from the document's slots: read through them, and never written beside
// them.

#include <gtest/gtest.h>

#include "model/Edit.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using namespace headless::model;

// A box behind a use; both stand in front of the slots.
std::string document(const std::string& slots, const std::string& use, const std::string& box) {
    return R"({"v":"5","fr":30,"ip":0,"op":60,"w":100,"h":80,"layers":[{"ty":0,"refId":"c","w":50,"h":40,"op":60,)" +
           use + R"(}],"assets":[{"id":"c","layers":[{"ty":4,"nm":"Box","op":60,)" + box + R"(}]}],"slots":)" +
           slots + "}";
}

struct Opened {
    explicit Opened(const std::string& text) : project(Project::read(text)) {}
    Layer& use() const { return *project->root().layers[0]; }
    Comp& card() const { return *project->items[1]->comp; }
    Layer& box() const { return *card().layers[0]; }
    std::unique_ptr<Project> project;
};

PointStream& position(Layer& layer) {
    return layer.position;
}

TEST(Slots, AValueIsWhatItsSlotSays) {
    const std::string text = document(
        R"({"place":{"p":{"a":0,"k":[30,20]}},"time":{"p":{"a":0,"k":1}},"cut":{"p":{"a":0,"k":{"v":[[1,2]],"i":[[0,0]],"o":[[0,0]],"c":true}}},"turn":{"p":{"a":1,"k":[{"t":0,"s":[10]},{"t":5,"s":[20]}]}}})",
        R"("tm":{"sid":"time","a":0,"k":0},"masksProperties":[{"mode":"a","pt":{"sid":"cut"}}])",
        R"("ks":{"p":{"a":0,"k":[0,0],"sid":"place"},"a":{"a":0,"k":[3,4],"sid":"unknown"},"r":{"sid":"turn"}})");
    const Opened opened(text);
    EXPECT_EQ(opened.box().position.value, (Vec3{30, 20, 0}));
    EXPECT_EQ(opened.box().anchor.value, (Vec3{3, 4, 0}));
    EXPECT_EQ(opened.box().rotation.keys.size(), 2u);
    EXPECT_EQ(opened.use().masks[0]->path.value.vertices[0].point, (Vec3{1, 2, 0}));
    EXPECT_EQ(std::pair(opened.card().firstFrame, opened.card().endFrame), std::pair(30.0, 31.0));
    EXPECT_EQ(opened.project->layerJson(opened.box())["ks"]["p"]["k"], Json({30, 20}));
    EXPECT_EQ(opened.project->write(), text);

    // What changes beside it leaves it as it is.
    setCompSize(*opened.project, *opened.project->root().item->comp, {90, 70});
    opened.box().touched = true;
    const std::string changed = opened.project->write();
    for (const char* kept : {R"("ks":{"p":{"a":0,"k":[0,0],"sid":"place"})", R"("pt":{"sid":"cut"})",
                             R"("place":{"p":{"a":0,"k":[30,20]}})"}) {
        EXPECT_NE(changed.find(kept), std::string::npos) << changed;
    }
}

TEST(Slots, NothingIsWrittenBesideASlot) {
    const auto refusal = [](const auto& edit) -> std::string {
        const Opened opened(
            document(R"({"s":{"p":{"a":0,"k":{"v":[[9,9]],"i":[[0,0]],"o":[[0,0]]}}}})",
                     R"("ks":{"a":{"a":0,"k":[9,9],"sid":"own"}},"masksProperties":[{"pt":{"sid":"s"}}])",
                     R"("ks":{"p":{"s":true,"x":{"k":1},"y":{"k":1,"sid":"y"}},"r":{"k":4,"sid":"r"}})"));
        edit(opened);
        try {
            return opened.project->write();
        } catch (const ProjectError& error) {
            return error.what();
        }
    };
    const auto says = [&](const std::string& what, const auto& edit) {
        const std::string message = refusal(edit);
        EXPECT_NE(message.find("the " + what + " would have to change"), std::string::npos) << message;
    };
    says("position", [](const Opened& o) {
        PointStream moved = o.box().position;
        moved.add({1, 0, 0});
        setLayerField(*o.project, o.box(), position, moved);
    });
    says("rotation", [](const Opened& o) {
        setLayerField(
            *o.project, o.box(), [](Layer& l) -> ScalarStream& { return l.rotation; }, ScalarStream{5, {}});
    });
    says("anchor point", [](const Opened& o) {
        setLayerField(
            *o.project, o.use(), [](Layer& l) -> PointStream& { return l.anchor; },
            PointStream{{1, 1, 0}, {}, {}, 2});
    });
    says("mask", [](const Opened& o) {
        o.use().touched = true;
        o.use().masks[0]->path.scale({2, 2, 1});
    });
    EXPECT_NE(refusal([](const Opened& o) { deleteMask(*o.project, o.use(), 0); }).find(R"("hasMask":false)"),
              std::string::npos);
}

TEST(Slots, WhatAThemeCanMoveIsKnown) {
    const auto parts = [](const std::string& layer) { return slottedParts(Json::parse(layer)); };
    EXPECT_FALSE(parts(R"({"ks":{"p":{"k":[1,2]}},"shapes":[{"ty":"rc"}]})").any);
    for (const char* colours : {R"({"shapes":[{"ty":"gr","it":[{"ty":"fl","c":{"k":[1,0,0],"sid":"c"}}]}]})",
                                R"({"shapes":[{"ty":"gs","g":{"p":2,"k":{"k":[],"sid":"c"}}}]})"}) {
        EXPECT_TRUE(parts(colours).any) << colours;
        EXPECT_FALSE(parts(colours).geometry) << colours;
    }
    for (const char* geometry : {R"({"shapes":[{"ty":"gr","it":[{"ty":"rc","s":{"k":[1,2],"sid":"c"}}]}]})",
                                 R"({"shapes":[{"ty":"rp","c":{"k":1,"sid":"c"}}]})",
                                 R"({"ks":{"o":{"k":0,"sid":"c"}}})", R"({"t":{"d":{"k":[],"sid":7}}})"}) {
        EXPECT_TRUE(parts(geometry).geometry) << geometry;
    }
    EXPECT_TRUE(parts(R"({"ks":{"p":{"s":true,"x":{"k":1},"y":{"k":1,"sid":"y"}}}})").position);
}

TEST(Slots, ALargeValueInManyPlacesIsRefused) {
    std::string large = R"({"s":{"p":{"a":0,"k":[)";
    for (int i = 0; i < 100'000; ++i) {
        large += "[0,0],";
    }
    std::string shapes = R"("shapes":[{"sid":"s"})";
    for (int i = 0; i < 1'000; ++i) {
        shapes += R"(,{"sid":"s"})";
    }
    try {
        Project::read(document(large + "[]]}}}", R"("nm":"Use")", shapes + "]"));
        FAIL();
    } catch (const ProjectError& error) {
        EXPECT_EQ(error.what(), std::string("slots: put in all their places, they come to more than 16 MiB"));
    }
}

}  // namespace
}  // namespace kestrin_test
