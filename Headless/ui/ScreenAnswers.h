// A person at a terminal: draws the dialog and takes keys.

#pragma once

#include "ui/Dialog.h"
#include "ui/Keyboard.h"

namespace headless::ui {

class ScreenAnswers final : public Answerer {
 public:
    // Standard input and output must be a terminal. Sets the process's locale for characters to the user's.
    ScreenAnswers();

    // An interrupt closes the dialog, and so does a terminal that goes away.
    Action next(const Dialog& dialog) override;

 private:
    Keyboard keyboard_;
};

}  // namespace headless::ui
