// Which control of a dialog has the keyboard, and what each key does there. Knows nothing of the terminal.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ui/Dialog.h"

namespace headless::ui {

enum class Key { Next, Previous, Left, Right, Space, Enter, Escape, Close, Backspace };

class Keyboard {
 public:
    // Brings the focus in step with the dialog's present state. Text that was typed and not yet handed over
    // stays.
    void attend(const Dialog& dialog);

    // The action that a key or typed text amounts to, if any. Text typed into a field is handed over as one
    // action as soon as another key acts; `pending` then holds what the key itself does.
    std::optional<Action> press(Key key, const Dialog& dialog);
    void type(std::string_view character, const Dialog& dialog);  // UTF-8

    // What an earlier key left to do once its field's text had been handed over.
    std::optional<Action> takePending();

    int focus() const { return focus_; }  // a control's id, or -1
    // What the field shows: its own text, or what is being typed.
    std::string fieldText(const Control& field) const;

 private:
    const Control* focused(const Dialog& dialog) const;
    void moveFocus(int direction, const Dialog& dialog);
    std::optional<Action> act(Key key, const Dialog& dialog);

    int showing_ = -1;
    int focus_ = -1;
    std::optional<std::string> typed_;  // into the focused field
    std::optional<Action> pending_;
};

}  // namespace headless::ui
