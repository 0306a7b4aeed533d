// Who answers a dialog: prepared answers and what they say when they do not fit, lines, keys.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "ui/Keyboard.h"
#include "ui/LineAnswers.h"
#include "ui/PreparedAnswers.h"

namespace headless::ui {
namespace {

using Kind = Control::Kind;

// Two rows of a label and what it names, a box, and two buttons.
Dialog sample(int showing = 1, const std::string& title = "Settings") {
    Dialog dialog{showing, title, {}};
    const auto add = [&](Kind kind, int depth, const std::string& text) -> Control& {
        Control& control = dialog.controls.emplace_back();
        control.id = static_cast<int>(dialog.controls.size()) - 1;
        control.kind = kind;
        control.depth = depth;
        control.text = text;
        return control;
    };
    add(Kind::Group, 0, "");
    add(Kind::CheckBox, 1, "Padding");
    add(Kind::EditText, 1, "10");
    add(Kind::Group, 0, "");
    add(Kind::StaticText, 1, "Mode:");
    add(Kind::DropDownList, 1, "").items = {"Ask", "Never, ever"};
    add(Kind::ListBox, 0, "").items = {"Ask", "Mask 1"};
    add(Kind::Button, 0, "Save");
    add(Kind::Button, 0, "Help").enabled = false;
    return dialog;
}

std::string shown(const Action& action) {
    static constexpr const char* names[] = {"press", "type", "select", "enter", "escape", "close"};
    return std::string(names[static_cast<int>(action.kind)]) + ' ' + std::to_string(action.control) + ' ' +
           action.text + ' ' + std::to_string(action.selection);
}

class PreparedTest : public ::testing::Test {
 protected:
    void addFile(const std::string& text) {
        std::string path = (std::filesystem::temp_directory_path() / "answers_XXXXXX").string();
        ::close(::mkstemp(path.data()));
        std::ofstream(path) << text;
        try {
            answers.addFile(path);
        } catch (const std::runtime_error& error) {
            fileError = std::string(error.what()).substr(path.size() + 2);
        }
        std::filesystem::remove(path);
    }
    // What is done to the dialog by `count` turns.
    std::string play(const Dialog& dialog, int count) {
        std::string result;
        for (int i = 0; i < count; ++i) result += (i == 0 ? "" : "; ") + shown(answers.next(dialog));
        return result;
    }

    PreparedAnswers answers;
    std::string fileError;
};

TEST_F(PreparedTest, OneLineNamesControlsAndPressesLast) {
    answers.add("Settings=Save,Padding,Padding: 12.5,Mode: Ask,Never\\, ever,Mask 1");
    EXPECT_EQ(play(sample(), 6),
              "press 1  -1; type 2 12.5 -1; select 5  0; select 5  1; select 6  1; press 7  -1");
    EXPECT_EQ(answers.unanswered(), std::nullopt);
    Dialog ticked = sample(2);
    ticked.controls[1].checked = true;
    EXPECT_EQ(play(ticked, 1), "type 2 12.5 -1") << "what is ticked stays so";
}

TEST_F(PreparedTest, AnswersOfATitleAreUsedInOrderAndTheLastRepeats) {
    answers.add("Settings=!Padding,escape");
    answers.add("Settings=");
    answers.add("a\\=b=Save");
    EXPECT_EQ(play(sample(1), 1), "escape -1  -1");
    EXPECT_EQ(play(sample(2), 1), "enter -1  -1");
    EXPECT_EQ(play(sample(4, "a=b"), 1), "press 7  -1") << "a dialog within a dialog";
    EXPECT_EQ(play(sample(3), 1), "enter -1  -1");
    EXPECT_TRUE(answers.unused().empty());
    answers.add("Other=OK");
    EXPECT_EQ(answers.unused(), std::vector<std::string>{"Other"});
    EXPECT_THROW(answers.add("no equals sign"), std::runtime_error);
}

TEST_F(PreparedTest, WhatDoesNotFitIsNamedAndClosesTheDialog) {
    struct Case {
        const char *answer, *problem;
        int turns = 1;
    };
    for (const Case& each :
         {Case{"", "nobody answered the dialog \"Settings\""},
          {"Settings=OK", "dialog \"Settings\" has nothing named \"OK\""},
          {"Settings=Help", "dialog \"Settings\" does not offer its button \"Help\" now"},
          {"Settings=Mode: Often", "dialog \"Settings\" has no \"Often\" in its list \"Mode\""},
          {"Settings=Ask", "dialog \"Settings\" has several lists with \"Ask\": name the list as well"},
          {"Settings=Save", "dialog \"Settings\" is still open after its prepared answer", 2}}) {
        PreparedAnswers fresh;
        if (*each.answer != '\0') fresh.add(each.answer);
        Action last;
        for (int i = 0; i < each.turns; ++i) last = fresh.next(sample());
        EXPECT_EQ(shown(last), "close -1  -1") << each.answer;
        EXPECT_EQ(fresh.unanswered(), each.problem + std::string(" (buttons: Save, Help)"));
    }
}

TEST_F(PreparedTest, FileGivesWholeDialogs) {
    addFile(R"({"dialogs": [{"title": "Settings", "actions": [
        {"check": "Padding"}, {"check": "Padding", "value": false}, {"type": "a,b", "into": "Padding"},
        {"type": "", "into": 1}, {"select": "Ask", "in": "Mode"}, {"select": "Ask", "in": 2}, {"select": "Mask 1"},
        {"key": "enter"}, {"key": "escape"}, {"press": "Save"}, {"close": true}]}]})");
    EXPECT_EQ(fileError, "");
    EXPECT_EQ(play(sample(), 10),
              "press 1  -1; type 2 a,b -1; type 2  -1; select 5  0; select 6  0; select 6  1; enter -1  -1; "
              "escape -1  -1; press 7  -1; close -1  -1");
    EXPECT_EQ(answers.unanswered(), std::nullopt);
}

