#include "ui/Terminal.h"

#include <unistd.h>

#include <iostream>

#include "ui/LineAnswers.h"
#include "ui/ScreenAnswers.h"

namespace headless::ui {

std::unique_ptr<Answerer> personAtTerminal() {
    if (::isatty(STDIN_FILENO) && ::isatty(STDOUT_FILENO)) return std::make_unique<ScreenAnswers>();
    return std::make_unique<LineAnswers>(std::cin, std::cerr);
}

}  // namespace headless::ui
