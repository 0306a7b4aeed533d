// The person's wish to end the program: Ctrl-C, or the interrupt signal from elsewhere.

#pragma once

#include <csignal>

namespace headless::ui {

// From now on an interrupt ends the process at once with this exit code.
void endOnInterrupt(int exitCode);
// From now on the first one is noted, for those who end in good order; the second ends the program at once.
void noteInterrupts();
bool interrupted();

// While it lives no interrupt comes; one that was sent comes afterwards.
class NoInterrupt {
 public:
    NoInterrupt();
    ~NoInterrupt();
    NoInterrupt(const NoInterrupt&) = delete;
    NoInterrupt& operator=(const NoInterrupt&) = delete;

 private:
    sigset_t before_{};
};

}  // namespace headless::ui
