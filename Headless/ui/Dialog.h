// What a script dialog looks like to whoever answers it, and what an answer is.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace headless::ui {

// One control of an open dialog. `id` is its place in depth-first order and stays while the dialog is open.
struct Control {
    enum class Kind {
        Group,
        Panel,
        StaticText,
        EditText,
        CheckBox,
        RadioButton,
        Button,
        DropDownList,
        ListBox
    };

    int id = 0;
    Kind kind = Kind::Group;
    int depth = 0;                   // 0 for the window's own children
    std::string text;                // label, or the text in an edit field (UTF-8)
    bool checked = false;            // check boxes and radio buttons
    std::vector<std::string> items;  // lists
    int selection = -1;              // lists: index from 0, or -1 for none
    bool enabled = true;             // together with everything that holds it; so too visible
    bool visible = true;
};

struct Dialog {
    int showing = 0;  // counts the dialogs shown: the same while one is open, another when it opens again
    std::string title;
    std::vector<Control> controls;
};

// One thing a person does to an open dialog.
struct Action {
    enum class Kind {
        Press,     // a button, or a check box's or radio button's toggle
        SetText,   // type `text` into an edit field
        Select,    // choose entry `selection` of a list
        Enter,     // press the default button; without one nothing happens
        Escape,    // press the cancel button, or close as the system does where there is none
        CloseBox,  // close the window from outside
    };

    Kind kind = Kind::CloseBox;
    int control = -1;
    std::string text;
    int selection = -1;
};

// Answers open dialogs, one action after the other, until the dialog has closed.
class Answerer {
 public:
    virtual ~Answerer() = default;

    // Asked again with the dialog's new state after each action. Where there is no answer to give, returns
    // CloseBox: a dialog never stays open for ever.
    virtual Action next(const Dialog& dialog) = 0;
};

}  // namespace headless::ui
