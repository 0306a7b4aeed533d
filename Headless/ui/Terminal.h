// The person at the program's own terminal.

#pragma once

#include <memory>

#include "ui/Dialog.h"

namespace headless::ui {

// With keys where standard input and output are a terminal, else line by line: dialogs to standard error, steps
// from standard input.
std::unique_ptr<Answerer> personAtTerminal();

}  // namespace headless::ui
