// The other meanings of the menu entry, from the command line: duration, mask, preferences, panel.

#include <gmock/gmock.h>

#include "Program.h"
#include "model/Project.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using testing::HasSubstr;

class Modes : public Program {
 protected:
    // A card whose content moves, masked twice.
    std::string card() {
        return write("in.json",
                     project("Scene", {200, 100})
                         .with(precomp("Card", {200, 100})
                                   .with(solid("s", {20, 20}).at({{0, {10, 10, 0}}, {29, {110, 40, 0}}}))
                                   .masked(box(0, 0, 99, 79), "Wide")
                                   .masked(box(10, 20, 49, 59), "O'Narrow \"2\""))
                         .with(solid("Plain", {5, 5}))
                         .text());
    }
    Outcome crop(std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"crop", pathOf("in.json"), "--layer", "Card", "-o", pathOf("out.json")});
        return run(std::move(options));
    }
    std::string sizeIn(const std::string& file) {
        const auto project = headless::model::Project::open(pathOf(file));
        const Size size = project->items[1]->size;
        return std::to_string(size.width) + " x " + std::to_string(size.height);
    }
};

TEST_F(Modes, TheDurationAndTheMaskCropTakeANameOrAsk) {
    card();
    const Outcome duration = crop({"--duration"});
    EXPECT_EQ(duration.err, "");  // a pipe sees no progress bar
    EXPECT_EQ(sizeIn("out.json"), "120 x 50");
    EXPECT_EQ(run({"compare", pathOf("in.json"), pathOf("out.json")}).code, ExitCode::Done);

    EXPECT_EQ(crop({"--mask", "O'Narrow \"2\"", "--delete-mask"}).code, ExitCode::Done);
    EXPECT_EQ(sizeIn("out.json"), "40 x 40");
    EXPECT_EQ(headless::model::Project::open(pathOf("out.json"))->root().layers[0]->masks.size(), 1u);

    EXPECT_EQ(crop({"--mask", "--answer", "Choose Mask=Wide"}).code, ExitCode::Done);
    EXPECT_EQ(sizeIn("out.json"), "100 x 80");

    EXPECT_EQ(crop({"--mask", "--answer", "Choose Mask=Cancel"}).code, ExitCode::Cancelled);
    const Outcome asked = crop({"--mask"});
    EXPECT_EQ(asked.code, ExitCode::BadInput);
    EXPECT_THAT(asked.err, HasSubstr("the dialog \"Choose Mask\" (buttons: "));
    EXPECT_THAT(crop({"--mask", "Round"}).err, HasSubstr("has no mask \"Round\"; its masks are \"Wide\""));
    const Outcome none = run({"crop", pathOf("in.json"), "--layer", "Plain", "--mask", "-o", pathOf("x.json")});
    EXPECT_EQ(none.code, ExitCode::NothingToDo);
    EXPECT_EQ(files(), (std::vector<std::string>{"in.json", "out.json"}));
}

TEST_F(Modes, TheMenuSaysWhatAnArtistWouldSee) {
    const std::string file = card();
    EXPECT_EQ(run({"menu", file, "--select", "Card", "--keys", "shift,command"}).out, "Layer > Mask Crop\n");
    EXPECT_EQ(run({"menu", file, "--select", "Card", "--select", "Plain", "--keys", "command"}).out,
              "Layer > Multiple layers not allowed (disabled)\n");
}

TEST_F(Modes, PreferencesAreEditedInTheDialogAndFollowed) {
    card();
    const std::string store = pathOf("prefs");
    const Outcome edited =
        run({"preferences", "--preferences", store, "--answer", "Kestrin Preferences=Padding,Save"});
    ASSERT_EQ(edited.code, ExitCode::Done) << edited.err;
    EXPECT_THAT(contentOf(store), HasSubstr("\"PaddingAmount\" = \"10.000000\""));
    EXPECT_EQ(run({"preferences", "--preferences", store, "--answer", "Kestrin Preferences=Save"}).out,
              "nothing changed\n");

    EXPECT_EQ(crop({"--preferences", store}).code, ExitCode::Done);
    EXPECT_EQ(sizeIn("out.json"), "40 x 40");
    EXPECT_EQ(crop({"--preferences", store, "--padding", "1"}).code, ExitCode::Done);
    EXPECT_EQ(sizeIn("out.json"), "22 x 22");
    EXPECT_EQ(run({"preferences"}).code, ExitCode::BadInput);
}

}  // namespace
}  // namespace kestrin_test
