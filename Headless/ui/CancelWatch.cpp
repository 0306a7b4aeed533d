#include "ui/CancelWatch.h"

#include <algorithm>
#include <cctype>

#include "ui/Interrupt.h"

namespace headless::ui {

namespace {

bool cancels(const Action& action, const Dialog& dialog) {
    if (action.kind != Action::Kind::Press) {
        return action.kind == Action::Kind::Escape || action.kind == Action::Kind::CloseBox;
    }
    return std::any_of(dialog.controls.begin(), dialog.controls.end(), [&](const Control& control) {
        std::string text = control.text;
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        return control.id == action.control && control.kind == Control::Kind::Button && text == "cancel";
    });
}

}  // namespace

Action CancelWatch::next(const Dialog& dialog) {
    if (title_ && dialog.showing <= showing_) {
        title_.reset();  // still open, or it was a dialog of this one's
    }
    const Action action = title_ || interrupted() ? Action{} : answers_.next(dialog);
    if (!title_ && cancels(action, dialog)) {
        title_ = dialog.title;
        showing_ = dialog.showing;
    }
    return action;
}

}  // namespace headless::ui
