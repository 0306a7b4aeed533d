// One menu entry with four meanings: what the selection allows, what the held keys say, what the panel asks
// for.

#include "support/Story.h"

namespace kestrin_test {
namespace {

struct Menu : Story {
    static std::vector<Numbers> triangle() { return {{10, 10}, {90, 10}, {90, 90}}; }

    void SetUp() override {
        open(kestrin_test::project("Scene", {400, 300})
                 .with(precomp("Masked", {400, 300})
                           .with(solid("m", {100, 50}))
                           .masked(triangle(), "One")
                           .masked(triangle(), "Two"))
                 .with(precomp("Card", {400, 300}).with(solid("c", {100, 50})))
                 .with(solid("Solid", {10, 10})));
    }
    // The entry's text and state with these keys held while the menu is open.
    std::pair<std::string, bool> entry(bool shift, bool command) {
        session->holdKeys(false, false);
        session->openMenu();
        EXPECT_EQ(session->tick(), 0);
        session->openMenu();
        session->holdKeys(shift, command);
        EXPECT_EQ(session->tick(), 0);
        const MenuEntry& found = session->menuEntry(session->pluginCommand());
        return {found.name, found.enabled};
    }
    void expectMenu(bool standard, bool duration, bool mask,
                    const std::string& durationText = "Kestrin Duration") {
        EXPECT_EQ(entry(false, false), std::pair(std::string("Kestrin"), standard));
        EXPECT_EQ(entry(false, true), std::pair(durationText, duration));
        EXPECT_EQ(entry(true, true), std::pair(std::string("Mask Crop"), mask));
        EXPECT_EQ(entry(true, false), std::pair(std::string("Kestrin Preferences"), true));
        EXPECT_EQ(entry(false, false), std::pair(std::string("Kestrin"), standard));
    }
    A_Err ask(int request, std::optional<int> command) {
        preferences().setLong(section, "Panel_Run", request);
        if (command) {
            preferences().setLong(section, "Menu_Cmd", *command);
        }
        return session->tick();
    }
};

TEST_F(Menu, SaysWhatTheSelectionAllows) {
    select({"Masked"});
    expectMenu(true, true, true);
    selectMask("Masked", 1);
    expectMenu(true, false, true, "Multiple layers not allowed");
    select({"Masked", "Card"});
    expectMenu(true, false, false, "Multiple layers not allowed");
    select({"Card"});
    expectMenu(true, true, false);
    select({"Solid"});
    expectMenu(false, false, false);
    select({});
    expectMenu(true, true, false);  // the mask crop's state is that of the pass before
    session->selectInProjectPanel({comp("Masked").item->id, comp("Card").item->id});
    expectMenu(true, false, false);
    session->selectInProjectPanel({});
    expectMenu(false, false, false);
    expectNothingOpen();
}

// With a precomp among them it is enough to look at twelve.
TEST_F(Menu, OfLayersThatCannotBeCroppedAllAreLookedAt) {
    CompSpec spec = kestrin_test::project("Scene", {40, 30});
    for (int i = 0; i < 20; ++i) {
        spec = std::move(spec).with(solid("s", {1, 1}));
    }
    open(spec);
    std::vector<model::SelectedThing> all;
    for (const model::LayerPtr& layer : comp("Scene").layers) {
        all.push_back({layer->id, -1});
    }
    session->select(comp("Scene"), all);
    session->clearCalls();
    session->openMenu();
    EXPECT_EQ(session->calls().counts.find("AEGP_GetCollectionItemByIndex")->second, 20u);
}

TEST_F(Menu, TheTextIsSetWhenTheKeysChangeAndNotAgain) {
    select({"Card"});
    session->openMenu();
    session->clearCalls();
    for (const bool held : {true, true, true, false, false}) {
        session->holdKeys(false, held);
        EXPECT_EQ(session->tick(), 0);
    }
    EXPECT_EQ(session->calls().counts.find("AEGP_SetMenuCommandName")->second, 2u);
}

TEST_F(Menu, ThePanelsRequestsRunOnceAndOnlyWhereTheSelectionAllows) {
    const int command = session->pluginCommand();
    select({"Masked"});
    answers.answer("Choose Mask", "OK");
    EXPECT_EQ(ask(3, command), 0);
    EXPECT_EQ(sizeOf("Masked"), (Size{81, 81}));
    EXPECT_FALSE(preferences().has(section, "Panel_Run"));
    EXPECT_FALSE(preferences().has(section, "Menu_Cmd"));
    EXPECT_FALSE(session->menuEntry(command).enabled);
    EXPECT_EQ(session->tick(), 0);  // back to the plain command
    EXPECT_TRUE(session->menuEntry(command).enabled);
    EXPECT_EQ(project().history.done().size(), 1u);

    select({"Card"});
    for (const int request : {1, 2}) {
        EXPECT_EQ(ask(request, command), 0);
        EXPECT_EQ(sizeOf("Card"), (Size{100, 50}));
        ASSERT_TRUE(undo());
    }
    answers.answer("Kestrin Preferences", "Cancel");
    EXPECT_EQ(ask(4, command), 0);
    EXPECT_EQ(answers.shown["Kestrin Preferences"], 1);
    EXPECT_TRUE(alerts().empty());

    select({"Solid"});
    for (const int request : {1, 2, 3, 7}) {
        session->tick();
        EXPECT_EQ(ask(request, command), 0);
        EXPECT_NE(alerts().back().find("can not run on the currently selected layer(s)"), std::string::npos);
    }
    EXPECT_EQ(alerts().size(), 4u);
    EXPECT_EQ(ask(2, std::nullopt), 0);
    EXPECT_EQ(session->messages().back().title, "Could Not Run Kestrin From Panel");
    EXPECT_NE(alerts().back().find("please contact us at "), std::string::npos);
    EXPECT_FALSE(preferences().has(section, "Panel_Run"));
    expectNothingOpen();
}

}  // namespace
}  // namespace kestrin_test