TEST_F(PreparedTest, FileErrorsNameThePlace) {
    for (const auto& [dialogs, error] :
         {std::pair(R"({"title": "A", "actions": []}, {"title": "B", "actions": [{"press": 3}]})",
                    "dialogs[1].actions[0].press: expected a text"),
          std::pair(R"({"title": "A", "actions": [{"press": "OK"}, {"click": "OK"}]})",
                    "dialogs[0].actions[1]: expected press, check, type, select"),
          std::pair(R"({"title": "A", "actions": [{"press": "OK", "twice": true}]})",
                    "dialogs[0].actions[0]: does not take \"twice\""),
          std::pair(R"({"actions": []})", "dialogs[0].title: expected a text"), std::pair("", "")}) {
        addFile(R"({"dialogs": [)" + std::string(dialogs) + (*dialogs == '\0' ? "" : "]}"));
        EXPECT_TRUE(fileError.starts_with(error) && !fileError.empty()) << fileError;
    }
}

TEST_F(PreparedTest, OtherDialogsGoToWhomeverIsThere) {
    std::istringstream in("press Save\n");
    std::ostringstream out;
    LineAnswers person(in, out);
    PreparedAnswers both(&person);
    both.add("Prepared=Save");
    EXPECT_EQ(shown(both.next(sample(1, "Prepared"))), "press 7  -1");
    EXPECT_EQ(shown(both.next(sample(2))), "press 7  -1");
    EXPECT_EQ(both.unanswered(), std::nullopt);
    EXPECT_EQ(shown(both.next(sample(3))), "close -1  -1");
    EXPECT_NE(out.str().find("the input ended before the dialog was answered"), std::string::npos);
}

TEST(LineAnswersTest, PrintsTheDialogAndReadsOneStepALine) {
    std::istringstream in(
        "dance\nuncheck Padding\ncheck Padding\ntype 1  two words \nselect 1 Never, ever\n"
        "select 2 none\nenter\nescape\nclose\n");
    std::ostringstream out;
    LineAnswers answers(in, out);
    Dialog dialog = sample();
    dialog.controls[5].selection = 1;
    dialog.controls[4].text = "Mode:\x1b[2J\xC2\x9B";
    std::string done;
    for (int i = 0; i < 6; ++i) done += shown(answers.next(dialog)) + "; ";
    EXPECT_EQ(done,
              "press 1  -1; type 2 two words -1; select 5  1; enter -1  -1; escape -1  -1; close -1  -1; ");
    const std::string first = out.str().substr(0, out.str().find("\n> ") + 1);
    EXPECT_EQ(first,
              "== Settings ==\n  [ ] Padding\n  field 1: 10\n  Mode:\\x1B[2J\\x9B\n  list 1:\n      Ask\n    * "
              "Never, ever\n"
              "list 2:\n    Ask\n    Mask 1\n< Save >\n< Help > (off)\n");
    EXPECT_NE(out.str().find("has no \"none\" in its list \"2\""), std::string::npos);
}

TEST(KeyboardTest, KeysMoveTypeChooseAndPress) {
    Keyboard keyboard;
    const Dialog dialog = sample();
    keyboard.attend(dialog);
    const auto press = [&](std::initializer_list<Key> keys) {
        std::string result;
        for (const Key key : keys) {
            const std::optional<Action> action = keyboard.press(key, dialog);
            result += action ? shown(*action) + ";" : "-";
        }
        return result;
    };
    EXPECT_EQ(press({Key::Space, Key::Enter, Key::Next}), "press 1  -1;enter -1  -1;-");
    EXPECT_EQ(press({Key::Backspace, Key::Space}), "--");
    keyboard.type("\xC3\xA9", dialog);
    keyboard.type("\xC3\xA9", dialog);
    EXPECT_EQ(press({Key::Backspace}), "-");
    EXPECT_EQ(keyboard.fieldText(dialog.controls[2]), "1 \xC3\xA9");
    EXPECT_EQ(press({Key::Enter}), "type 2 1 \xC3\xA9 -1;");
    EXPECT_EQ(shown(keyboard.takePending().value()), "enter -1  -1");
    EXPECT_FALSE(keyboard.takePending());
    EXPECT_EQ(press({Key::Next, Key::Left, Key::Right}), "--select 5  0;");
    EXPECT_EQ(press({Key::Next, Key::Next, Key::Enter}), "--press 7  -1;");
    EXPECT_EQ(press({Key::Next, Key::Space}), "-press 1  -1;") << "what is off is passed over";
    EXPECT_EQ(press({Key::Previous, Key::Space}), "-press 7  -1;");
    EXPECT_EQ(press({Key::Escape, Key::Close}), "escape -1  -1;close -1  -1;");
    keyboard.attend(sample(2));
    EXPECT_EQ(keyboard.focus(), 1);
}

}  // namespace
}  // namespace headless::ui
