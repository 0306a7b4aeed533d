// The program in two processes: one that works, with the plug-in in it, and one that waits for it, so that
// there is somebody to say so when the work crashes, ends the program or never comes to an end.
//
// Both belong to the terminal. An interrupt from there reaches the one that works by itself; signals that are
// sent to the one that waits are passed on.

#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "cli/ExitCode.h"

namespace headless::cli {

// Splits the program. Returns twice: nothing in the process that is to work, and in the other one, when that
// has come to its end, what became of it. `longest`: the work is ended after it; 0: never. Time in which the
// program stood still, stopped at the terminal or asleep with the machine, does not count.
std::optional<ExitCode> supervised(std::chrono::milliseconds longest);

// The last thing that is done where the work is: an end before it is none that was meant.
void workIsDone();

// The file that is worked on, to be named where something goes wrong.
void workOn(const std::string& file);
std::string workedOn();
// The plug-in's hook that runs, null when it is back.
void inHook(const char* hook);

}  // namespace headless::cli
