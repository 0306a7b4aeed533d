// What the worker may ask of the system.

#pragma once

#include <string>

namespace headless::render {

// From now on this process, with all its threads, can use its memory and the descriptors that it has, and end.
// It can open no file, reach no network and start neither process nor thread. Anything else that it asks for is
// not done; `refused` gets the number of the system call, runs in a signal handler, and must not return. Where
// the system knows no such filters, nothing happens; under the address sanitizer, which needs files of its own,
// too.
void confineWorker(void (*refused)(int systemCall));

std::string systemCallName(int systemCall);

}  // namespace headless::render
