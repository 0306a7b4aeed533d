// What a script's text means: its value, what it leaves behind, its errors, and the objects of the host.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "FakeHost.h"

namespace kestrin_test {
namespace {

using script::ScriptError;

class EngineTest : public ::testing::Test {
 protected:
    ~EngineTest() override {
        if (!host.home.empty()) std::filesystem::remove_all(host.home);
    }
    std::string run(const std::string& text) { return engine.run(text); }
    // "LINE: MESSAGE" of the error that the text ends with.
    std::string errorOf(const std::string& text) {
        try {
            return "no error, but " + engine.run(text);
        } catch (const ScriptError& error) {
            return std::to_string(error.line) + ": " + error.what();
        }
    }
    FakeHost host;
    script::Engine engine{host};
};

TEST_F(EngineTest, ValueIsTheLastExpressionStatement) {
    EXPECT_EQ(run("var FAST = 2; if (FAST == 2) { FAST; } else { 1; }"), "2");
    EXPECT_EQ(run("-1\n\n"), "-1");
    EXPECT_EQ(run("'t\\u00e9xt'"), "t\xC3\xA9xt");
    EXPECT_EQ(run("(function () { alert(1); })(); function g() {}"), "undefined");
    EXPECT_EQ(run("'\xF0\x9F\x8E\xAD'.length + '\xF0\x9F\x8E\xAD'"), "2\xF0\x9F\x8E\xAD");
}

TEST_F(EngineTest, ErrorsNameTheLineOfTheScriptAndLeaveTheEngineUsable) {
    EXPECT_EQ(errorOf("\n\nnoSuchThing.member").substr(0, 17), "3: ReferenceError");
    EXPECT_EQ(errorOf("var a = 1;\nvar b = ;").substr(0, 14), "2: SyntaxError");
    EXPECT_EQ(errorOf("\nfunction deep() {\napp.project.item(3);\n}\ndeep();"),
              "3: Error: item 3 is out of range: there are 2");
    EXPECT_EQ(errorOf("throw 'plain'"), "0: plain");
    EXPECT_EQ(errorOf("throw {stack: 5}").substr(0, 2), "0:");
    EXPECT_EQ(run("try { app.project.item(0) } catch (e) { e instanceof Error }"), "true");
    EXPECT_EQ(errorOf("(function again() { again(); })()").substr(0, 13), "1: RangeError");
    EXPECT_EQ(run("1 + 1"), "2");
}

TEST_F(EngineTest, NothingNewerThanTheRealEnginesLanguageIsThere) {
    for (const char* newer : {"[].forEach", "[].indexOf", "''.trim", "Object.keys", "Array.isArray",
                              "(function () {}).bind", "''.padStart", "Date.now"}) {
        EXPECT_EQ(run(std::string("typeof ") + newer), "undefined") << newer;
    }
    EXPECT_EQ(run("typeof JSON + typeof Promise + typeof Duktape"), "undefinedundefinedundefined");
    EXPECT_EQ(run("'a,b'.split(',').join('+') + parseFloat('12px') + isNaN('x') + [3, 1].sort()"),
              "a+b12true1,3");
}

TEST_F(EngineTest, ItemsAndLayersAreCountedFromOneAndKeepTheirIdentity) {
    for (const auto& [text, value] :
         {std::pair("app.project.items.length + app.project.items[2].name", "2Scene"),
          {"var c = app.project.activeItem; app.project.item(2) === c && c.id === 12", "true"},
          {"c.width + 'x' + c.height + ' ' + c.numLayers", "400x300 3"},
          {"c.layer(1).name + c.layer('Null').index + c.layer(c.layer(1), 2).name", "Card2Camera"},
          {"c.layer(1).source === c && c.selectedLayers[0] === c.layer(1)", "true"},
          {"c.layer(2).source + ' ' + c.layer(3).source + ' ' + app.project.item(1).layer",
           "null undefined undefined"},
          {"c.layer(3).parent === c.layer(1) && c.layer(1).mask(2).name", "Mask \"2\""}}) {
        EXPECT_EQ(run(text), value);
    }
    EXPECT_EQ(errorOf("c.layer(4)"), "1: Error: layer 4 is out of range: there are 3");
    EXPECT_EQ(errorOf("c.name = 'x'"), "1: Error: \"name\" cannot be set by a script");
    EXPECT_EQ(errorOf("c.layer(1).parent = 2"), "1: Error: a layer's parent is a layer or null");
}

TEST_F(EngineTest, PreferencesAreCheckedAndSomeAreNotForScripts) {
    EXPECT_EQ(errorOf("var p = app.preferences; p.savePrefAsFloat('K', 'F', 'abc')"),
              "1: Error: a preference of this kind takes a number, not \"abc\"");
    EXPECT_EQ(errorOf("\np.getPrefAsLong('K', 'none')"),
              "2: Error: the preference \"none\" of section \"K\" does not exist");
    EXPECT_EQ(errorOf("p.savePrefAsLong('Main Pref Section', 'Pref_SCRIPTING_FILE_NETWORK_SECURITY', 1)"),
              "1: Error: a script cannot change the preference \"Pref_SCRIPTING_FILE_NETWORK_SECURITY\"");
}

TEST_F(EngineTest, FilesAreWrittenBelowTheHomeFolderOnly) {
    std::string pattern = (std::filesystem::temp_directory_path() / "script_home_XXXXXX").string();
    host.home = ::mkdtemp(pattern.data());
    host.store.setLong("Main Pref Section", "Pref_SCRIPTING_FILE_NETWORK_SECURITY", 1);
    EXPECT_EQ(run("var f = File('~/Desktop/link.url'); f.exists + '' + f.open('w') + f.write('a\\r', 1) +"
                  "f.writeln('\xC3\xA9') + f.close() + f.exists + f.execute() + f.remove() + f.exists"),
              "falsetruetruetruetruetruetruetruefalse");
    ASSERT_EQ(host.executions.size(), 1u);
    EXPECT_EQ(host.executions[0].first, (host.home / "Desktop/link.url").string());
    EXPECT_EQ(host.executions[0].second, "a\r1\xC3\xA9\n");
    const std::string outside = host.home.string() + "_outside";
    EXPECT_EQ(run("var o = new File('" + outside + "'); o.open('w') + '' + o.write('x') + o.remove()"),
              "falsefalsefalse");
    EXPECT_EQ(run("new File('~/../escaped').open('w') || new File('~').open('w')"), "false");
    EXPECT_FALSE(std::filesystem::exists(outside));
    host.store.setLong("Main Pref Section", "Pref_SCRIPTING_FILE_NETWORK_SECURITY", 0);
    EXPECT_EQ(errorOf("f.open('w')"), "1: Error: the preferences do not allow scripts to write files");
}

}  // namespace
}  // namespace kestrin_test
