// One step of an answer as people and files write it, by names, and the action that it is in an open dialog.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ui/Dialog.h"

namespace headless::ui {

struct Step {
    enum class Kind { Press, Check, Uncheck, Type, Select, Enter, Escape, CloseBox };

    Kind kind = Kind::CloseBox;
    // Of the control: its text. Of a field or list also the text of the label before it in the same group, or
    // its place among the fields or the lists of the dialog ("2", from 1). Empty for Select: whichever list
    // has the entry.
    std::string control;
    std::string text;  // what is typed, or the entry to select
};

// The action, or nothing where the dialog already is as the step wants it. Throws std::runtime_error with a
// message for the user where the step does not fit the dialog.
std::optional<Action> actionFor(const Step& step, const Dialog& dialog);

// A step of the kind that fits a control of that name: "Save" presses, "Padding" checks, "!Padding" unchecks,
// "Mask 2" selects, "Padding: 12.5" types into or selects in what stands beside the label; "escape" and "close"
// where nothing bears that name. Throws like actionFor.
Step stepNamed(const std::string& name, const Dialog& dialog);

// One line of a person's: "press Save", "check Padding", "uncheck Padding", "type 2 12.5", "select 1 Always
// Ask", "enter", "escape" or "close". Nothing where it is none of these.
std::optional<Step> stepFromLine(std::string_view line);

// "buttons: Save, Cancel", for messages.
std::string buttonsOf(const Dialog& dialog);

bool isList(const Control& control);
bool isToggle(const Control& control);

}  // namespace headless::ui
