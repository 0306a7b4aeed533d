// The program as a whole: its verbs and options, for those who read a command line and those who describe it.

#pragma once

#include <chrono>

#include "cli/Verbs.h"

namespace headless::cli {

// Adds everything to an empty program; reading a command line sets `action`.
void buildProgram(CLI::App& program, Action& action);
// How long the verb that was read may take; 0: any time.
std::chrono::milliseconds timeoutOf(const CLI::App& program);

struct ExitMeaning {
    ExitCode code;
    const char* meaning;
};
constexpr ExitMeaning exitMeanings[] = {
    {ExitCode::Done, "done; for compare: nothing that can be drawn has shifted"},
    {ExitCode::Differs, "compare: the pictures differ"},
    {ExitCode::BadInput, "a wrong file, name or option"},
    {ExitCode::NothingToDo, "there was nothing to crop"},
    {ExitCode::SomePutBack, "crop --all: some compositions were put back, because their pictures had changed"},
    {ExitCode::Cancelled, "cancelled; nothing was written"},
    {ExitCode::Failed, "it failed"},
    {ExitCode::TimedOut, "it took longer than --timeout allows, and was ended"},
};

}  // namespace headless::cli
