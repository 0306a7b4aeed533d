// Windows and controls: resource texts, lists, events, and every way a dialog closes.

#include <gtest/gtest.h>

#include "FakeHost.h"
#include "ui/Step.h"

namespace kestrin_test {
namespace {

using ui::Action;
using ui::Step;

class DialogTest : public ::testing::Test {
 protected:
    std::string run(const std::string& text) { return engine.run(text); }
    // Shows a dialog of an OK and a Cancel button, set up further by `script`, and does the steps to it.
    std::string shown(const std::string& script, std::vector<Step> steps) {
        std::vector<Answers::Step> queue;
        for (const Step& step : steps) {
            queue.push_back([step](const ui::Dialog& dialog) { return actionFor(step, dialog).value(); });
        }
        host.answers.byTitle["T"] = queue;
        return run(
            "var log = [], win = new Window('dialog', 'T'), ok = win.add('button', undefined, 'OK'),"
            "cancel = win.add('Button', undefined, 'cancel');" +
            script + "; log.push(win.show()); log.join()");
    }

    FakeHost host;
    script::Engine engine{host};

    const Step pressOk{Step::Kind::Press, "OK", {}};
    const Step pressCancel{Step::Kind::Press, "cancel", {}};
    const Step enter{Step::Kind::Enter, {}, {}};
    const Step escape{Step::Kind::Escape, {}, {}};
    const Step closeBox{Step::Kind::CloseBox, {}, {}};
};

TEST_F(DialogTest, ShowGivesWhatTheDialogWasClosedWith) {
    EXPECT_EQ(shown("ok.onClick = function () { win.close(7); }", {pressOk}), "7");
    EXPECT_EQ(shown("ok.onClick = function () { win.close(); }", {pressOk}), "0");
    EXPECT_EQ(shown("ok.onClick = function () { win.hide(); }", {enter}), "0");
    for (const auto& [step, result] :
         {std::pair(pressOk, "1"), {pressCancel, "2"}, {enter, "1"}, {escape, "2"}}) {
        EXPECT_EQ(shown("", {step}), result);
    }
    EXPECT_EQ(shown("cancel.onClick = function () { win.close(-5); }", {escape}), "-5");
    EXPECT_EQ(shown("cancel.text = 'No'", {escape}), "2");
    EXPECT_EQ(shown("ok.text = 'Yes'", {enter, closeBox}), "2");
    EXPECT_EQ(shown("ok.text = 'Yes'; win.defaultElement = ok", {enter}), "1");
    EXPECT_EQ(shown("cancel.onClick = function () { win.close(-5); }", {closeBox}), "2");
    EXPECT_EQ(run("new Window('palette', 'P').show()"), "undefined");
}

TEST_F(DialogTest, OnCloseKeepsTheDialogOpenByFalseAlone) {
    const std::string refuseOnce =
        "win.onClose = function () { log.push(this === win); return log.length > 1 ? 9 : false; }";
    for (const Step& way : {pressOk, pressCancel, enter, escape, closeBox}) {
        EXPECT_EQ(shown(refuseOnce, {way, pressOk}), "true,true,1");
    }
    EXPECT_EQ(shown("win.onClose = function () { win.close(3); return 0; }", {closeBox}), "2");
    EXPECT_EQ(shown("win.onClose = function () { return false; }", {pressOk}), "2") << "would never end";
}

TEST_F(DialogTest, AnErrorInAHandlerEndsTheScriptAndTheDialog) {
    EXPECT_THROW(shown("\nok.onClick = function () {\n nothing.there; }", {pressOk}), script::ScriptError);
    EXPECT_EQ(shown("", {pressOk}), "1");
}

TEST_F(DialogTest, ResourceTextBuildsTheTree) {
    run("var w = new Window('dialog {text: \"A \\\\\"b\\\\\"\", preferredSize: [400,\"\"], margins: [1, 2, 3, "
        "4],"
        "properties: {closeButton: false,}, top: Group { orientation: \\'column\\', box: CheckBox { text: "
        "\"Tick\","
        "value: true }, pick: dropdownlist{properties: {items: [\"a\", \"b\"]}, selection: 1}, }, odd: "
        "null}');");
    EXPECT_EQ(run("w.text + w.preferredSize.width + '[' + w.preferredSize.height + ']' + w.margins[3]"),
              "A \"b\"400[]4");
    EXPECT_EQ(run("w.top.box.text + w.top.box.value + w.top.pick.selection.text + w.top.orientation + w.odd"),
              "Ticktruebcolumnnull");
    EXPECT_EQ(
        run("w.children.length + w.top.children[0].type + (w.top.box.window === w) + w.top.box.parent.type"),
        "1checkboxtruegroup");
    for (const char* bad : {"dialog{", "dialog{a}", "dialog{text: \"x}", "dialog{a: slider{}}",
                            "dialog{a: 1 b: 2}", "dialog{} x", "tree{}"}) {
        EXPECT_THROW(run(std::string("new Window('") + bad + "')"), script::ScriptError) << bad;
    }
}

TEST_F(DialogTest, ListsSelectByIndexItemOrArray) {
    run("var w = new Window('dialog', 'T'), l = w.add('DropDownList', undefined, [0, 'b', 'c']), n = 0;"
        "l.onChange = function () { n++; };");
    for (const auto& [change, result] :
         {std::pair("", "null0"), std::pair("l.selection = 1;", "11"),
          std::pair("l.selection = 1; l.selection = 7; l.selection = -1; l.selection = l.items[1];", "11"),
          std::pair("l.selection = [l.items[2], 0];", "22"), std::pair("l.items[0].selected = true;", "03"),
          std::pair("l.selection = null;", "null4")}) {
        EXPECT_EQ(run(change + std::string("(l.selection && l.selection.index) + '' + n")), result) << change;
    }
    EXPECT_EQ(
        run("var m = w.add('listbox', undefined, ['x', 'y', 'z'], {multiselect: true}); m.selection = [2, 0];"
            "m.selection.length + m.selection[0].text"),
        "2x");
}

}  // namespace
}  // namespace kestrin_test
