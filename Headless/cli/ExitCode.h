// What the program tells its caller, and how a verb stops early.

#pragma once

#include <stdexcept>
#include <string>

namespace headless::cli {

enum class ExitCode : int {
    Done = 0,
    Differs = 1,
    BadInput = 2,
    NothingToDo = 3,
    SomePutBack = 4,
    Cancelled = 5,
    Failed = 6,
    TimedOut = 7,
};

// Ends the verb. The message names the item and what to do about it.
struct Stop : std::runtime_error {
    Stop(ExitCode why, const std::string& message) : std::runtime_error(message), code(why) {}
    ExitCode code;
};

}  // namespace headless::cli
