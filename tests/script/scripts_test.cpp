// The plug-in's preferences and what a command of its own runs no script for; the stories run the others.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>

#include "FakeHost.h"
#include "ui/PreparedAnswers.h"

namespace kestrin_test {
namespace {

class ScriptsTest : public ::testing::Test {
 protected:
    static std::string script(const std::string& name) {
        std::ifstream in(std::string(KESTRIN_SCRIPTS) + "/" + name + ".jsx", std::ios::binary);
        EXPECT_TRUE(in) << name;
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // The script, with its dialogs answered so.
    void run(const std::string& text, const std::vector<std::string>& prepared) {
        ui::PreparedAnswers answers;
        for (const std::string& answer : prepared) answers.add(answer);
        host.answersFrom = &answers;
        engine.run(text);
        EXPECT_EQ(answers.unanswered(), std::nullopt);
        EXPECT_TRUE(answers.unused().empty());
    }
    std::string stored(const std::string& key) {
        return host.store.getString("Kestrin", key).value_or("absent");
    }

    FakeHost host;
    script::Engine engine{host};
};

TEST_F(ScriptsTest, PreferencesShowDefaultsAndSaveEachByItsKind) {
    const std::string text = script("preferences");
    run(text, {"Kestrin Preferences=Cancel"});
    EXPECT_EQ(stored("Padding"), "absent");
    run(text, {"Kestrin Preferences=Save"});
    EXPECT_EQ(stored("PaddingAmount") + stored("ExpandAmount") + stored("Resolution") + stored("Padding"),
              std::string("10.0000000.0000000\0", 19));
    run(text, {"Kestrin Preferences=Padding,Padding: 12.5,Expand: abc,Include Masks,Resolution: Always Ask,"
               "Never Pre-compose,Save"});
    EXPECT_EQ(stored("PaddingAmount"), "12.500000");
    EXPECT_EQ(stored("ExpandAmount"), "0.000000");
    EXPECT_EQ(stored("ThreeD"), "2");
    EXPECT_EQ(host.store.getBool("Kestrin", "Padding"), true);
    run(text, {"Kestrin Preferences=!Padding,Save"});
    EXPECT_EQ(host.store.getBool("Kestrin", "Padding"), false);
    EXPECT_EQ(host.store.getBool("Kestrin", "IncludeMasks"), true);
}

TEST_F(ScriptsTest, PreferencesHelpWritesOpensAndRemovesAShortcut) {
    std::string pattern = (std::filesystem::temp_directory_path() / "script_home_XXXXXX").string();
    host.home = ::mkdtemp(pattern.data());
    run(script("preferences"), {"Kestrin Preferences=Help,Cancel"});
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_TRUE(host.alerts[0].starts_with("Network access has been blocked"));
    host.store.setLong("Main Pref Section", "Pref_SCRIPTING_FILE_NETWORK_SECURITY", 1);
    run(script("preferences"), {"Kestrin Preferences=Help,Cancel"});
    ASSERT_EQ(host.executions.size(), 1u);
    EXPECT_TRUE(host.executions[0].second.starts_with("[InternetShortcut]\rURL="));
    EXPECT_TRUE(std::filesystem::is_empty(host.home / "Desktop"));
    std::filesystem::remove_all(host.home);
}

TEST_F(ScriptsTest, PanelPreferencesOpenFromThePreferences) {
    const std::string text = script("preferences");
    run(text, {"Kestrin Preferences=Panel,Cancel", "Kestrin Panel Preferences=!Mask Crop,Padding,Expand,Save"});
    EXPECT_EQ(stored("MainPanelDisplay"), "KESTRIN,CROP_DURATION,PREFERENCES");
    EXPECT_EQ(stored("PanelDisplay"), "PADDING,EXPAND");
    engine.run("app.KESTRIN_update_panel = function () { app.updated = true; }");
    run("KESTRIN_openPanelPrefs()",
        {"Kestrin Panel Preferences=!Kestrin,!Crop Duration,!Preferences,!Padding,!Expand,Save"});
    run("KESTRIN_openPanelPrefs()", {"Kestrin Panel Preferences=Kestrin,close"});
    EXPECT_EQ(stored("MainPanelDisplay") + stored("PanelDisplay"), "");
    EXPECT_EQ(engine.run("app.updated"), "true");
    EXPECT_EQ(host.alerts.size(), 1u);
}

TEST_F(ScriptsTest, SetParentCountsLayersFromOne) {
    std::string text = script("setParent");
    for (const char* value : {"12", "2", "1"}) text.replace(text.find("%d"), 2, value);
    engine.run(text);
    EXPECT_EQ(host.layers[1].parent, FakeHost::firstLayer);
}

}  // namespace
}  // namespace kestrin_test
