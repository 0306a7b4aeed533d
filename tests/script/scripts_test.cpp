// The plug-in's own scripts, run as the plug-in runs them and answered by prepared answers.

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
    // The script as the plug-in passes it on, its printf placeholder filled with `value`.
    static std::string script(const std::string& name, const std::string& value = {}) {
        std::ifstream in(std::string(KESTRIN_SCRIPTS) + "/" + name + ".jsx", std::ios::binary);
        EXPECT_TRUE(in) << name;
        std::string text{std::istreambuf_iterator<char>(in), {}};
        if (const std::size_t place = text.find("%s"); !value.empty() && place != std::string::npos) {
            text.replace(place, 2, value);
        }
        return text;
    }
    // The script's value when its dialogs are answered so.
    std::string run(const std::string& text, const std::vector<std::string>& prepared) {
        ui::PreparedAnswers answers;
        for (const std::string& answer : prepared) answers.add(answer);
        host.answersFrom = &answers;
        const std::string value = engine.run(text);
        EXPECT_EQ(answers.unanswered(), std::nullopt);
        EXPECT_TRUE(answers.unused().empty());
        return value;
    }
    std::string stored(const std::string& key) {
        return host.store.getString("Kestrin", key).value_or("absent");
    }

    FakeHost host;
    script::Engine engine{host};
};

TEST_F(ScriptsTest, ResolutionQuestion) {
    const std::string text = script("resolutionQuestion", "third");
    EXPECT_EQ(run(text, {"Low Resolution=Accurate"}), "1");
    EXPECT_EQ(run(text, {"Low Resolution=Fast"}), "2");
    EXPECT_EQ(run(text, {"Low Resolution=close"}), "2");
    EXPECT_EQ(run(text, {"Low Resolution=escape"}), "2");
    EXPECT_EQ(stored("Resolution"), "absent");
    EXPECT_EQ(run(text, {"Low Resolution=Accurate,Remember My Choice"}), "1");
    EXPECT_EQ(stored("Resolution"), "1");
    EXPECT_EQ(run(text, {"Low Resolution=Remember My Choice,Fast"}), "2");
    EXPECT_EQ(stored("Resolution"), "2");
    EXPECT_EQ(host.saves, 2);

    host.answersFrom = &host.answers;
    engine.run(text);
    EXPECT_NE(host.answers.last.controls.at(0).text.find("currently set to third.\n\nWould"),
              std::string::npos);
}

TEST_F(ScriptsTest, ThreeDQuestion) {
    const std::string text = script("threeDQuestion");
    EXPECT_EQ(run(text, {"3D Layers=Yes"}), "true");
    EXPECT_EQ(run(text, {"3D Layers=No"}), "false");
    EXPECT_EQ(run(text, {"3D Layers=close"}), "false");
    EXPECT_EQ(run(text, {"3D Layers=Yes,Remember My Choice"}), "true");
    EXPECT_EQ(stored("ThreeD"), "1");
}

TEST_F(ScriptsTest, MaskChooser) {
    const std::string text = script("maskChooser");
    EXPECT_EQ(run(text, {"Choose Mask="}), "0");
    EXPECT_EQ(run(text, {"Choose Mask=Mask \"2\""}), "1");
    EXPECT_EQ(run(text, {"Choose Mask=ma\xC3\x9Fke \xF0\x9F\x8E\xAD,OK"}), "2");
    EXPECT_EQ(run(text, {"Choose Mask=Cancel"}), "-1");
    EXPECT_EQ(run(text, {"Choose Mask=escape"}), "-1");
    EXPECT_EQ(run(text, {"Choose Mask=close"}), "-1");
    host.selected.clear();
    EXPECT_THROW(engine.run(text), script::ScriptError);
}

TEST_F(ScriptsTest, PreferencesShowDefaultsAndSaveEachByItsKind) {
    const std::string text = script("preferences");
    EXPECT_EQ(run(text, {"Kestrin Preferences=Cancel"}), "undefined");
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
    EXPECT_EQ(host.saves, 3);
    EXPECT_TRUE(host.alerts.empty());
}

TEST_F(ScriptsTest, PreferencesHelpWritesOpensAndRemovesAShortcut) {
    std::string pattern = (std::filesystem::temp_directory_path() / "script_home_XXXXXX").string();
    host.home = ::mkdtemp(pattern.data());
    run(script("preferences"), {"Kestrin Preferences=Help,Cancel"});
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_TRUE(host.alerts[0].message.starts_with("Network access has been blocked"));
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
    ASSERT_EQ(host.alerts.size(), 1u);
    engine.run("app.KESTRIN_update_panel = function () { app.updated = true; }");
    run("KESTRIN_openPanelPrefs()",
        {"Kestrin Panel Preferences=!Kestrin,!Crop Duration,!Preferences,!Padding,!Expand,Save"});
    EXPECT_EQ(stored("MainPanelDisplay") + stored("PanelDisplay"), "");
    run("KESTRIN_openPanelPrefs()", {"Kestrin Panel Preferences=Kestrin,close"});
    EXPECT_EQ(stored("MainPanelDisplay"), "");
    EXPECT_EQ(engine.run("app.updated"), "true");
    EXPECT_EQ(host.alerts.size(), 1u);
}

TEST_F(ScriptsTest, AlertsAndSetParent) {
    host.items.push_back({3, "Other", true, 10, 10, 0});
    engine.run(script("notCroppedAlert", "0,2"));
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_TRUE(
        host.alerts[0].message.starts_with("Some layers were not cropped:\r\n\r\nCard, Camera\r\n\r\n"));
    std::string text = script("setParent");
    for (const char* value : {"12", "2", "1"}) text.replace(text.find("%d"), 2, value);
    engine.run(text);
    EXPECT_EQ(host.layers[1].parent, FakeHost::firstLayer);
}

}  // namespace
}  // namespace kestrin_test
